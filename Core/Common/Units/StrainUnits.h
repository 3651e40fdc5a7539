// Strain; base unit strain.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT StrainUnits : public Units
{
public:
  // "Strain"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString Strain;
  static const QString MicroStrain;
  static const QString MilliStrain;
  static const QString PercentStrain;

  StrainUnits();
  StrainUnits(const StrainUnits&);
  StrainUnits& operator=(const StrainUnits&);
  ~StrainUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
