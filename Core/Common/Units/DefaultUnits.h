// The unit sets every process has, and questions about the dimension of a unit id.
//
//   RTE::registerDefaultUnits();  // harmless when they are registered already
//   RTE::isVelocityBasedUnit(QStringLiteral("mm/s"));  // true
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>

namespace RTE
{

class UnitsRegistry;

// Registers fresh Acceleration, Angle, Concentration, Force, Frequency, Length,
// Parts-per, Pressure, StrainAcceleration, StrainRate, Strain, TemperaturePrecision,
// Temperature, Time and Velocity sets, in this order, into the process registry.
// Types registered already keep their first set.
CORECOMMON_EXPORT void registerDefaultUnits();
// The same into the given registry.
CORECOMMON_EXPORT void registerDefaultUnits(UnitsRegistry& registry);

// An "Acceleration" set is registered and contains the id (filter applied), or else a
// "StrainAcceleration" set is registered and contains it.
CORECOMMON_EXPORT bool isAccelerationBasedUnit(const QString& unitId);
// The same with "Velocity" and then "StrainRate".
CORECOMMON_EXPORT bool isVelocityBasedUnit(const QString& unitId);

} // namespace RTE
