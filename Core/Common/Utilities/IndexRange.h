// An arithmetic selection of indices: start, start + increment, ... up to end (inclusive).
//
//   RTE::IndexRange every3rd(0, 10, 3);   // 0, 3, 6, 9
//   every3rd.GetCount();                  // 4
//   every3rd.Map(2);                      // 6
#pragma once

#include <Core/Common/CoreCommonExport.h>

namespace Storage
{
class Settings;
}

namespace RTE
{

class CORECOMMON_EXPORT IndexRange
{
public:
  IndexRange() = default;
  IndexRange(unsigned int start, unsigned int end, unsigned int increment);

  unsigned int GetStart() const { return m_start; }
  unsigned int GetEnd() const { return m_end; }
  unsigned int GetIncrement() const { return m_increment; }

  // 0 when start > end or increment is 0, else (end - start) / increment + 1. The one
  // count that does not fit (0 .. 4294967295 step 1) is given as 4294967295.
  unsigned int GetCount() const;
  // start + i * increment, without any bound check (wraps like unsigned arithmetic).
  unsigned int Map(unsigned int i) const;

  friend bool operator==(const IndexRange&, const IndexRange&) = default;

  // Class "IndexRange": leaves "Start", "End", "Increment" as uint32_t.
  Storage::Settings& SerializeTo(Storage::Settings& settings) const;
  // Reads a node of class "IndexRange" (a missing leaf reads as 0); a node of another
  // class leaves the range unchanged.
  void DeserializeFrom(const Storage::Settings& settings);

private:
  unsigned int m_start = 0;
  unsigned int m_end = 0;
  unsigned int m_increment = 1;
};

} // namespace RTE
