// Absolute temperatures; base kelvin. "°C" carries the 273.15 offset.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT TemperatureUnits : public Units
{
public:
  // "Temperature"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString Kelvin;
  static const QString Celsius;

  TemperatureUnits();
  TemperatureUnits(const TemperatureUnits&);
  TemperatureUnits& operator=(const TemperatureUnits&);
  ~TemperatureUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
