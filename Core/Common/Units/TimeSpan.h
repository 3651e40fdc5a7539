// A signed duration counted in picoseconds, the library's one duration type.
//
//   RTE::TimeSpan exposure = RTE::MicroSeconds(250);
//   exposure.ToString(3);                                   // "250 µs"
//   RTE::TimeSpan::FromString(QStringLiteral("1.5 hours")); // 5.4e15 ps
//
// Arithmetic wraps around on overflow (two's complement) rather than being undefined;
// a span holds about +-106 days.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>

#include <compare>
#include <cstdint>

namespace Storage
{
class Settings;
}

namespace RTE
{

class CORECOMMON_EXPORT TimeSpan
{
public:
  constexpr TimeSpan() = default;
  constexpr explicit TimeSpan(std::int64_t picoSeconds) : m_ps(picoSeconds) {}

  static constexpr TimeSpan Maximum() { return TimeSpan(INT64_MAX); }
  static constexpr TimeSpan Minimum() { return TimeSpan(INT64_MIN); }
  void SetToMaximum() { m_ps = INT64_MAX; }
  void SetToMinimum() { m_ps = INT64_MIN; }

  // Whole units, truncated toward zero.
  constexpr std::int64_t ToPicoSeconds() const { return m_ps; }
  constexpr std::int64_t ToNanoSeconds() const { return m_ps / 1000; }
  constexpr std::int64_t ToMicroSeconds() const { return m_ps / 1000000; }
  constexpr std::int64_t ToMilliSeconds() const { return m_ps / 1000000000; }
  // Cut to 32 bits before widening back (spans beyond about 68 years would wrap; the
  // range of the count, about 106 days, keeps that from happening).
  constexpr std::int64_t ToSeconds() const { return static_cast<std::int32_t>(m_ps / 1000000000000); }

  double ToPicoSecondsAsDouble() const { return static_cast<double>(m_ps); }
  double ToNanoSecondsAsDouble() const { return static_cast<double>(m_ps) / 1e3; }
  double ToMicroSecondsAsDouble() const { return static_cast<double>(m_ps) / 1e6; }
  double ToMilliSecondsAsDouble() const { return static_cast<double>(m_ps) / 1e9; }
  double ToSecondsAsDouble() const { return static_cast<double>(m_ps) / 1e12; }

  // Replace the value; no overflow check (an out-of-range product wraps).
  void SetPicoSeconds(std::int64_t ps) { m_ps = ps; }
  void SetNanoSeconds(std::int64_t ns) { m_ps = wrappingMultiply(ns, 1000); }
  void SetMicroSeconds(std::int64_t us) { m_ps = wrappingMultiply(us, 1000000); }
  void SetMilliSeconds(std::int64_t ms) { m_ps = wrappingMultiply(ms, 1000000000); }
  void SetSeconds(std::int64_t s) { m_ps = wrappingMultiply(s, 1000000000000); }

  // The absolute value; Minimum() stays Minimum().
  constexpr TimeSpan Abs() const { return m_ps < 0 ? -*this : *this; }

  // "250 µs", "1.5 hours", "-2 minutes": the largest unit (ps, ns, µs, ms, s, minute,
  // hour, day) below whose next one the value lies, the number in 'g' format with
  // precision significant digits. Zero reads "0 s".
  QString ToString(int precision = 3) const;

  // Parses "<number> <unit>" with exactly one blank; units "day(s)", "hour(s)",
  // "minute(s)", "s", "ms", "µs" (micro sign), "ns", "ps", case-sensitive. An unreadable
  // or undefined number reads as 0; values beyond the range saturate at Maximum()/Minimum().
  // Throws RTE::PostconditionFailed when the text is not two parts, RTE::Exception for an
  // unknown unit.
  static TimeSpan FromString(const QString& text);

  // The settings form, class "TimeSpan" version 1; the free functions and the layout are in
  // TimeSpanSettings.h. Reading never throws for bad content.
  Storage::Settings& SerializeTo(Storage::Settings& node) const;
  void DeserializeFrom(const Storage::Settings& node);

  constexpr TimeSpan operator-() const { return TimeSpan(static_cast<std::int64_t>(0ULL - bits())); }
  constexpr TimeSpan& operator+=(TimeSpan other)
  {
    m_ps = static_cast<std::int64_t>(bits() + other.bits());
    return *this;
  }
  constexpr TimeSpan& operator-=(TimeSpan other)
  {
    m_ps = static_cast<std::int64_t>(bits() - other.bits());
    return *this;
  }
  constexpr TimeSpan& operator*=(std::int64_t factor)
  {
    m_ps = wrappingMultiply(m_ps, factor);
    return *this;
  }
  // Truncates toward zero; the divisor must not be zero.
  constexpr TimeSpan& operator/=(std::int64_t divisor)
  {
    m_ps = (m_ps == INT64_MIN && divisor == -1) ? INT64_MIN : m_ps / divisor;
    return *this;
  }

  friend constexpr TimeSpan operator+(TimeSpan a, TimeSpan b) { return a += b; }
  friend constexpr TimeSpan operator-(TimeSpan a, TimeSpan b) { return a -= b; }
  friend constexpr TimeSpan operator*(TimeSpan a, std::int64_t f) { return a *= f; }
  friend constexpr TimeSpan operator*(std::int64_t f, TimeSpan a) { return a *= f; }
  friend constexpr TimeSpan operator/(TimeSpan a, std::int64_t d) { return a /= d; }
  // How many times b fits into a, truncated; b must not be zero.
  friend constexpr std::int64_t operator/(TimeSpan a, TimeSpan b)
  {
    return (a.m_ps == INT64_MIN && b.m_ps == -1) ? INT64_MIN : a.m_ps / b.m_ps;
  }

  friend constexpr bool operator==(TimeSpan, TimeSpan) = default;
  friend constexpr std::strong_ordering operator<=>(TimeSpan, TimeSpan) = default;

private:
  constexpr std::uint64_t bits() const { return static_cast<std::uint64_t>(m_ps); }
  static constexpr std::int64_t wrappingMultiply(std::int64_t a, std::int64_t b)
  {
    return static_cast<std::int64_t>(static_cast<std::uint64_t>(a) * static_cast<std::uint64_t>(b));
  }

  std::int64_t m_ps = 0;
};

// Spans of whole units, for readable call sites: RTE::MilliSeconds(25).
constexpr TimeSpan PicoSeconds(std::int64_t ps)
{
  return TimeSpan(ps);
}
constexpr TimeSpan NanoSeconds(std::int64_t ns)
{
  return TimeSpan(ns) * 1000;
}
constexpr TimeSpan MicroSeconds(std::int64_t us)
{
  return TimeSpan(us) * 1000000;
}
constexpr TimeSpan MilliSeconds(std::int64_t ms)
{
  return TimeSpan(ms) * 1000000000;
}
constexpr TimeSpan Seconds(std::int64_t s)
{
  return TimeSpan(s) * 1000000000000;
}

} // namespace RTE
