#include <Core/Common/Units/SwirlingStrengthDimensionfulUnits.h>

#include <Zn/Utils/Unicode.h>

namespace RTE
{

const QString SwirlingStrengthDimensionfulUnits::TypeIdentifier = QStringLiteral("SwirlingStrengthDimensionful");
const QString SwirlingStrengthDimensionfulUnits::OnePerSecond4 = QStringLiteral("1/s^4");

SwirlingStrengthDimensionfulUnits::SwirlingStrengthDimensionfulUnits()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral("1/s^4"), QStringLiteral("1/s%1").arg(Zn::Unicode::superscriptFour()), 0.0);
}

SwirlingStrengthDimensionfulUnits::SwirlingStrengthDimensionfulUnits(const SwirlingStrengthDimensionfulUnits&) =
    default;
SwirlingStrengthDimensionfulUnits&
SwirlingStrengthDimensionfulUnits::operator=(const SwirlingStrengthDimensionfulUnits&) = default;
SwirlingStrengthDimensionfulUnits::~SwirlingStrengthDimensionfulUnits() = default;

std::unique_ptr<Units> SwirlingStrengthDimensionfulUnits::Clone() const
{
  return std::make_unique<SwirlingStrengthDimensionfulUnits>(*this);
}

QString SwirlingStrengthDimensionfulUnits::GetTypeIdentifier() const
{
  return QStringLiteral("SwirlingStrengthDimensionful");
}

} // namespace RTE
