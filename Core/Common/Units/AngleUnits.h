// Plane angles; base radian.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT AngleUnits : public Units
{
public:
  // "Angle"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString Radian;
  static const QString Degree;

  AngleUnits();
  AngleUnits(const AngleUnits&);
  AngleUnits& operator=(const AngleUnits&);
  ~AngleUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
