#include <Core/Common/Units/UnitsRegistry.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Units/DefaultUnits.h>
#include <Core/Common/Units/LengthUnits.h>

#include "UnitsLog_p.h"

#include <QCoreApplication>

Q_LOGGING_CATEGORY(lcUnits, "Core.Units", QtInfoMsg)

namespace RTE
{

UnitsRegistry::UnitsRegistry() = default;
UnitsRegistry::~UnitsRegistry() = default;

std::shared_ptr<UnitsRegistry> UnitsRegistry::getSharedInstance()
{
  // Starts empty: the host decides at start-up which sets come first (registerDefaultUnits
  // or its own), since the first registration of a type wins.
  static const std::shared_ptr<UnitsRegistry> instance(new UnitsRegistry);
  return instance;
}

UnitsRegistry& UnitsRegistry::getInstance()
{
  static UnitsRegistry& instance = *getSharedInstance();
  return instance;
}

void UnitsRegistry::registerUnits(std::unique_ptr<Units> units)
{
  if (!units)
    return;
  const QString type = units->GetTypeIdentifier();
  if (contains(type))
  {
    qCDebug(lcUnits) << "A unit set of type" << type << "is registered already; the new one is dropped";
    return;
  }
  m_units.push_back(std::move(units));
}

void UnitsRegistry::clear()
{
  m_units.clear();
}

bool UnitsRegistry::contains(const QString& typeIdentifier) const
{
  return findUnitsByType(typeIdentifier) != nullptr;
}

const Units* UnitsRegistry::findUnitsByType(const QString& typeIdentifier) const
{
  for (const auto& units : m_units)
  {
    if (units->GetTypeIdentifier() == typeIdentifier)
      return units.get();
  }
  return nullptr;
}

Units* UnitsRegistry::findUnitsByType(const QString& typeIdentifier)
{
  return const_cast<Units*>(std::as_const(*this).findUnitsByType(typeIdentifier));
}

QStringList UnitsRegistry::getTypeIdentifiers() const
{
  QStringList types;
  for (const auto& units : m_units)
    types.append(units->GetTypeIdentifier());
  return types;
}

const Units* UnitsRegistry::find(const QString& id, bool ignoreFilter) const
{
  for (const auto& units : m_units)
  {
    if (units->ContainsUnitId(id, ignoreFilter))
      return units.get();
  }
  return nullptr;
}

bool UnitsRegistry::containsUnitId(const QString& id, bool ignoreFilter) const
{
  return find(id, ignoreFilter) != nullptr;
}

const Units& UnitsRegistry::getUnits(const QString& id, bool ignoreFilter) const
{
  const Units* units = find(id, ignoreFilter);
  if (!units)
    Raise(InvalidArgumentError(
        QCoreApplication::translate("RTE::UnitsRegistry", "No units object with the given unit id (%1) found.")
            .arg(id)));
  return *units;
}

Units& UnitsRegistry::getUnits(const QString& id, bool ignoreFilter)
{
  return const_cast<Units&>(std::as_const(*this).getUnits(id, ignoreFilter));
}

Zn::LinearScale UnitsRegistry::findScale(const QString& fromId, const QString& toId, bool ignoreFilter) const
{
  const Units* units = find(fromId, ignoreFilter);
  if (units && containsUnitId(toId, ignoreFilter) && units->CanScale(fromId, toId))
    return units->GetScale(fromId, toId);
  qCDebug(lcUnits) << "No conversion from" << fromId << "to" << toId << "; using the identity";
  return Zn::LinearScale(1.0, 0.0, QString(), QString());
}

QString UnitsRegistry::getBaseUnitForUnitId(const QString& id, bool ignoreFilter) const
{
  const Units* units = find(id, ignoreFilter);
  return units ? units->GetBaseUnitId() : id;
}

QString UnitsRegistry::getLabelForUnitId(const QString& id) const
{
  const Units* units = find(id, false);
  return units ? units->GetLabelForUnitId(id) : id;
}

QStringList UnitsRegistry::getLabelsForUnitId(const QString& id) const
{
  const Units* units = find(id, false);
  return units ? units->GetAllUnitLabels() : QStringList();
}

QString UnitsRegistry::getPluralUnitLabel(const QString& id) const
{
  // Image lengths are counted ("3 pixels"); physical units keep their symbol.
  if (id == LengthUnits::Pixel || id == LengthUnits::Voxel || !containsUnitId(id))
    return QStringLiteral("%1s").arg(id);
  return getLabelForUnitId(id);
}

bool UnitsRegistry::isSameUnits(const QString& idA, const QString& idB) const
{
  const Units* units = find(idA, false);
  if (units && containsUnitId(idB))
    return units->CanScale(idA, idB);
  return idA == idB;
}

} // namespace RTE
