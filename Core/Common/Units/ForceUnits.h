// Forces; base newton.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT ForceUnits : public Units
{
public:
  // "Force"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString Newton;
  static const QString MilliNewton;
  static const QString KiloNewton;
  static const QString MegaNewton;
  static const QString GigaNewton;

  ForceUnits();
  ForceUnits(const ForceUnits&);
  ForceUnits& operator=(const ForceUnits&);
  ~ForceUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
