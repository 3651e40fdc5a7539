#include <Core/Common/Units/VelocityUnits.h>

namespace RTE
{

const QString VelocityUnits::TypeIdentifier = QStringLiteral("Velocity");
const QString VelocityUnits::MeterPerSecond = QStringLiteral("m/s");
const QString VelocityUnits::MillimeterPerSecond = QStringLiteral("mm/s");
const QString VelocityUnits::MicrometerPerSecond = QStringLiteral("\u00B5m/s");

VelocityUnits::VelocityUnits()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral("m/s"), QStringLiteral("m/s"), 0.0);
  AppendTargetUnit(QStringLiteral("mm/s"), QStringLiteral("mm/s"), 0.001, 0.0);
  AppendTargetUnit(QStringLiteral("\u00B5m/s"), QStringLiteral("\u00B5m/s"), 1e-6, 0.0);
}

VelocityUnits::VelocityUnits(const VelocityUnits&) = default;
VelocityUnits& VelocityUnits::operator=(const VelocityUnits&) = default;
VelocityUnits::~VelocityUnits() = default;

std::unique_ptr<Units> VelocityUnits::Clone() const
{
  return std::make_unique<VelocityUnits>(*this);
}

QString VelocityUnits::GetTypeIdentifier() const
{
  return QStringLiteral("Velocity");
}

} // namespace RTE
