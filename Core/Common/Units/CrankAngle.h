// An angle of an engine cycle in degrees, always within -d/2 <= angle < d/2 for a cycle
// of d degrees, so the cycle's first mark lies at -d/2.
//
//   RTE::CrankAngle a(-90.0, RTE::DegreesPerCycle(720.0));
//   double degrees = a;                                          // -90
//   RTE::CrankAngle::wrapped(400.0, RTE::DegreesPerCycle(720.0)); // -320
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/DegreesPerCycle.h>

namespace RTE
{

class CORECOMMON_EXPORT CrankAngle
{
public:
  // Angle 0 of a 360-degree cycle.
  constexpr CrankAngle() = default;
  // Throws RTE::InvalidArgumentError "Crank angle %1° is not in the allowed range between
  // %2° and %3°." when the angle is outside [-d/2, d/2) or not a number. No wrapping.
  CrankAngle(double angle, DegreesPerCycle degreesPerCycle);

  // The angle moved by whole cycles into [-d/2, d/2). Throws as the constructor for an
  // angle that is not finite.
  static CrankAngle wrapped(double angle, DegreesPerCycle degreesPerCycle);

  constexpr operator double() const { return m_angle; }
  constexpr DegreesPerCycle degreesPerCycle() const { return m_degreesPerCycle; }

  // Replaces the angle after the same range check as the constructor.
  CrankAngle& operator=(double angle);

  friend constexpr bool operator==(const CrankAngle&, const CrankAngle&) = default;

private:
  static void checkRange(double angle, DegreesPerCycle degreesPerCycle);

  DegreesPerCycle m_degreesPerCycle;
  double m_angle = 0.0;
};

} // namespace RTE
