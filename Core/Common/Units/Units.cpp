#include <Core/Common/Units/Units.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>

#include <QCoreApplication>

#include <algorithm>

namespace RTE
{

const QString Units::UNIT_INVALID = QStringLiteral("__invalid__");

Units::Units() = default;
Units::Units(const Units&) = default;
Units& Units::operator=(const Units&) = default;
Units::~Units() = default;

void Units::SetBaseUnitId(const QString& id, const QString& label, double sortOrder)
{
  m_baseUnit = Unit(id, label, 1.0, 0.0, sortOrder);
}

void Units::AppendTargetUnit(const QString& id, const QString& label, double factor, double offset)
{
  // The count is taken before appending, so with no filter the units list in the order
  // they were added, base first.
  m_targetUnits.append(Unit(id, label, factor, offset, static_cast<double>(GetUnitCount())));
}

void Units::AppendTargetUnit(const Unit& unit)
{
  m_targetUnits.append(unit);
}

void Units::SetTargetUnit(const QString& id, const QString& label, double factor, double offset)
{
  for (Unit& unit : m_targetUnits)
  {
    if (unit.id == id)
    {
      unit.label = label;
      unit.factor = factor;
      unit.offset = offset;
      return;
    }
  }
  AppendTargetUnit(id, label, factor, offset);
}

void Units::RemoveTargetUnit(const QString& id)
{
  const auto it =
      std::find_if(m_targetUnits.begin(), m_targetUnits.end(), [&id](const Unit& unit) { return unit.id == id; });
  if (it == m_targetUnits.end())
    return;
  m_targetUnits.erase(it);
  m_filter.removeAll(id);
}

void Units::ClearAllTargetUnits()
{
  m_targetUnits.clear();
}

void Units::SetSortOrder(const QString& id, double sortOrder)
{
  if (id == m_baseUnit.id)
  {
    m_baseUnit.sortOrder = sortOrder;
    return;
  }
  for (Unit& unit : m_targetUnits)
  {
    if (unit.id == id)
    {
      unit.sortOrder = sortOrder;
      return;
    }
  }
}

void Units::SetFilter(const QStringList& ids)
{
  m_filter.clear();
  for (const QString& id : ids)
  {
    if (HasUnitId(id))
      m_filter.append(id);
  }
}

void Units::ClearFilter()
{
  m_filter.clear();
}

bool Units::ContainsUnitId(const QString& id, bool ignoreFilter) const
{
  return HasUnitId(id) && (ignoreFilter || IsUnitIdPartOfFilter(id));
}

bool Units::CanScale(const QString& fromId, const QString& toId) const
{
  return HasUnitId(fromId) && HasUnitId(toId);
}

Zn::LinearScale Units::GetScale(const QString& fromId, const QString& toId) const
{
  if (!CanScale(fromId, toId))
    Raise(VerificationFailed(
        QCoreApplication::translate("RTE::Units", "At least one unit id is not part of the units object.")));
  const Unit from = GetUnitForUnitId(fromId);
  const Unit to = GetUnitForUnitId(toId);
  return Zn::LinearScale(from.factor / to.factor, (from.offset - to.offset) / to.factor, toId, QString());
}

double Units::Convert(double value, const QString& fromId, const QString& toId) const
{
  return GetScale(fromId, toId).getScaled(value);
}

std::vector<const Unit*> Units::sortedUnits(bool ignoreFilter) const
{
  std::vector<const Unit*> units;
  units.reserve(static_cast<size_t>(m_targetUnits.size()) + 1);
  if (ignoreFilter || IsUnitIdPartOfFilter(m_baseUnit.id))
    units.push_back(&m_baseUnit);
  for (const Unit& unit : m_targetUnits)
  {
    if (ignoreFilter || IsUnitIdPartOfFilter(unit.id))
      units.push_back(&unit);
  }
  std::stable_sort(units.begin(), units.end(),
                   [](const Unit* a, const Unit* b) { return a->sortOrder < b->sortOrder; });
  return units;
}

QList<Unit> Units::GetAllUnits(bool ignoreFilter) const
{
  QList<Unit> units;
  for (const Unit* unit : sortedUnits(ignoreFilter))
    units.append(*unit);
  return units;
}

QStringList Units::GetAllUnitIds() const
{
  QStringList ids;
  for (const Unit* unit : sortedUnits(false))
    ids.append(unit->id);
  return ids;
}

QStringList Units::GetAllUnitLabels() const
{
  QStringList labels;
  for (const Unit* unit : sortedUnits(false))
    labels.append(unit->label);
  return labels;
}

quint32 Units::GetUnitCount() const
{
  return static_cast<quint32>(sortedUnits(false).size());
}

QList<Unit> Units::GetTargetUnits(bool ignoreFilter) const
{
  if (ignoreFilter)
    return m_targetUnits;
  QList<Unit> units;
  for (const Unit& unit : m_targetUnits)
  {
    if (IsUnitIdPartOfFilter(unit.id))
      units.append(unit);
  }
  return units;
}

QList<Unit> Units::GetSortedAndFilteredTargetUnitList() const
{
  QList<Unit> units = GetTargetUnits(false);
  std::stable_sort(units.begin(), units.end(), [](const Unit& a, const Unit& b) { return a.sortOrder < b.sortOrder; });
  return units;
}

QStringList Units::GetTargetUnitIds() const
{
  QStringList ids;
  for (const Unit& unit : GetSortedAndFilteredTargetUnitList())
    ids.append(unit.id);
  return ids;
}

QStringList Units::GetTargetUnitLabels() const
{
  QStringList labels;
  for (const Unit& unit : GetSortedAndFilteredTargetUnitList())
    labels.append(unit.label);
  return labels;
}

QString Units::GetLabelForUnitId(const QString& id) const
{
  if (id == m_baseUnit.id)
    return m_baseUnit.label;
  const Unit* target = findTarget(id);
  return target ? target->label : QString();
}

const Unit& Units::operator[](quint32 index) const
{
  const std::vector<const Unit*> units = sortedUnits(false);
  if (index >= units.size())
    Raise(OutOfRangeError());
  return *units[index];
}

Unit& Units::operator[](quint32 index)
{
  // The units live in this (non-const) set; only the lookup is shared.
  return const_cast<Unit&>(std::as_const(*this)[index]);
}

bool Units::HasFilter() const
{
  return !m_filter.isEmpty();
}

bool Units::HasUnitId(const QString& id) const
{
  return id == m_baseUnit.id || findTarget(id) != nullptr;
}

bool Units::IsUnitIdPartOfFilter(const QString& id) const
{
  return !HasFilter() || m_filter.contains(id, Qt::CaseSensitive);
}

Unit Units::GetUnitForUnitId(const QString& id) const
{
  if (id == m_baseUnit.id)
    return m_baseUnit;
  const Unit* target = findTarget(id);
  return target ? *target : Unit();
}

const Unit* Units::findTarget(const QString& id) const
{
  for (const Unit& unit : m_targetUnits)
  {
    if (unit.id == id)
      return &unit;
  }
  return nullptr;
}

} // namespace RTE
