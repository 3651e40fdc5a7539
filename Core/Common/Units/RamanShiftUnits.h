// Raman shifts in wavenumbers; no other units.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT RamanShiftUnits : public Units
{
public:
  // "Raman Shift"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString RamanShift;

  RamanShiftUnits();
  RamanShiftUnits(const RamanShiftUnits&);
  RamanShiftUnits& operator=(const RamanShiftUnits&);
  ~RamanShiftUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
