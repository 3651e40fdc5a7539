#include <Core/Common/Units/DefaultTimeToStringConverter.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Units/TimeUnits.h>
#include <Core/Common/Units/ToString.h>

#include <QCoreApplication>

namespace RTE
{

namespace
{

// Enough for any quotient by a power of ten of picoseconds (at most 12 decimals) and for
// the finite quotients by a minute or an hour; longer means the decimals never end.
constexpr int maxDecimals = 24;

// |ps| / unitPs as exact decimal text, or empty when the decimals do not end.
QString exactQuotient(std::int64_t ps, std::uint64_t unitPs)
{
  const std::uint64_t magnitude = ps < 0 ? 0ULL - static_cast<std::uint64_t>(ps) : static_cast<std::uint64_t>(ps);
  QString text = ps < 0 ? QStringLiteral("-") : QString();
  text += toString(magnitude / unitPs);
  std::uint64_t remainder = magnitude % unitPs;
  if (remainder == 0)
    return text;
  text += QLatin1Char('.');
  // remainder < unitPs <= 3.6e15, so remainder * 10 fits.
  for (int decimals = 0; remainder != 0; ++decimals)
  {
    if (decimals == maxDecimals)
      return {};
    remainder *= 10;
    text += QLatin1Char(static_cast<char>('0' + remainder / unitPs));
    remainder %= unitPs;
  }
  return text;
}

} // namespace

DefaultTimeToStringConverter::DefaultTimeToStringConverter() = default;

DefaultTimeToStringConverter::DefaultTimeToStringConverter(QStringView unitId) :
    m_unitId(TimeUnits::unitIdFromText(unitId))
{
  if (m_unitId.isEmpty())
    Raise(InvalidArgumentError(
        QCoreApplication::translate("RTE::DefaultTimeToStringConverter",
                                    "'%1' is not a time unit (known: s, ms, \u00B5s, ns, ps, min, h).")
            .arg(unitId.toString())));
}

DefaultTimeToStringConverter::~DefaultTimeToStringConverter() = default;

QString DefaultTimeToStringConverter::convert(TimeSpan span) const
{
  const QString unit = m_unitId.isEmpty() ? TimeUnits::largestUnitIdFor(span, true) : m_unitId;
  const auto unitPs = static_cast<std::uint64_t>(TimeUnits::picoSecondsPerUnit(unit));
  QString number = exactQuotient(span.ToPicoSeconds(), unitPs);
  if (number.isEmpty())
  {
    // Whole units plus the rest keeps the double as close as it can be.
    const std::int64_t ps = span.ToPicoSeconds();
    const auto signedUnit = static_cast<std::int64_t>(unitPs);
    number = toString(static_cast<double>(ps / signedUnit) +
                      static_cast<double>(ps % signedUnit) / static_cast<double>(signedUnit));
  }
  return number + QLatin1Char(' ') + unit;
}

} // namespace RTE
