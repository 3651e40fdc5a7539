// Pressures; base pascal.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT PressureUnits : public Units
{
public:
  // "Pressure"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString Pascal;
  static const QString Millipascal;
  static const QString Kilopascal;
  static const QString Megapascal;
  static const QString Gigapascal;
  static const QString Millibar;
  static const QString Bar;
  static const QString Kilobar;
  static const QString PSI;

  PressureUnits();
  PressureUnits(const PressureUnits&);
  PressureUnits& operator=(const PressureUnits&);
  ~PressureUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
