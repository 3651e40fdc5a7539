#include <Core/Common/Units/AutoFormatValueWithUnit.h>

#include <Core/Common/Units/UnitsRegistry.h>

#include <cmath>
#include <optional>

namespace Common
{

namespace
{

// Factors given as 0.001 or 1e-6 are not exact in binary; their ratios still land
// within a hair of an integer power of ten.
bool isPowerOfTen(double ratio)
{
  if (!(ratio > 0.0) || !std::isfinite(ratio))
    return false;
  const double exponent = std::log10(ratio);
  return std::abs(exponent - std::round(exponent)) < 1e-9;
}

// 0 inside [1, 1000), else how many decades the magnitude lies outside.
double decadesOutsideBand(double magnitude)
{
  if (magnitude < 1.0)
    return -std::log10(magnitude);
  if (magnitude >= 1000.0)
    return std::log10(magnitude) - 3.0;
  return 0.0;
}

} // namespace

QString BestReadingUnitId(double value, const QString& unitId)
{
  const RTE::UnitsRegistry& registry = RTE::UnitsRegistry::getInstance();
  if (value == 0.0 || !std::isfinite(value) || !registry.containsUnitId(unitId, true))
    return unitId;
  const RTE::Units& units = registry.getUnits(unitId, true);
  std::optional<RTE::Unit> given;
  for (const RTE::Unit& unit : units.GetAllUnits(true))
  {
    if (unit.id == unitId)
      given = unit;
  }
  if (!given || given->factor == 0.0)
    return unitId;

  struct Choice
  {
    QString id;
    bool inBand;
    double decades;
    double factor;
  };
  const auto choiceFor = [&](const RTE::Unit& unit)
  {
    const double magnitude = std::abs(units.Convert(value, unitId, unit.id));
    const double decades = decadesOutsideBand(magnitude);
    return Choice{unit.id, decades == 0.0 && magnitude >= 1.0, decades, unit.factor};
  };
  const auto better = [](const Choice& a, const Choice& b)
  {
    if (a.inBand != b.inBand)
      return a.inBand;
    if (a.inBand)
      return a.factor > b.factor;
    return a.decades < b.decades;
  };

  Choice best = choiceFor(*given);
  for (const RTE::Unit& unit : units.GetAllUnits(false))
  {
    if (unit.id == unitId || unit.offset != given->offset || !isPowerOfTen(unit.factor / given->factor))
      continue;
    const Choice candidate = choiceFor(unit);
    if (better(candidate, best))
      best = candidate;
  }
  return best.id;
}

QString AutoFormatValueWithUnit(double value, const QString& unitId, const NumberFormatter& formatter)
{
  const RTE::UnitsRegistry& registry = RTE::UnitsRegistry::getInstance();
  const QString id = BestReadingUnitId(value, unitId);
  QString label = unitId;
  double shown = value;
  if (registry.containsUnitId(unitId, true))
  {
    const RTE::Units& units = registry.getUnits(unitId, true);
    shown = id == unitId ? value : units.Convert(value, unitId, id);
    label = units.GetLabelForUnitId(id);
  }
  const QString number = formatter.ToString(shown);
  return label.isEmpty() ? number : QStringLiteral("%1 %2").arg(number, label);
}

} // namespace Common
