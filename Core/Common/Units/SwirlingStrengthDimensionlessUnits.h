// Dimensionless swirling strength, with a percent unit.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT SwirlingStrengthDimensionlessUnits : public Units
{
public:
  // "SwirlingStrengthDimensionless"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString StrainFourthPower;
  static const QString Percent;

  SwirlingStrengthDimensionlessUnits();
  SwirlingStrengthDimensionlessUnits(const SwirlingStrengthDimensionlessUnits&);
  SwirlingStrengthDimensionlessUnits& operator=(const SwirlingStrengthDimensionlessUnits&);
  ~SwirlingStrengthDimensionlessUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
