#include <Core/Common/Units/SwirlingStrengthDimensionlessUnits.h>

#include <Zn/Utils/Unicode.h>

namespace RTE
{

const QString SwirlingStrengthDimensionlessUnits::TypeIdentifier = QStringLiteral("SwirlingStrengthDimensionless");
const QString SwirlingStrengthDimensionlessUnits::StrainFourthPower = QStringLiteral("S^4");
const QString SwirlingStrengthDimensionlessUnits::Percent = QStringLiteral("%_SwirlingStrength");

SwirlingStrengthDimensionlessUnits::SwirlingStrengthDimensionlessUnits()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral("S^4"), QStringLiteral("S%1").arg(Zn::Unicode::superscriptFour()), 0.0);
  AppendTargetUnit(QStringLiteral("%_SwirlingStrength"), QStringLiteral("%"), 0.01, 0.0);
}

SwirlingStrengthDimensionlessUnits::SwirlingStrengthDimensionlessUnits(const SwirlingStrengthDimensionlessUnits&) =
    default;
SwirlingStrengthDimensionlessUnits&
SwirlingStrengthDimensionlessUnits::operator=(const SwirlingStrengthDimensionlessUnits&) = default;
SwirlingStrengthDimensionlessUnits::~SwirlingStrengthDimensionlessUnits() = default;

std::unique_ptr<Units> SwirlingStrengthDimensionlessUnits::Clone() const
{
  return std::make_unique<SwirlingStrengthDimensionlessUnits>(*this);
}

QString SwirlingStrengthDimensionlessUnits::GetTypeIdentifier() const
{
  return QStringLiteral("SwirlingStrengthDimensionless");
}

} // namespace RTE
