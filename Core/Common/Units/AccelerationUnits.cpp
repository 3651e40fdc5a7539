#include <Core/Common/Units/AccelerationUnits.h>

#include <Zn/Utils/Unicode.h>

namespace RTE
{

const QString AccelerationUnits::TypeIdentifier = QStringLiteral("Acceleration");
const QString AccelerationUnits::MeterPerSecond2 = QStringLiteral("m/s^2");
const QString AccelerationUnits::MillimeterPerSecond2 = QStringLiteral("mm/s^2");
const QString AccelerationUnits::MicrometerPerSecond2 = QStringLiteral("\u00B5m/s^2");
const QString AccelerationUnits::CentimeterPerSecond2 = QStringLiteral("cm/s^2");

AccelerationUnits::AccelerationUnits()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral("m/s^2"), QStringLiteral("m/s%1").arg(Zn::Unicode::square()), 0.0);
  AppendTargetUnit(QStringLiteral("mm/s^2"), QStringLiteral("mm/s%1").arg(Zn::Unicode::square()), 0.001, 0.0);
  AppendTargetUnit(QStringLiteral("\u00B5m/s^2"), QStringLiteral("\u00B5m/s%1").arg(Zn::Unicode::square()), 1e-6, 0.0);
}

AccelerationUnits::AccelerationUnits(const AccelerationUnits&) = default;
AccelerationUnits& AccelerationUnits::operator=(const AccelerationUnits&) = default;
AccelerationUnits::~AccelerationUnits() = default;

std::unique_ptr<Units> AccelerationUnits::Clone() const
{
  return std::make_unique<AccelerationUnits>(*this);
}

QString AccelerationUnits::GetTypeIdentifier() const
{
  return QStringLiteral("Acceleration");
}

} // namespace RTE
