#include <Core/Common/Units/PreferredUnits.h>

#include <Core/Common/Units/TimeRelatedUnits.h>
#include <Core/Common/Units/TimeUnits.h>
#include <Core/Common/Units/UnitsRegistry.h>

#include <algorithm>

namespace RTE
{

const QString PreferredUnits::TypeIdentifier = QStringLiteral("PreferredUnits");

PreferredUnits::PreferredUnits(const QString& id, const QString& label)
{
  SetBaseUnitId(id, label, 0.0);
}

PreferredUnits::PreferredUnits(const Units& other)
{
  SetBaseUnitId(other.GetBaseUnitId(), other.GetBaseUnit().label, 0.0);
  for (const Unit& unit : other.GetTargetUnits(false))
    AppendTargetUnit(unit);
  SetFilter(other.GetFilter());
  m_preferredUnitId = other.GetBaseUnitId();
}

PreferredUnits::PreferredUnits(const PreferredUnits&) = default;
PreferredUnits& PreferredUnits::operator=(const PreferredUnits&) = default;
PreferredUnits::~PreferredUnits() = default;

std::unique_ptr<Units> PreferredUnits::Clone() const
{
  return std::make_unique<PreferredUnits>(*this);
}

QString PreferredUnits::GetTypeIdentifier() const
{
  return QStringLiteral("PreferredUnits");
}

PreferredUnits PreferredUnits::fromLinearScale(const Zn::LinearScale& scale, std::optional<double> time,
                                               const QString& id, const QString& label)
{
  PreferredUnits result(id, label);
  const QString& u = scale.getUnit();
  const UnitsRegistry& registry = UnitsRegistry::getInstance();
  if (!registry.containsUnitId(u, true))
    return result;
  const Units& set = registry.getUnits(u, true);

  // F and O convert the scale's unit into the set's base unit.
  double F = 1.0;
  double O = 0.0;
  if (u != set.GetBaseUnitId())
  {
    const auto target = std::find_if(set.begin(), set.end(), [&u](const Unit& unit) { return unit.id == u; });
    if (target == set.end())
      return result;
    F = target->factor;
    O = target->offset;
  }
  const double f = scale.getFactor();
  const double o = scale.getOffset();
  if (f == 0.0)
    return result;

  for (const Unit& unit : set.GetAllUnits(true))
    result.AppendTargetUnit(unit.id, unit.label, unit.factor / F / f, ((unit.offset - O) / F - o) / f);
  if (time && *time != 0.0)
  {
    for (const Unit& unit : getTimeRelatedUnits(u, *time, TimeUnits::Microsecond))
      result.AppendTargetUnit(unit.id, unit.label, 1.0 / unit.factor / f, (-O / F - o) / f);
  }
  result.m_preferredUnitId = u;
  return result;
}

void PreferredUnits::changeBaseUnit(const QString& id, const QString& label)
{
  SetBaseUnitId(id, label.isEmpty() ? id : label, 0.0);
  ClearAllTargetUnits();
}

void PreferredUnits::clear()
{
  ClearAllTargetUnits();
  SetBaseUnitId(QString(), QString(), 0.0);
}

bool PreferredUnits::isEmpty() const
{
  return GetBaseUnitId().isEmpty() && GetTargetUnitIds().isEmpty();
}

void PreferredUnits::setPreferredUnitId(const QString& id)
{
  m_preferredUnitId = id;
}

} // namespace RTE
