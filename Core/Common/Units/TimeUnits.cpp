#include <Core/Common/Units/TimeUnits.h>

#include <array>

namespace RTE
{

const QString TimeUnits::TypeIdentifier = QStringLiteral("Time");
const QString TimeUnits::Second = QStringLiteral("s");
const QString TimeUnits::Millisecond = QStringLiteral("ms");
const QString TimeUnits::Microsecond = QStringLiteral("\u00B5s");
const QString TimeUnits::Nanosecond = QStringLiteral("ns");
const QString TimeUnits::Picosecond = QStringLiteral("ps");
const QString TimeUnits::Minute = QStringLiteral("min");
const QString TimeUnits::Hour = QStringLiteral("h");

TimeUnits::TimeUnits()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral("s"), QStringLiteral("s"), 0.0);
  AppendTargetUnit(QStringLiteral("ms"), QStringLiteral("ms"), 0.001, 0.0);
  AppendTargetUnit(QStringLiteral("\u00B5s"), QStringLiteral("\u00B5s"), 1e-6, 0.0);
  AppendTargetUnit(QStringLiteral("ns"), QStringLiteral("ns"), 1e-9, 0.0);
  AppendTargetUnit(QStringLiteral("ps"), QStringLiteral("ps"), 1e-12, 0.0);
  AppendTargetUnit(QStringLiteral("min"), QStringLiteral("min"), 60.0, 0.0);
  AppendTargetUnit(QStringLiteral("h"), QStringLiteral("h"), 3600.0, 0.0);
}

TimeUnits::TimeUnits(const TimeUnits&) = default;
TimeUnits& TimeUnits::operator=(const TimeUnits&) = default;
TimeUnits::~TimeUnits() = default;

std::unique_ptr<Units> TimeUnits::Clone() const
{
  return std::make_unique<TimeUnits>(*this);
}

QString TimeUnits::GetTypeIdentifier() const
{
  return QStringLiteral("Time");
}

namespace
{

struct UnitLength
{
  const char16_t* id;
  std::int64_t picoSeconds;
  bool decimal;
};

// Largest first, as largestUnitIdFor walks them.
constexpr std::array<UnitLength, 7> unitLengths{{
    {u"h", 3600000000000000, false},
    {u"min", 60000000000000, false},
    {u"s", 1000000000000, true},
    {u"ms", 1000000000, true},
    {u"\u00B5s", 1000000, true},
    {u"ns", 1000, true},
    {u"ps", 1, true},
}};

const UnitLength* findUnit(QStringView unitId)
{
  for (const UnitLength& unit : unitLengths)
  {
    if (unitId == QStringView(unit.id))
      return &unit;
  }
  return nullptr;
}

} // namespace

QString TimeUnits::unitIdFromText(QStringView text)
{
  if (const UnitLength* unit = findUnit(text))
    return QString::fromUtf16(unit->id);
  struct Alias
  {
    const char16_t* text;
    const char16_t* id;
  };
  static constexpr Alias aliases[] = {
      {u"us", u"\u00B5s"},  {u"\u03BCs", u"\u00B5s"}, {u"sec", u"s"},   {u"minute", u"min"},
      {u"minutes", u"min"}, {u"hour", u"h"},          {u"hours", u"h"},
  };
  for (const Alias& alias : aliases)
  {
    if (text == QStringView(alias.text))
      return QString::fromUtf16(alias.id);
  }
  return {};
}

std::int64_t TimeUnits::picoSecondsPerUnit(QStringView unitId)
{
  const UnitLength* unit = findUnit(unitId);
  return unit ? unit->picoSeconds : 0;
}

bool TimeUnits::isDecimalUnitId(QStringView unitId)
{
  const UnitLength* unit = findUnit(unitId);
  return unit && unit->decimal;
}

QString TimeUnits::largestUnitIdFor(TimeSpan span, bool decimalOnly)
{
  if (span == TimeSpan())
    return QStringLiteral("s");
  // Compared as negatives: -Minimum() does not exist.
  const std::int64_t negative = span.ToPicoSeconds() < 0 ? span.ToPicoSeconds() : -span.ToPicoSeconds();
  for (const UnitLength& unit : unitLengths)
  {
    if ((unit.decimal || !decimalOnly) && negative <= -unit.picoSeconds)
      return QString::fromUtf16(unit.id);
  }
  return QStringLiteral("ps");
}

} // namespace RTE
