// The process-wide registry of unit sets: answers questions about any unit id without the
// caller knowing its dimension.
//
//   auto& registry = RTE::UnitsRegistry::getInstance();
//   registry.getLabelForUnitId(QStringLiteral("m/s^2"));          // "m/s²"
//   registry.findScale(QStringLiteral("mm"), QStringLiteral("cm")); // factor 0.1
//
// The registry is created empty on first use; the host fills it at start-up, usually with
// RTE::registerDefaultUnits(). The first registration of a type identifier wins.
// Registration is not locked: register during start-up, before concurrent readers exist.
// Only getUnits throws; every other query falls back as documented below.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/EmptyUnits.h>
#include <Core/Common/Units/Units.h>

#include <Zn/Utils/LinearScale.h>

#include <QStringList>

#include <memory>
#include <vector>

namespace RTE
{

class CORECOMMON_EXPORT UnitsRegistry
{
public:
  // The one registry, created on first call (thread-safe) and kept until the process ends.
  static std::shared_ptr<UnitsRegistry> getSharedInstance();
  static UnitsRegistry& getInstance();

  UnitsRegistry(const UnitsRegistry&) = delete;
  UnitsRegistry& operator=(const UnitsRegistry&) = delete;
  ~UnitsRegistry();

  // Appends the set unless one with the same type identifier is registered already, in
  // which case the new set is dropped. A null pointer is ignored.
  void registerUnits(std::unique_ptr<Units> units);
  // Removes every registered set.
  void clear();

  // A set with that type identifier is registered.
  bool contains(const QString& typeIdentifier) const;
  // The registered set with that type identifier, or nullptr.
  const Units* findUnitsByType(const QString& typeIdentifier) const;
  Units* findUnitsByType(const QString& typeIdentifier);
  // Type identifiers of the registered sets, in registration order.
  QStringList getTypeIdentifiers() const;

  // Some registered set contains the id.
  bool containsUnitId(const QString& id, bool ignoreFilter = false) const;
  // The first registered set containing the id; throws RTE::InvalidArgumentError
  // "No units object with the given unit id (<id>) found." when none does.
  const Units& getUnits(const QString& id, bool ignoreFilter = false) const;
  Units& getUnits(const QString& id, bool ignoreFilter = false);
  // The scale of the set holding fromId when it can scale to toId; the identity scale
  // (factor 1, offset 0, empty unit and description) in every other case.
  Zn::LinearScale findScale(const QString& fromId, const QString& toId, bool ignoreFilter = false) const;
  // Base id of the set containing the id, or the id itself.
  QString getBaseUnitForUnitId(const QString& id, bool ignoreFilter = false) const;
  // Label from the set containing the id (filter applied), or the id itself.
  QString getLabelForUnitId(const QString& id) const;
  // Labels of every unit of the set containing the id, in operator[] order; empty when
  // no set does.
  QStringList getLabelsForUnitId(const QString& id) const;
  // "pixel", "voxel" and unknown ids get an "s" appended; known ids give their label.
  QString getPluralUnitLabel(const QString& id) const;
  // Both ids known: the set of idA can scale between them. Otherwise: idA == idB.
  bool isSameUnits(const QString& idA, const QString& idB) const;

  // The placeholder set for values shown without unit; never part of the queries above.
  const EmptyUnits& getEmptyUnits() const { return m_emptyUnits; }

private:
  UnitsRegistry();
  const Units* find(const QString& id, bool ignoreFilter) const;

  std::vector<std::unique_ptr<Units>> m_units;
  EmptyUnits m_emptyUnits;
};

} // namespace RTE
