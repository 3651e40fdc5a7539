// Concentrations as pH; no other units.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT ConcentrationUnits : public Units
{
public:
  // "Concentration"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString pH;

  ConcentrationUnits();
  ConcentrationUnits(const ConcentrationUnits&);
  ConcentrationUnits& operator=(const ConcentrationUnits&);
  ~ConcentrationUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
