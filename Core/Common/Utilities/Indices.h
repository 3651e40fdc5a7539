// A set of indices chosen by a user range text (one-based numbers), walked with a step.
//
//   RTE::Indices frames(QStringLiteral("1-10, 20"), 99, 2);   // maxIndex 99, every 2nd
//   for (unsigned int i : frames) ...                         // 0, 2, 4, 6, 8, 19
//   frames.size();                                            // 6
//
// The ranges hold zero-based indices in ascending order; each is walked from its lower
// bound in steps up to its upper bound.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Parameter/RangeT.h>
#include <Core/Common/Utilities/IndexRange.h>

#include <QString>

#include <cstddef>
#include <iterator>
#include <vector>

namespace Storage
{
class Settings;
}

namespace RTE
{

class CORECOMMON_EXPORT Indices
{
public:
  using Range = RangeT<unsigned int>;

  // Forward iterator over the selected indices, range by range.
  class const_iterator
  {
  public:
    using iterator_category = std::forward_iterator_tag;
    using value_type = unsigned int;
    using difference_type = std::ptrdiff_t;
    using pointer = const unsigned int*;
    using reference = unsigned int;

    const_iterator() = default;
    unsigned int operator*() const { return static_cast<unsigned int>(m_index); }
    const_iterator& operator++()
    {
      // The next index is computed in 64 bits: near 4294967295 a step would wrap.
      const unsigned long long next = m_index + m_step;
      if (next <= m_upper)
      {
        m_index = next;
        return *this;
      }
      enter(m_range + 1);
      return *this;
    }
    const_iterator operator++(int)
    {
      const_iterator before = *this;
      ++*this;
      return before;
    }
    friend bool operator==(const const_iterator& a, const const_iterator& b)
    {
      // The ranges are ascending and disjoint, so an index stands for one position.
      return a.m_index == b.m_index;
    }

  private:
    friend class Indices;
    const_iterator(const Range* range, const Range* end, unsigned int step) : m_end(end), m_step(step) { enter(range); }
    // Moves to the first index of range (or to the end); the upper bound is kept here so
    // that stepping reads no range.
    void enter(const Range* range)
    {
      m_range = range;
      m_index = range != m_end ? range->minimum : endIndex;
      m_upper = range != m_end ? range->maximum : 0;
    }

    const Range* m_range = nullptr;
    const Range* m_end = nullptr;
    unsigned int m_step = 1;
    // Past every unsigned int: the end is told by the index alone, and stepping within a
    // range (next <= m_upper) visibly never reaches it, so loops pay one comparison.
    static constexpr unsigned long long endIndex = 1ULL << 32;
    unsigned long long m_index = endIndex;
    unsigned int m_upper = 0;
  };
  using iterator = const_iterator;

  // No indices, step 1, maximum index 0.
  Indices();
  // The indices of a one-based range text within 0 .. maxIndex. Throws what
  // ParseRangeString throws; InvalidArgumentError when step is 0.
  Indices(const QString& rangeText, unsigned int maxIndex, unsigned int step);
  // start .. end in steps of increment (maximum index end); no indices when the range
  // selects none.
  explicit Indices(const IndexRange& range);

  friend bool operator==(const Indices&, const Indices&) = default;

  const_iterator begin() const { return const_iterator(m_ranges.data(), m_ranges.data() + m_ranges.size(), m_step); }
  const_iterator end() const
  {
    const Range* last = m_ranges.data() + m_ranges.size();
    return const_iterator(last, last, m_step);
  }

  // Number of indices the iteration visits: the sum over the ranges of
  // (upper - lower) / step + 1.
  unsigned long long size() const;
  // At least one range and a size other than 0.
  bool isValid() const;
  // Exactly one range.
  bool isIndexRange() const;
  // (lower, upper, step) of the only range; (0, 0, 1) otherwise.
  IndexRange indexRange() const;
  unsigned int maxIndex() const { return m_maxIndex; }
  unsigned int stepSize() const { return m_step; }
  const std::vector<Range>& ranges() const { return m_ranges; }

  // The ranges as a one-based range text that gives them back: "1-10,20"; empty
  // without ranges. The step is not part of it.
  QString toString() const;

  // Class "Indices", version 1: "Ranges" (toString), "MaxIndex" and "StepSize" as
  // uint32_t.
  Storage::Settings& SerializeTo(Storage::Settings& settings) const;
  // Reads what SerializeTo wrote. Another class leaves the indices unchanged; another
  // version, a step of 0 or a range text that does not parse leaves them unchanged and
  // is reported on the node.
  void DeserializeFrom(const Storage::Settings& settings);

private:
  std::vector<Range> m_ranges;
  unsigned int m_step = 1;
  unsigned int m_maxIndex = 0;
};

} // namespace RTE
