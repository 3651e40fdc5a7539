#include <Core/Common/Units/DimensionlessUnits.h>

namespace RTE
{

const QString DimensionlessUnits::TypeIdentifier = QStringLiteral("Dimensionless");
const QString DimensionlessUnits::Dimensionless = QStringLiteral("");

DimensionlessUnits::DimensionlessUnits()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral(""), QStringLiteral(""), 0.0);
}

DimensionlessUnits::DimensionlessUnits(const DimensionlessUnits&) = default;
DimensionlessUnits& DimensionlessUnits::operator=(const DimensionlessUnits&) = default;
DimensionlessUnits::~DimensionlessUnits() = default;

std::unique_ptr<Units> DimensionlessUnits::Clone() const
{
  return std::make_unique<DimensionlessUnits>(*this);
}

QString DimensionlessUnits::GetTypeIdentifier() const
{
  return QStringLiteral("Dimensionless");
}

} // namespace RTE
