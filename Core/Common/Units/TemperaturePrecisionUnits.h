// Temperature differences (precisions, tolerances): kelvin and degree Celsius differ by no offset,
// unlike TemperatureUnits, which describes absolute temperatures.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT TemperaturePrecisionUnits : public Units
{
public:
  // "TemperaturePrecision"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString KelvinPrecisionId;
  static const QString CelsiusPrecisionId;

  TemperaturePrecisionUnits();
  TemperaturePrecisionUnits(const TemperaturePrecisionUnits&);
  TemperaturePrecisionUnits& operator=(const TemperaturePrecisionUnits&);
  ~TemperaturePrecisionUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
