// A unit set: the units of one physical dimension, a base unit, and the conversions
// between them. Concrete sets (LengthUnits, TimeUnits, ...) fill themselves in their
// constructors; this class holds the rules.
//
//   RTE::LengthUnits length;
//   double cm = length.Convert(25.4, RTE::LengthUnits::Millimeter, RTE::LengthUnits::Centimeter);  // 2.54
//   length.SetFilter({RTE::LengthUnits::Millimeter, RTE::LengthUnits::Micrometer});
//   length.GetAllUnitIds();  // {"mm", "µm"}
//
// The filter narrows what a user is offered: where it applies, ids outside a non-empty
// filter are treated as absent. Conversions (CanScale, GetScale, Convert) ignore it.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Unit.h>

#include <Zn/Utils/LinearScale.h>

#include <QList>
#include <QStringList>

#include <memory>
#include <vector>

namespace RTE
{

class CORECOMMON_EXPORT Units
{
public:
  // An id that no set holds.
  static const QString UNIT_INVALID;

  virtual ~Units();

  // A deep copy of the most derived set.
  [[nodiscard]] virtual std::unique_ptr<Units> Clone() const = 0;
  // The set's type identifier ("Length", "Time", ...).
  virtual QString GetTypeIdentifier() const = 0;

  const Unit& GetBaseUnit() const { return m_baseUnit; }
  const QString& GetBaseUnitId() const { return m_baseUnit.id; }

  // Appends a target whose sortOrder is GetUnitCount() at this moment. No duplicate check.
  void AppendTargetUnit(const QString& id, const QString& label, double factor, double offset);
  // Appends the unit as given, keeping its sortOrder. No duplicate check.
  void AppendTargetUnit(const Unit& unit);
  // Replaces label, factor and offset of the target with that id (its sortOrder stays),
  // or appends it as the four-argument AppendTargetUnit does. Never touches the base unit.
  void SetTargetUnit(const QString& id, const QString& label, double factor, double offset);
  // Removes the first target with that id and drops the id from the filter. The base
  // unit cannot be removed; unknown ids are ignored.
  void RemoveTargetUnit(const QString& id);
  void ClearAllTargetUnits();
  // Sets the sortOrder of the base unit or of the first target with that id; unknown ids
  // are ignored.
  void SetSortOrder(const QString& id, double sortOrder);

  // An empty list clears the filter; otherwise keeps the given ids that the set has, in
  // the given order.
  void SetFilter(const QStringList& ids);
  void ClearFilter();
  const QStringList& GetFilter() const { return m_filter; }

  // The id is the base or a target id and passes the filter (or ignoreFilter is set).
  bool ContainsUnitId(const QString& id, bool ignoreFilter = false) const;
  // Both ids are in the set; the filter is ignored.
  bool CanScale(const QString& fromId, const QString& toId) const;
  // The scale that turns a value in fromId into toId (unit = toId, empty description).
  // Throws RTE::VerificationFailed when either id is not in the set (filter ignored).
  Zn::LinearScale GetScale(const QString& fromId, const QString& toId) const;
  // GetScale(fromId, toId).getScaled(value); throws as GetScale.
  double Convert(double value, const QString& fromId, const QString& toId) const;

  // Base unit (unless filtered out) and the targets that pass the filter, by ascending
  // sortOrder (stable: equal keys keep base-then-insertion order).
  QList<Unit> GetAllUnits(bool ignoreFilter = false) const;
  QStringList GetAllUnitIds() const;
  QStringList GetAllUnitLabels() const;
  // Number of GetAllUnits(false).
  quint32 GetUnitCount() const;

  // With ignoreFilter every target, else those passing the filter; insertion order.
  QList<Unit> GetTargetUnits(bool ignoreFilter = false) const;
  // Ids of the targets that pass the filter, by ascending sortOrder.
  QStringList GetTargetUnitIds() const;

  // Label of the base or first matching target (filter ignored); empty when unknown.
  QString GetLabelForUnitId(const QString& id) const;

  // The unit at that position of GetAllUnits(false), as a reference into this set.
  // Throws RTE::OutOfRangeError when index >= GetUnitCount().
  Unit& operator[](quint32 index);
  const Unit& operator[](quint32 index) const;

  // Iterate the targets in insertion order (read-only, so ids stay consistent with the
  // filter).
  QList<Unit>::const_iterator begin() const { return m_targetUnits.cbegin(); }
  QList<Unit>::const_iterator end() const { return m_targetUnits.cend(); }

protected:
  Units();
  Units(const Units&);
  Units& operator=(const Units&);

  // Factor and offset of the base unit stay 1 and 0.
  void SetBaseUnitId(const QString& id, const QString& label, double sortOrder = 0.0);

private:
  bool HasFilter() const;
  bool HasUnitId(const QString& id) const;
  bool IsUnitIdPartOfFilter(const QString& id) const;
  Unit GetUnitForUnitId(const QString& id) const;
  QList<Unit> GetSortedAndFilteredTargetUnitList() const;
  QStringList GetTargetUnitLabels() const;
  // Base and targets by ascending sortOrder, pointing into this set.
  std::vector<const Unit*> sortedUnits(bool ignoreFilter) const;
  const Unit* findTarget(const QString& id) const;

  QList<Unit> m_targetUnits;
  Unit m_baseUnit;
  QStringList m_filter;
};

} // namespace RTE
