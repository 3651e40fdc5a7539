// Accelerations; base metre per second squared.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT AccelerationUnits : public Units
{
public:
  // "Acceleration"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString MeterPerSecond2;
  static const QString MillimeterPerSecond2;
  static const QString MicrometerPerSecond2;
  // Declared for other parts of the system; not a unit of this set.
  static const QString CentimeterPerSecond2;

  AccelerationUnits();
  AccelerationUnits(const AccelerationUnits&);
  AccelerationUnits& operator=(const AccelerationUnits&);
  ~AccelerationUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
