// A point in time to the picosecond: a date-time of whole seconds and the fraction of the
// second in picoseconds (0 to 999 999 999 999).
//
//   RTE::TimeStamp t = RTE::TimeStamp::FromISO8601String("2024-03-01T12:00:00.000000250000Z");
//   t += RTE::MicroSeconds(5);
//   t.ToISO8601String(RTE::TimeStamp::E_Timezone::UTC);  // "2024-03-01T12:00:00.000005250000Z"
//
// ISO 8601 text forms:
// - written as "yyyy-MM-ddTHH:mm:ss.ffffffffffff" with all twelve fraction digits, then
//   "Z" for E_Timezone::UTC (the time converted to UTC) or the offset "+hh:mm"/"-hh:mm"
//   for E_Timezone::Local (the time converted to the machine's local time);
// - read with 0 to 12 fraction digits after a "." (missing digits are trailing zeros),
//   followed by "Z" (UTC), an offset "+hh:mm"/"-hh:mm" (that fixed offset) or nothing
//   (the machine's local time).
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/TimeSpan.h>

#include <QDateTime>
#include <QString>

#include <cstdint>

namespace RTE
{

class CORECOMMON_EXPORT TimeStamp
{
public:
  enum class E_Timezone
  {
    UTC,
    Local
  };

  // The process-wide default: 1970-01-01T00:00:00Z, fraction 0.
  TimeStamp();
  // The date-time's milliseconds move into the fraction. An invalid date-time stays
  // invalid with fraction 0.
  explicit TimeStamp(const QDateTime& dateTime);
  // Local date-time of the given seconds since 1970-01-01T00:00:00Z. Throws
  // RTE::VerificationFailed "fraction value invalid: <ps>" for a fraction of a second or more.
  TimeStamp(long long secondsSinceEpoch, unsigned long long picoSeconds);

  // The current local time, to the clock's millisecond.
  static TimeStamp Now();

  const QDateTime& GetDateTime() const { return m_dateTime; }
  std::int64_t GetFractionPicoSeconds() const { return m_fraction; }
  long long GetSecondsSinceEpoch() const;
  // The date-time with the whole milliseconds of the fraction added (truncated).
  QDateTime GetAsQDateTimeWithMsPrecision() const;

  // this - other; saturates at TimeSpan::Maximum()/Minimum() beyond about 106 days.
  TimeSpan operator-(const TimeStamp& other) const;
  // other - this.
  TimeSpan GetTimeSpanTo(const TimeStamp& other) const;
  void AddTimeSpan(const TimeSpan& span);
  TimeStamp& operator+=(const TimeSpan& span);
  TimeStamp operator+(const TimeSpan& span) const;

  // Date-times first, then fractions.
  bool operator==(const TimeStamp& other) const;
  bool operator<(const TimeStamp& other) const;
  bool operator!=(const TimeStamp& other) const { return !(*this == other); }
  bool operator>(const TimeStamp& other) const { return other < *this; }
  bool operator<=(const TimeStamp& other) const { return !(other < *this); }
  bool operator>=(const TimeStamp& other) const { return !(*this < other); }

  // See the file comment. Throws RTE::InvalidArgumentError "Invalid ISO 8601 time stamp:
  // '<text>'" for anything else, including dates that do not exist.
  static TimeStamp FromISO8601String(const QString& text);
  QString ToISO8601String(E_Timezone timezone = E_Timezone::UTC) const;
  // The date-time in a QDateTime format (its millisecond fields read 0), followed by "."
  // and the twelve digits of the fraction.
  QString toString(const QString& format = QStringLiteral("yyyy-MM-dd HH:mm:ss")) const;

private:
  static void VerifyDataIntegrity(const QDateTime& dateTime, std::int64_t fraction);
  QString fractionDigits() const;

  QDateTime m_dateTime;
  std::int64_t m_fraction = 0;
};

} // namespace RTE
