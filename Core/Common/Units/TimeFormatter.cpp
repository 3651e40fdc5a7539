#include <Core/Common/Units/TimeFormatter.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Units/TimeUnits.h>

#include <QCoreApplication>

namespace Common
{

TimeFormatter::TimeFormatter() : m_numbers(NumberFormatter::Default()) {}

TimeFormatter::TimeFormatter(NumberFormatter numbers, QStringView unitId) : m_numbers(std::move(numbers))
{
  if (unitId.isEmpty())
    return;
  m_unitId = RTE::TimeUnits::unitIdFromText(unitId);
  if (m_unitId.isEmpty())
    RTE::Raise(RTE::InvalidArgumentError(
        QCoreApplication::translate("Common::TimeFormatter", "'%1' is not a time unit (known: s, ms, \u00B5s, ns, ps, "
                                                             "min, h).")
            .arg(unitId.toString())));
}

const TimeFormatter& TimeFormatter::Default()
{
  static const TimeFormatter formatter;
  return formatter;
}

QString TimeFormatter::UnitIdFor(RTE::TimeSpan span) const
{
  return m_unitId.isEmpty() ? RTE::TimeUnits::largestUnitIdFor(span) : m_unitId;
}

double TimeFormatter::ValueIn(RTE::TimeSpan span, QStringView unitId) const
{
  const std::int64_t unitPs = RTE::TimeUnits::picoSecondsPerUnit(RTE::TimeUnits::unitIdFromText(unitId));
  if (unitPs == 0)
    RTE::Raise(RTE::InvalidArgumentError(
        QCoreApplication::translate("Common::TimeFormatter", "'%1' is not a time unit (known: s, ms, \u00B5s, ns, ps, "
                                                             "min, h).")
            .arg(unitId.toString())));
  // Whole units and the rest apart: the whole count alone may exceed a double's 53 bits.
  const std::int64_t ps = span.ToPicoSeconds();
  return static_cast<double>(ps / unitPs) + static_cast<double>(ps % unitPs) / static_cast<double>(unitPs);
}

QString TimeFormatter::ToString(RTE::TimeSpan span) const
{
  const QString unit = UnitIdFor(span);
  return m_numbers.ToString(ValueIn(span, unit)) + QLatin1Char(' ') + unit;
}

} // namespace Common
