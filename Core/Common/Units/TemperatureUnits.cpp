#include <Core/Common/Units/TemperatureUnits.h>

namespace RTE
{

const QString TemperatureUnits::TypeIdentifier = QStringLiteral("Temperature");
const QString TemperatureUnits::Kelvin = QStringLiteral("K");
const QString TemperatureUnits::Celsius = QStringLiteral("\u00B0C");

TemperatureUnits::TemperatureUnits()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral("K"), QStringLiteral("K"), 0.0);
  AppendTargetUnit(QStringLiteral("\u00B0C"), QStringLiteral("\u00B0C"), 1.0, 273.15);
}

TemperatureUnits::TemperatureUnits(const TemperatureUnits&) = default;
TemperatureUnits& TemperatureUnits::operator=(const TemperatureUnits&) = default;
TemperatureUnits::~TemperatureUnits() = default;

std::unique_ptr<Units> TemperatureUnits::Clone() const
{
  return std::make_unique<TemperatureUnits>(*this);
}

QString TemperatureUnits::GetTypeIdentifier() const
{
  return QStringLiteral("Temperature");
}

} // namespace RTE
