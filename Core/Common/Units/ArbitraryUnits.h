// A set made at run time for a quantity no predefined set describes: only a base unit,
// given to the constructor, to which callers may add targets.
//
//   RTE::ArbitraryUnits counts(QStringLiteral("counts"));
//   counts.AppendTargetUnit(QStringLiteral("kcounts"), QStringLiteral("kcounts"), 1000.0, 0.0);
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT ArbitraryUnits : public Units
{
public:
  // "ArbitraryUnits"
  static const QString TypeIdentifier;

  // A set with only the base unit (id, label); the id is the label when label is empty.
  explicit ArbitraryUnits(const QString& id = QString(), const QString& label = QString());
  ArbitraryUnits(const ArbitraryUnits&);
  ArbitraryUnits& operator=(const ArbitraryUnits&);
  ~ArbitraryUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;

  // Replaces the base id and label (an empty label becomes the id; sortOrder 0) and, when
  // clearTargets is set, removes every target. The unit's factor and offset are not used:
  // a base unit always has factor 1 and offset 0.
  void ChangeBaseUnit(const Unit& unit, bool clearTargets);
  void ChangeBaseUnit(const QString& id, const QString& label, bool clearTargets);
};

} // namespace RTE
