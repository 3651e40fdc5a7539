#include <Core/Common/Units/StrainUnits.h>

namespace RTE
{

const QString StrainUnits::TypeIdentifier = QStringLiteral("Strain");
const QString StrainUnits::Strain = QStringLiteral("S");
const QString StrainUnits::MicroStrain = QStringLiteral("\u00B5S");
const QString StrainUnits::MilliStrain = QStringLiteral("mS");
const QString StrainUnits::PercentStrain = QStringLiteral("%_Strain");

StrainUnits::StrainUnits()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral("S"), QStringLiteral("S"), 0.0);
  AppendTargetUnit(QStringLiteral("\u00B5S"), QStringLiteral("\u00B5S"), 1e-6, 0.0);
  AppendTargetUnit(QStringLiteral("mS"), QStringLiteral("mS"), 0.001, 0.0);
  AppendTargetUnit(QStringLiteral("%_Strain"), QStringLiteral("%"), 0.01, 0.0);
}

StrainUnits::StrainUnits(const StrainUnits&) = default;
StrainUnits& StrainUnits::operator=(const StrainUnits&) = default;
StrainUnits::~StrainUnits() = default;

std::unique_ptr<Units> StrainUnits::Clone() const
{
  return std::make_unique<StrainUnits>(*this);
}

QString StrainUnits::GetTypeIdentifier() const
{
  return QStringLiteral("Strain");
}

} // namespace RTE
