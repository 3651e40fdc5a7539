#include <Core/Common/Units/DefaultUnits.h>

#include <Core/Common/Units/AccelerationUnits.h>
#include <Core/Common/Units/AngleUnits.h>
#include <Core/Common/Units/ConcentrationUnits.h>
#include <Core/Common/Units/ForceUnits.h>
#include <Core/Common/Units/FrequencyUnits.h>
#include <Core/Common/Units/LengthUnits.h>
#include <Core/Common/Units/PartsPerUnit.h>
#include <Core/Common/Units/PressureUnits.h>
#include <Core/Common/Units/StrainAccelerationUnits.h>
#include <Core/Common/Units/StrainRateUnits.h>
#include <Core/Common/Units/StrainUnits.h>
#include <Core/Common/Units/TemperaturePrecisionUnits.h>
#include <Core/Common/Units/TemperatureUnits.h>
#include <Core/Common/Units/TimeUnits.h>
#include <Core/Common/Units/UnitsRegistry.h>
#include <Core/Common/Units/VelocityUnits.h>

namespace RTE
{

namespace
{

bool isInRegisteredSet(const QString& typeIdentifier, const QString& unitId)
{
  const Units* units = UnitsRegistry::getInstance().findUnitsByType(typeIdentifier);
  return units && units->ContainsUnitId(unitId);
}

} // namespace

void registerDefaultUnits()
{
  registerDefaultUnits(UnitsRegistry::getInstance());
}

void registerDefaultUnits(UnitsRegistry& registry)
{
  registry.registerUnits(std::make_unique<AccelerationUnits>());
  registry.registerUnits(std::make_unique<AngleUnits>());
  registry.registerUnits(std::make_unique<ConcentrationUnits>());
  registry.registerUnits(std::make_unique<ForceUnits>());
  registry.registerUnits(std::make_unique<FrequencyUnits>());
  registry.registerUnits(std::make_unique<LengthUnits>());
  registry.registerUnits(std::make_unique<PartsPerUnit>());
  registry.registerUnits(std::make_unique<PressureUnits>());
  registry.registerUnits(std::make_unique<StrainAccelerationUnits>());
  registry.registerUnits(std::make_unique<StrainRateUnits>());
  registry.registerUnits(std::make_unique<StrainUnits>());
  registry.registerUnits(std::make_unique<TemperaturePrecisionUnits>());
  registry.registerUnits(std::make_unique<TemperatureUnits>());
  registry.registerUnits(std::make_unique<TimeUnits>());
  registry.registerUnits(std::make_unique<VelocityUnits>());
}

bool isAccelerationBasedUnit(const QString& unitId)
{
  return isInRegisteredSet(AccelerationUnits::TypeIdentifier, unitId) ||
         isInRegisteredSet(StrainAccelerationUnits::TypeIdentifier, unitId);
}

bool isVelocityBasedUnit(const QString& unitId)
{
  return isInRegisteredSet(VelocityUnits::TypeIdentifier, unitId) ||
         isInRegisteredSet(StrainRateUnits::TypeIdentifier, unitId);
}

} // namespace RTE
