#include <Core/Common/Units/ArbitraryUnits.h>

namespace RTE
{

const QString ArbitraryUnits::TypeIdentifier = QStringLiteral("ArbitraryUnits");

ArbitraryUnits::ArbitraryUnits(const QString& id, const QString& label)
{
  SetBaseUnitId(id, label.isEmpty() ? id : label, 0.0);
}

ArbitraryUnits::ArbitraryUnits(const ArbitraryUnits&) = default;
ArbitraryUnits& ArbitraryUnits::operator=(const ArbitraryUnits&) = default;
ArbitraryUnits::~ArbitraryUnits() = default;

std::unique_ptr<Units> ArbitraryUnits::Clone() const
{
  return std::make_unique<ArbitraryUnits>(*this);
}

QString ArbitraryUnits::GetTypeIdentifier() const
{
  return QStringLiteral("ArbitraryUnits");
}

void ArbitraryUnits::ChangeBaseUnit(const Unit& unit, bool clearTargets)
{
  ChangeBaseUnit(unit.id, unit.label, clearTargets);
}

void ArbitraryUnits::ChangeBaseUnit(const QString& id, const QString& label, bool clearTargets)
{
  SetBaseUnitId(id, label.isEmpty() ? id : label, 0.0);
  if (clearTargets)
    ClearAllTargetUnits();
}

} // namespace RTE
