#include <Core/Common/Units/TimeStamp.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>

#include <QCoreApplication>
#include <QRegularExpression>

namespace RTE
{

namespace
{

constexpr std::int64_t psPerSecond = 1000000000000;

const QDateTime& defaultDateTime()
{
  static const QDateTime epoch = QDateTime::fromSecsSinceEpoch(0, Qt::UTC);
  return epoch;
}

} // namespace

TimeStamp::TimeStamp() : m_dateTime(defaultDateTime()) {}

TimeStamp::TimeStamp(const QDateTime& dateTime) : m_dateTime(dateTime)
{
  if (!dateTime.isValid())
    return;
  const int ms = dateTime.time().msec();
  m_dateTime = dateTime.addMSecs(-ms);
  m_fraction = std::int64_t(ms) * 1000000000;
}

TimeStamp::TimeStamp(long long secondsSinceEpoch, unsigned long long picoSeconds) :
    m_dateTime(QDateTime::fromSecsSinceEpoch(secondsSinceEpoch))
{
  if (picoSeconds >= std::uint64_t(psPerSecond))
    Raise(VerificationFailed(QStringLiteral("fraction value invalid: %1").arg(picoSeconds)));
  m_fraction = std::int64_t(picoSeconds);
  VerifyDataIntegrity(m_dateTime, m_fraction);
}

void TimeStamp::VerifyDataIntegrity(const QDateTime& dateTime, std::int64_t fraction)
{
  const QString ms = dateTime.toString(QStringLiteral("z"));
  const bool fractionValid = fraction >= 0 && fraction < psPerSecond;
  if (ms == QLatin1String("0") && fractionValid)
    return;
  if (!fractionValid)
    Raise(VerificationFailed(QStringLiteral("fraction value invalid: %1").arg(fraction)));
  Raise(VerificationFailed(QStringLiteral("fractional part of the second: %1").arg(ms)));
}

TimeStamp TimeStamp::Now()
{
  return TimeStamp(QDateTime::currentDateTime());
}

long long TimeStamp::GetSecondsSinceEpoch() const
{
  return m_dateTime.toSecsSinceEpoch();
}

QDateTime TimeStamp::GetAsQDateTimeWithMsPrecision() const
{
  return m_dateTime.addMSecs(m_fraction / 1000000000);
}

TimeSpan TimeStamp::operator-(const TimeStamp& other) const
{
  const qint64 seconds = other.m_dateTime.secsTo(m_dateTime);
  const std::int64_t fraction = m_fraction - other.m_fraction; // within +-10^12
  // |seconds| * 10^12 fits for up to 9223372 s; the fraction may still tip it over.
  constexpr qint64 limit = INT64_MAX / psPerSecond;
  if (seconds > limit)
    return TimeSpan::Maximum();
  if (seconds < -limit)
    return TimeSpan::Minimum();
  const std::int64_t whole = seconds * psPerSecond;
  if (fraction > 0 && whole > INT64_MAX - fraction)
    return TimeSpan::Maximum();
  if (fraction < 0 && whole < INT64_MIN - fraction)
    return TimeSpan::Minimum();
  return TimeSpan(whole + fraction);
}

TimeSpan TimeStamp::GetTimeSpanTo(const TimeStamp& other) const
{
  return other - *this;
}

void TimeStamp::AddTimeSpan(const TimeSpan& span)
{
  qint64 seconds = span.ToPicoSeconds() / psPerSecond;
  std::int64_t fraction = m_fraction + span.ToPicoSeconds() % psPerSecond;
  if (fraction >= psPerSecond)
  {
    fraction -= psPerSecond;
    ++seconds;
  }
  else if (fraction < 0)
  {
    fraction += psPerSecond;
    --seconds;
  }
  m_dateTime = m_dateTime.addSecs(seconds);
  m_fraction = fraction;
}

TimeStamp& TimeStamp::operator+=(const TimeSpan& span)
{
  AddTimeSpan(span);
  return *this;
}

TimeStamp TimeStamp::operator+(const TimeSpan& span) const
{
  TimeStamp result(*this);
  result.AddTimeSpan(span);
  return result;
}

bool TimeStamp::operator==(const TimeStamp& other) const
{
  return m_dateTime == other.m_dateTime && m_fraction == other.m_fraction;
}

bool TimeStamp::operator<(const TimeStamp& other) const
{
  if (m_dateTime != other.m_dateTime)
    return m_dateTime < other.m_dateTime;
  return m_fraction < other.m_fraction;
}

QString TimeStamp::fractionDigits() const
{
  return QStringLiteral("%1").arg(m_fraction, 12, 10, QLatin1Char('0'));
}

TimeStamp TimeStamp::FromISO8601String(const QString& text)
{
  static const QRegularExpression pattern(QStringLiteral(
      R"(^(\d{4})-(\d{2})-(\d{2})T(\d{2}):(\d{2}):(\d{2})(?:\.(\d{0,12}))?(Z|([+-])(\d{2}):(\d{2}))?$)"));
  const QRegularExpressionMatch match = pattern.match(text);
  const auto fail = [&text]
  {
    Raise(InvalidArgumentError(
        QCoreApplication::translate("RTE::TimeStamp", "Invalid ISO 8601 time stamp: '%1'").arg(text)));
  };
  if (!match.hasMatch())
    fail();
  const auto number = [&match](int group) { return match.captured(group).toInt(); };
  const QDate date(number(1), number(2), number(3));
  const QTime time(number(4), number(5), number(6));
  if (!date.isValid() || !time.isValid())
    fail();

  QDateTime dateTime;
  const QString zone = match.captured(8);
  if (zone.isEmpty())
    dateTime = QDateTime(date, time, Qt::LocalTime);
  else if (zone == QLatin1String("Z"))
    dateTime = QDateTime(date, time, Qt::UTC);
  else
  {
    const int minutes = number(10) * 60 + number(11);
    if (number(10) > 23 || number(11) > 59)
      fail();
    const int sign = match.captured(9) == QLatin1String("-") ? -1 : 1;
    dateTime = QDateTime(date, time, Qt::OffsetFromUTC, sign * minutes * 60);
  }
  if (!dateTime.isValid())
    fail();

  TimeStamp result;
  result.m_dateTime = dateTime;
  result.m_fraction = match.captured(7).leftJustified(12, QLatin1Char('0')).toLongLong();
  VerifyDataIntegrity(result.m_dateTime, result.m_fraction);
  return result;
}

QString TimeStamp::ToISO8601String(E_Timezone timezone) const
{
  const QDateTime shown = timezone == E_Timezone::UTC ? m_dateTime.toUTC() : m_dateTime.toLocalTime();
  QString suffix = QStringLiteral("Z");
  if (timezone == E_Timezone::Local)
  {
    const int offset = shown.offsetFromUtc();
    const int minutes = std::abs(offset) / 60;
    const auto twoDigits = [](int value) { return QString::number(value).rightJustified(2, QLatin1Char('0')); };
    suffix = QStringLiteral("%1%2:%3").arg(offset < 0 ? QStringLiteral("-") : QStringLiteral("+"),
                                           twoDigits(minutes / 60), twoDigits(minutes % 60));
  }
  return shown.toString(QStringLiteral("yyyy-MM-dd'T'HH:mm:ss.")) + fractionDigits() + suffix;
}

QString TimeStamp::toString(const QString& format) const
{
  return m_dateTime.toString(format) + QLatin1Char('.') + fractionDigits();
}

} // namespace RTE
