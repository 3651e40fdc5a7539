// One unit of a unit set: its id, the label shown to users, and its conversion to the
// set's base unit (value in base = value * factor + offset).
//
//   RTE::Unit celsius(QStringLiteral("\u00B0C"), QStringLiteral("\u00B0C"), 1.0, 273.15);
//   double kelvin = 20.0 * celsius.factor + celsius.offset;  // 293.15
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>

namespace RTE
{

class CORECOMMON_EXPORT Unit
{
public:
  // Empty id and label, factor 1, offset 0, sortOrder 0.
  Unit() = default;
  // sortOrder 0.
  Unit(const QString& id, const QString& label, double factor, double offset);
  Unit(const QString& id, const QString& label, double factor, double offset, double sortOrder);

  friend bool operator==(const Unit&, const Unit&) = default;

  QString id;           // the key used everywhere ("mm")
  QString label;        // the text shown to a user ("m/s²" for the id "m/s^2")
  double factor = 1.0;  // how many base units one of this unit is
  double offset = 0.0;  // additive part of the conversion to the base unit
  double sortOrder = 0; // listing position key; lower comes first
};

} // namespace RTE
