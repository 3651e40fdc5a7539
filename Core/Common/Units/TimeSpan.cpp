#include <Core/Common/Units/TimeSpan.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>

#include <Zn/Utils/Unicode.h>

#include <QCoreApplication>
#include <QStringList>

#include <cmath>

namespace RTE
{

namespace
{

// 2^63: the first double past the range of a signed 64-bit count.
constexpr double rangeEnd = 9223372036854775808.0;

struct DisplayUnit
{
  double below; // the unit applies while |ps| is below this
  double picoSeconds;
  const char* text; // with %1 for the number, %2 for the plural s
};

TimeSpan saturated(double value, double limit, double psPerUnit)
{
  if (std::isnan(value))
    return TimeSpan();
  if (value >= limit)
    return TimeSpan::Maximum();
  if (value <= -limit)
    return TimeSpan::Minimum();
  // The limits are those of the original unit; the product may still round onto 2^63.
  const double ps = std::trunc(value * psPerUnit);
  if (ps >= rangeEnd)
    return TimeSpan::Maximum();
  if (ps < -rangeEnd)
    return TimeSpan::Minimum();
  return TimeSpan(static_cast<std::int64_t>(ps));
}

} // namespace

QString TimeSpan::ToString(int precision) const
{
  if (m_ps == 0)
    return QStringLiteral("%1 s").arg(QString::number(0.0, 'g', precision));

  static const DisplayUnit units[] = {
      {1e3, 1.0, "%1 ps"},
      {1e6, 1e3, "%1 ns"},
      {1e9, 1e6, "%1 \u00b5s"},
      {1e12, 1e9, "%1 ms"},
      {6e13, 1e12, "%1 s"},
      {3.6e15, 6e13, "%1 minute%2"},
      {8.64e16, 3.6e15, "%1 hour%2"},
      {HUGE_VAL, 8.64e16, "%1 day%2"},
  };
  const double magnitude = std::fabs(static_cast<double>(m_ps));
  const DisplayUnit* unit = units;
  while (magnitude >= unit->below)
    ++unit;
  const double shown = static_cast<double>(m_ps) / unit->picoSeconds;
  const QString plural = (shown > 1.0 || shown < -1.0) ? QStringLiteral("s") : QString();
  const QString text = QString::fromUtf8(unit->text);
  const QString number = QString::number(shown, 'g', precision);
  return text.contains(QLatin1String("%2")) ? text.arg(number, plural) : text.arg(number);
}

TimeSpan TimeSpan::FromString(const QString& text)
{
  const QStringList parts = text.split(QLatin1Char(' '), Qt::KeepEmptyParts);
  if (parts.size() != 2)
    Raise(PostconditionFailed(QStringLiteral("Postcondition failed: parts.size() == 2")));

  const double number = parts[0].toDouble();
  const QString& unit = parts[1];

  struct LongUnit
  {
    const char* name;
    double seconds;
  };
  static const LongUnit longUnits[] = {{"day", 86400.0}, {"days", 86400.0}, {"hour", 3600.0}, {"hours", 3600.0},
                                       {"minute", 60.0}, {"minutes", 60.0}, {"s", 1.0}};
  for (const LongUnit& u : longUnits)
  {
    if (unit == QLatin1String(u.name))
      return saturated(number * u.seconds, 9223372.036854776, 1e12);
  }
  if (unit == QLatin1String("ms"))
    return saturated(number, 9223372036.854776, 1e9);
  if (unit == QString(Zn::Unicode::micro()) + QLatin1Char('s'))
    return saturated(number, 9223372036854.775, 1e6);
  if (unit == QLatin1String("ns"))
    return saturated(number, 9223372036854776.0, 1e3);
  if (unit == QLatin1String("ps"))
    return saturated(number, rangeEnd, 1.0);

  Raise(
      Exception(QCoreApplication::translate(
                    "RTE::TimeSpan", "Unknown unit - Don't know how to convert the given string '%1' into a TimeSpan.")
                    .arg(text)));
}

} // namespace RTE
