#include <Core/Common/Units/DefaultStringToTimeConverter.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Units/TimeUnits.h>

#include <QCoreApplication>

#include <algorithm>

namespace RTE
{

namespace
{

using uint128 = unsigned __int128;

enum class Failure
{
  None,
  NotADuration,
  UnknownUnit,
  OutOfRange,
};

struct Result
{
  Failure failure = Failure::None;
  TimeSpan span;
  QString unitText; // for the unknown-unit message
};

constexpr int maxSignificantDigits = 36; // 10^36 * 36 (an hour's multiplier) < 2^128

uint128 powerOfTen(int exponent)
{
  uint128 value = 1;
  for (int i = 0; i < exponent; ++i)
    value *= 10;
  return value;
}

bool isDigit(QChar c)
{
  return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

// digits * 10^exponent * multiplier picoseconds, rounded to whole ones and range-checked.
Result scaled(bool negative, uint128 digits, long long exponent, std::uint64_t multiplier)
{
  const uint128 limit = negative ? uint128(1) << 63 : (uint128(1) << 63) - 1;
  const uint128 n = digits * multiplier;
  uint128 ps = 0;
  if (n == 0)
    ps = 0;
  else if (exponent >= 0)
  {
    if (exponent > 19 || n > limit / powerOfTen(static_cast<int>(exponent)))
      return {Failure::OutOfRange, {}, {}};
    ps = n * powerOfTen(static_cast<int>(exponent));
  }
  else if (exponent < -38)
    ps = 0; // n < 10^38: far below half a picosecond
  else
  {
    const uint128 divisor = powerOfTen(static_cast<int>(-exponent));
    ps = n / divisor;
    if (2 * (n % divisor) >= divisor)
      ++ps;
  }
  if (ps > limit)
    return {Failure::OutOfRange, {}, {}};
  const auto magnitude = static_cast<std::uint64_t>(ps);
  return {Failure::None, TimeSpan(static_cast<std::int64_t>(negative ? 0ULL - magnitude : magnitude)), {}};
}

Result parse(QStringView text, const QString& defaultUnitId)
{
  text = text.trimmed();
  qsizetype i = 0;
  const qsizetype size = text.size();
  bool negative = false;
  if (i < size && (text[i] == QLatin1Char('-') || text[i] == QLatin1Char('+')))
    negative = text[i++] == QLatin1Char('-');

  uint128 digits = 0;
  int kept = 0;
  long long exponent = 0; // of the last kept digit
  bool anyDigit = false;
  bool afterPoint = false;
  for (; i < size; ++i)
  {
    const QChar c = text[i];
    if (c == QLatin1Char('.') && !afterPoint)
    {
      afterPoint = true;
      continue;
    }
    if (!isDigit(c))
      break;
    anyDigit = true;
    const int digit = c.unicode() - '0';
    if (kept == 0 && digit == 0)
    {
      if (afterPoint)
        --exponent; // a leading zero after the point
    }
    else if (kept < maxSignificantDigits)
    {
      digits = digits * 10 + static_cast<unsigned>(digit);
      ++kept;
      if (afterPoint)
        --exponent;
    }
    else if (!afterPoint)
      ++exponent; // a dropped digit before the point still counts
  }
  if (!anyDigit)
    return {Failure::NotADuration, {}, {}};

  // An exponent only when digits follow "e" and its sign; "5 e" would be the unit "e".
  if (i < size && (text[i] == QLatin1Char('e') || text[i] == QLatin1Char('E')))
  {
    qsizetype j = i + 1;
    bool negativeExponent = false;
    if (j < size && (text[j] == QLatin1Char('-') || text[j] == QLatin1Char('+')))
      negativeExponent = text[j++] == QLatin1Char('-');
    if (j < size && isDigit(text[j]))
    {
      long long value = 0;
      for (; j < size && isDigit(text[j]); ++j)
        value = std::min(value * 10 + (text[j].unicode() - '0'), 1000000LL); // saturates far beyond any range
      exponent += negativeExponent ? -value : value;
      i = j;
    }
  }

  QStringView unitText = text.mid(i).trimmed();
  QString unitId;
  if (unitText.isEmpty())
  {
    if (defaultUnitId.isEmpty())
      return {Failure::NotADuration, {}, {}};
    unitId = defaultUnitId;
  }
  else
  {
    unitId = TimeUnits::unitIdFromText(unitText);
    if (unitId.isEmpty())
      return {Failure::UnknownUnit, {}, unitText.toString()};
  }

  // One unit is multiplier * 10^k picoseconds.
  auto multiplier = static_cast<std::uint64_t>(TimeUnits::picoSecondsPerUnit(unitId));
  while (multiplier % 10 == 0)
  {
    multiplier /= 10;
    ++exponent;
  }
  return scaled(negative, digits, exponent, multiplier);
}

} // namespace

DefaultStringToTimeConverter::DefaultStringToTimeConverter() = default;

DefaultStringToTimeConverter::DefaultStringToTimeConverter(QStringView defaultUnitId) :
    m_defaultUnitId(TimeUnits::unitIdFromText(defaultUnitId))
{
  if (m_defaultUnitId.isEmpty())
    Raise(InvalidArgumentError(
        QCoreApplication::translate("RTE::DefaultStringToTimeConverter",
                                    "'%1' is not a time unit (known: s, ms, \u00B5s, ns, ps, min, h).")
            .arg(defaultUnitId.toString())));
}

DefaultStringToTimeConverter::~DefaultStringToTimeConverter() = default;

TimeSpan DefaultStringToTimeConverter::convert(QStringView text) const
{
  const Result result = parse(text, m_defaultUnitId);
  switch (result.failure)
  {
  case Failure::None:
    return result.span;
  case Failure::UnknownUnit:
    Raise(InvalidArgumentError(QCoreApplication::translate("RTE::DefaultStringToTimeConverter",
                                                           "'%1' is not a duration: unknown time unit '%2' "
                                                           "(known: s, ms, \u00B5s, us, ns, ps, min, h).")
                                   .arg(text.toString(), result.unitText)));
  case Failure::OutOfRange:
    Raise(OutOfRangeError(QCoreApplication::translate("RTE::DefaultStringToTimeConverter",
                                                      "The duration '%1' is out of range: a time span holds "
                                                      "at most about 106 days either way.")
                              .arg(text.toString())));
  case Failure::NotADuration:
    break;
  }
  Raise(InvalidArgumentError(QCoreApplication::translate("RTE::DefaultStringToTimeConverter",
                                                         "'%1' is not a duration: expected a number with '.' as "
                                                         "the decimal point and a time unit, such as 12.5 ms.")
                                 .arg(text.toString())));
}

std::optional<TimeSpan> DefaultStringToTimeConverter::tryConvert(QStringView text) const noexcept
{
  try
  {
    const Result result = parse(text, m_defaultUnitId);
    return result.failure == Failure::None ? std::optional<TimeSpan>(result.span) : std::nullopt;
  }
  catch (...)
  {
    return std::nullopt; // only allocation can throw here
  }
}

} // namespace RTE
