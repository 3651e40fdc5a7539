#include <Core/Common/Units/StrainAccelerationUnits.h>

#include <Zn/Utils/Unicode.h>

namespace RTE
{

const QString StrainAccelerationUnits::TypeIdentifier = QStringLiteral("StrainAcceleration");
const QString StrainAccelerationUnits::OnePerSecond2 = QStringLiteral("1/s^2");

StrainAccelerationUnits::StrainAccelerationUnits()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral("1/s^2"), QStringLiteral("1/s%1").arg(Zn::Unicode::square()), 0.0);
}

StrainAccelerationUnits::StrainAccelerationUnits(const StrainAccelerationUnits&) = default;
StrainAccelerationUnits& StrainAccelerationUnits::operator=(const StrainAccelerationUnits&) = default;
StrainAccelerationUnits::~StrainAccelerationUnits() = default;

std::unique_ptr<Units> StrainAccelerationUnits::Clone() const
{
  return std::make_unique<StrainAccelerationUnits>(*this);
}

QString StrainAccelerationUnits::GetTypeIdentifier() const
{
  return QStringLiteral("StrainAcceleration");
}

} // namespace RTE
