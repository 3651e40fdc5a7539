#include <Core/Common/Units/TimeRelatedUnits.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Units/AccelerationUnits.h>
#include <Core/Common/Units/LengthUnits.h>
#include <Core/Common/Units/StrainAccelerationUnits.h>
#include <Core/Common/Units/StrainRate2Units.h>
#include <Core/Common/Units/StrainRateUnits.h>
#include <Core/Common/Units/StrainUnits.h>
#include <Core/Common/Units/TimeUnits.h>
#include <Core/Common/Units/UnitsRegistry.h>
#include <Core/Common/Units/VelocityUnits.h>

#include <cmath>
#include <functional>

namespace RTE
{

namespace
{

const Units& timeUnits()
{
  const Units* registered = UnitsRegistry::getInstance().findUnitsByType(TimeUnits::TypeIdentifier);
  if (registered)
    return *registered;
  static const TimeUnits fallback;
  return fallback;
}

using Power = std::function<double(double)>;

enum class Direction
{
  Integrate,     // rate -> quantity: x / U.factor
  Differentiate, // quantity -> rate: U.factor / x
};

QList<Unit> buildList(const Units& source, const Units& other, const QString& unitId, const Power& g,
                      Direction direction)
{
  const double x = g(source.GetScale(unitId, source.GetBaseUnitId()).getFactor());
  QList<Unit> units;
  const quint32 count = other.GetUnitCount();
  for (quint32 i = 0; i < count; ++i)
  {
    const Unit& u = other[i];
    const double factor = direction == Direction::Integrate ? x / u.factor : u.factor / x;
    units.append(Unit(u.id, u.label, factor, 0.0));
  }
  return units;
}

} // namespace

QList<Unit> getTimeRelatedUnits(const QString& unitId, double time, const QString& timeUnitId)
{
  const Units& time_ = timeUnits();
  const QString second = QStringLiteral("s");
  if (time == 0.0 || !time_.CanScale(timeUnitId, second))
    return {};
  const double t = time_.Convert(time, timeUnitId, second);
  const Power g1 = [t](double f) { return f * t; };
  const Power g2 = [t](double f) { return f * t * t; };

  const UnitsRegistry& registry = UnitsRegistry::getInstance();
  const Units* length = registry.findUnitsByType(LengthUnits::TypeIdentifier);
  const Units* velocity = registry.findUnitsByType(VelocityUnits::TypeIdentifier);
  const Units* acceleration = registry.findUnitsByType(AccelerationUnits::TypeIdentifier);
  const Units* strain = registry.findUnitsByType(StrainUnits::TypeIdentifier);
  const Units* strainRate = registry.findUnitsByType(StrainRateUnits::TypeIdentifier);
  const Units* strainAcceleration = registry.findUnitsByType(StrainAccelerationUnits::TypeIdentifier);
  const Units* strainRate2 = registry.findUnitsByType(StrainRate2Units::TypeIdentifier);
  const auto in = [&unitId](const Units* units) { return units && units->ContainsUnitId(unitId); };

  // Tried in this order; the first case that applies gives the result.
  if (length)
  {
    if (velocity && in(velocity))
      return buildList(*velocity, *length, unitId, g1, Direction::Integrate);
    if (velocity && in(length))
      return buildList(*length, *velocity, unitId, g1, Direction::Differentiate);
    if (acceleration && in(acceleration))
      return buildList(*acceleration, *length, unitId, g2, Direction::Integrate);
    if (acceleration && in(length))
      return buildList(*length, *acceleration, unitId, g2, Direction::Differentiate);
  }
  if (strain)
  {
    if (strainRate && in(strainRate))
      return buildList(*strainRate, *strain, unitId, g1, Direction::Integrate);
    if (strainRate && in(strain))
      return buildList(*strain, *strainRate, unitId, g1, Direction::Differentiate);
    if (strainAcceleration && in(strainAcceleration))
      return buildList(*strainAcceleration, *strain, unitId, g2, Direction::Integrate);
  }
  if (strainRate2 && strainAcceleration && in(strainRate2))
    return buildList(*strainRate2, *strainAcceleration, unitId, g2, Direction::Differentiate);
  return {};
}

QString GetOptimalUnitIdForTime(double time, const QString& timeUnitId)
{
  const Units& units = timeUnits();
  if (!units.ContainsUnitId(timeUnitId))
    Raise(InvalidArgumentError());
  const double a = std::abs(time);
  for (const QString& id : {TimeUnits::Hour, TimeUnits::Minute, TimeUnits::Second, TimeUnits::Millisecond,
                            TimeUnits::Microsecond, TimeUnits::Nanosecond})
  {
    if (units.Convert(a, timeUnitId, id) > 1.0)
      return id;
  }
  return TimeUnits::Picosecond;
}

} // namespace RTE
