// Swirling strength per second to the fourth; no other units.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT SwirlingStrengthDimensionfulUnits : public Units
{
public:
  // "SwirlingStrengthDimensionful"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString OnePerSecond4;

  SwirlingStrengthDimensionfulUnits();
  SwirlingStrengthDimensionfulUnits(const SwirlingStrengthDimensionfulUnits&);
  SwirlingStrengthDimensionfulUnits& operator=(const SwirlingStrengthDimensionfulUnits&);
  ~SwirlingStrengthDimensionfulUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
