// The units in which one raw value can be shown, and which of them the user prefers.
//
// The base unit is the raw value; every target carries the conversion straight from raw
// to that unit, so GetScale(GetBaseUnitId(), target) is the display scale.
//
//   // Raw counts of 0.01 mm each:
//   auto units = RTE::PreferredUnits::fromLinearScale(Zn::LinearScale(0.01, 0.0, "mm", ""),
//                                                     std::nullopt, "raw", "counts");
//   units.Convert(250.0, "raw", "cm");  // 0.25
//   units.getPreferredUnitId();         // "mm"
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

#include <Zn/Utils/LinearScale.h>

#include <optional>

namespace RTE
{

class CORECOMMON_EXPORT PreferredUnits : public Units
{
public:
  // "PreferredUnits"
  static const QString TypeIdentifier;

  // Base unit (id, label), no targets, no preferred id.
  explicit PreferredUnits(const QString& id = QString(), const QString& label = QString());
  // The other set's base id and label (sortOrder 0), its filtered targets in insertion
  // order with their own factors, offsets and sortOrders, and its filter; the preferred
  // id is the base id.
  explicit PreferredUnits(const Units& other);
  PreferredUnits(const PreferredUnits&);
  PreferredUnits& operator=(const PreferredUnits&);
  ~PreferredUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;

  // A set for raw values that `scale` turns into scale.getUnit(): one target for every
  // unit of the registered set holding that unit (and, when time is given and not 0, for
  // every unit of RTE::getTimeRelatedUnits(unit, time, "µs")), each converting raw values
  // directly. With an unknown unit or a zero factor only the base unit, no preferred id.
  static PreferredUnits fromLinearScale(const Zn::LinearScale& scale, std::optional<double> time, const QString& id,
                                        const QString& label);

  // New base unit (the id is the label when label is empty); removes every target.
  void changeBaseUnit(const QString& id, const QString& label);
  // Removes every target; base id and label become empty.
  void clear();
  // The base id is empty and there are no targets.
  bool isEmpty() const;

  const QString& getPreferredUnitId() const { return m_preferredUnitId; }
  void setPreferredUnitId(const QString& id);

private:
  QString m_preferredUnitId;
};

} // namespace RTE
