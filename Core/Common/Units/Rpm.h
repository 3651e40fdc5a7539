// An engine speed in revolutions per minute, never negative.
//
//   RTE::Rpm speed(1200.0);
//   RTE::Frequency f = speed;  // 20 Hz: revolutions, not cycles
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Frequency.h>

namespace RTE
{

class CORECOMMON_EXPORT Rpm
{
public:
  constexpr Rpm() = default;
  // Throws RTE::InvalidArgumentError "Invalid RPM value" for a negative (or undefined) value.
  explicit Rpm(double rpm);
  // The frequency's ToHertz() * 60, checked as above; an infinite frequency throws as
  // Frequency::ToHertz() does.
  explicit Rpm(const Frequency& revolutions);

  constexpr operator double() const { return m_rpm; }
  // RTE::Hertz(rpm / 60).
  operator Frequency() const;

  friend constexpr bool operator==(const Rpm&, const Rpm&) = default;

private:
  double m_rpm = 0.0;
};

} // namespace RTE
