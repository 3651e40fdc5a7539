// Values without a unit: the base id and label are empty.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT DimensionlessUnits : public Units
{
public:
  // "Dimensionless"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString Dimensionless;

  DimensionlessUnits();
  DimensionlessUnits(const DimensionlessUnits&);
  DimensionlessUnits& operator=(const DimensionlessUnits&);
  ~DimensionlessUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
