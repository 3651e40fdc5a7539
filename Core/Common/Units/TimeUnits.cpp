#include <Core/Common/Units/TimeUnits.h>

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

} // namespace RTE
