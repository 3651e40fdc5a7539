// Velocities; base metre per second.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT VelocityUnits : public Units
{
public:
  // "Velocity"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString MeterPerSecond;
  static const QString MillimeterPerSecond;
  static const QString MicrometerPerSecond;

  VelocityUnits();
  VelocityUnits(const VelocityUnits&);
  VelocityUnits& operator=(const VelocityUnits&);
  ~VelocityUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
