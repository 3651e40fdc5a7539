// Squared strain, with a percent unit.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT StrainRate2Units : public Units
{
public:
  // "StrainRate2"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString StrainSquared;
  static const QString Percent;

  StrainRate2Units();
  StrainRate2Units(const StrainRate2Units&);
  StrainRate2Units& operator=(const StrainRate2Units&);
  ~StrainRate2Units() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
