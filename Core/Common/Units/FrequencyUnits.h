// Frequencies; base hertz.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT FrequencyUnits : public Units
{
public:
  // "Frequency"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString Hertz;
  static const QString Kilohertz;
  static const QString Megahertz;
  static const QString Gigahertz;

  FrequencyUnits();
  FrequencyUnits(const FrequencyUnits&);
  FrequencyUnits& operator=(const FrequencyUnits&);
  ~FrequencyUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
