#include <Core/Common/Units/StrainRate2Units.h>

#include <Zn/Utils/Unicode.h>

namespace RTE
{

const QString StrainRate2Units::TypeIdentifier = QStringLiteral("StrainRate2");
const QString StrainRate2Units::StrainSquared = QStringLiteral("S^2");
const QString StrainRate2Units::Percent = QStringLiteral("%_StrainRate");

StrainRate2Units::StrainRate2Units()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral("S^2"), QStringLiteral("S%1").arg(Zn::Unicode::square()), 0.0);
  AppendTargetUnit(QStringLiteral("%_StrainRate"), QStringLiteral("%"), 0.01, 0.0);
}

StrainRate2Units::StrainRate2Units(const StrainRate2Units&) = default;
StrainRate2Units& StrainRate2Units::operator=(const StrainRate2Units&) = default;
StrainRate2Units::~StrainRate2Units() = default;

std::unique_ptr<Units> StrainRate2Units::Clone() const
{
  return std::make_unique<StrainRate2Units>(*this);
}

QString StrainRate2Units::GetTypeIdentifier() const
{
  return QStringLiteral("StrainRate2");
}

} // namespace RTE
