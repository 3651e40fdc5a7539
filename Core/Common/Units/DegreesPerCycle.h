// The length of an engine cycle in crank degrees: 360 (two-stroke) or 720 (four-stroke).
//
//   RTE::DegreesPerCycle fourStroke(720.0);
//   RTE::DegreesPerCycle odd(540.0);  // throws RTE::InvalidArgumentError
#pragma once

#include <Core/Common/CoreCommonExport.h>

namespace RTE
{

class CORECOMMON_EXPORT DegreesPerCycle
{
public:
  // 360 degrees.
  constexpr DegreesPerCycle() = default;
  // Accepts exactly 360.0 and 720.0; anything else throws RTE::InvalidArgumentError
  // "Value is not 360 or 720: <value>".
  explicit DegreesPerCycle(double degrees);

  constexpr double value() const { return m_degrees; }
  constexpr operator double() const { return m_degrees; }

  friend constexpr bool operator==(const DegreesPerCycle&, const DegreesPerCycle&) = default;

private:
  double m_degrees = 360.0;
};

} // namespace RTE
