// A frequency held as its period in unsigned picoseconds, so that frequencies derived
// from measured periods convert back without loss.
//
//   RTE::Frequency f = RTE::Frequency::FromRPM(1200.0, 720);  // 10 cycles per second
//   f.ToPeriod();                                              // 100 ms
//   f.ToString(3);                                             // "10 Hz"
//
// Special periods: 0 is an infinite frequency (ToHertz() throws), every period from
// 2^63 - 1 on is the zero frequency (Zero() sets all bits).
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/TimeSpan.h>

#include <QString>

#include <cstdint>

namespace Storage
{
class Settings;
}

namespace RTE
{

class CORECOMMON_EXPORT Frequency
{
public:
  // The zero frequency.
  constexpr Frequency() = default;
  constexpr explicit Frequency(std::uint64_t periodPicoSeconds) : m_period(periodPicoSeconds) {}

  static constexpr Frequency Zero() { return Frequency(UINT64_MAX); }
  // The highest representable frequency: a period of one picosecond.
  static constexpr Frequency Maximum() { return Frequency(1); }
  void SetZeroFrequency() { m_period = UINT64_MAX; }

  constexpr bool IsZeroFrequency() const { return m_period >= static_cast<std::uint64_t>(INT64_MAX); }
  constexpr bool isInfinite() const { return m_period == 0; }
  // A period of 1 to 2^63 - 2 picoseconds: neither infinite nor zero.
  constexpr bool isValid() const { return m_period - 1 < 0x7FFFFFFFFFFFFFFEULL; }

  constexpr std::uint64_t GetPeriodPicoSeconds() const { return m_period; }

  // 0 gives the zero frequency; otherwise the period 10^15 / mHz, truncated. A frequency
  // above 10^15 mHz truncates to the infinite frequency, one below 10^15 / 2^64 mHz to
  // the zero frequency. Throws RTE::InvalidArgumentError for a negative or undefined value.
  static Frequency FromMilliHertz(double milliHertz);
  // Cycles per second rpm / 60 / (degreesPerCycle / 360, integer division): at 720
  // degrees a cycle takes two revolutions. 0 rpm gives the zero frequency. Throws
  // RTE::InvalidArgumentError for a negative rpm or degreesPerCycle below 360.
  static Frequency FromRPM(double rpm, int degreesPerCycle);

  // Throw RTE::Exception on an infinite frequency. The zero frequency gives 0.
  double ToHertz() const;
  double ToKiloHertz() const;
  std::uint64_t ToMilliHertz() const;
  // ToHertz() * 60 * (degreesPerCycle / 360, integer division).
  double ToRPM(int degreesPerCycle) const;

  // The period as a span; periods beyond the span's range give TimeSpan::Maximum().
  TimeSpan ToPeriod() const;

  // |period - other.period| <= tolerance, in picoseconds.
  bool IsCloseTo(const Frequency& other, std::uint64_t tolerance) const;

  // "%1 Hz" below 1 kHz, "%1 kHz" below 1 MHz, else "%1 MHz"; the number in 'g' format.
  // An infinite frequency reads "inf Hz".
  QString ToString(int precision = 3) const;
  // "<number> <unit>" with exactly one blank; the unit, compared after lower-casing, is
  // "hz"/"hertz", "khz"/"kilohertz" or "mhz"/"megahertz" (so "mHz" means megahertz).
  // Throws RTE::PostconditionFailed when the text is not two parts, RTE::Exception for an
  // unknown unit, RTE::InvalidArgumentError for a negative number.
  static Frequency FromString(const QString& text);

  // The settings form, class "Frequency" version 1; the free functions and the layout are in
  // FrequencySettings.h. Reading never throws for bad content.
  Storage::Settings& SerializeTo(Storage::Settings& node) const;
  void DeserializeFrom(const Storage::Settings& node);

  friend constexpr bool operator==(const Frequency&, const Frequency&) = default;

private:
  void throwOnZeroPeriod() const;

  std::uint64_t m_period = UINT64_MAX;
};

// A frequency of the given hertz (see FromMilliHertz for the limits).
CORECOMMON_EXPORT Frequency Hertz(double hertz);
CORECOMMON_EXPORT Frequency KiloHertz(double kiloHertz);

} // namespace RTE
