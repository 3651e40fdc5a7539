// Refractive power; base diopter.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT DiopterUnits : public Units
{
public:
  // "Diopter"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString Diopter;
  static const QString MilliDiopter;

  DiopterUnits();
  DiopterUnits(const DiopterUnits&);
  DiopterUnits& operator=(const DiopterUnits&);
  ~DiopterUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
