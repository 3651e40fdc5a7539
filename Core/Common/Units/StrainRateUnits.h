// Strain rates; no other units.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT StrainRateUnits : public Units
{
public:
  // "StrainRate"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString OnePerSecond;

  StrainRateUnits();
  StrainRateUnits(const StrainRateUnits&);
  StrainRateUnits& operator=(const StrainRateUnits&);
  ~StrainRateUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
