// Second time derivative of strain; no other units.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT StrainAccelerationUnits : public Units
{
public:
  // "StrainAcceleration"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString OnePerSecond2;

  StrainAccelerationUnits();
  StrainAccelerationUnits(const StrainAccelerationUnits&);
  StrainAccelerationUnits& operator=(const StrainAccelerationUnits&);
  ~StrainAccelerationUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
