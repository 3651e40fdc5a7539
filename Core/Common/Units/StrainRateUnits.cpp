#include <Core/Common/Units/StrainRateUnits.h>

namespace RTE
{

const QString StrainRateUnits::TypeIdentifier = QStringLiteral("StrainRate");
const QString StrainRateUnits::OnePerSecond = QStringLiteral("1/s");

StrainRateUnits::StrainRateUnits()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral("1/s"), QStringLiteral("1/s"), 0.0);
}

StrainRateUnits::StrainRateUnits(const StrainRateUnits&) = default;
StrainRateUnits& StrainRateUnits::operator=(const StrainRateUnits&) = default;
StrainRateUnits::~StrainRateUnits() = default;

std::unique_ptr<Units> StrainRateUnits::Clone() const
{
  return std::make_unique<StrainRateUnits>(*this);
}

QString StrainRateUnits::GetTypeIdentifier() const
{
  return QStringLiteral("StrainRate");
}

} // namespace RTE
