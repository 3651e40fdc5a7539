#include <Core/Common/Units/AngleUnits.h>

namespace RTE
{

const QString AngleUnits::TypeIdentifier = QStringLiteral("Angle");
const QString AngleUnits::Radian = QStringLiteral("rad");
const QString AngleUnits::Degree = QStringLiteral("\u00B0");

AngleUnits::AngleUnits()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral("rad"), QStringLiteral("rad"), 0.0);
  AppendTargetUnit(QStringLiteral("\u00B0"), QStringLiteral("\u00B0"), 0.017453292519943295, 0.0);
}

AngleUnits::AngleUnits(const AngleUnits&) = default;
AngleUnits& AngleUnits::operator=(const AngleUnits&) = default;
AngleUnits::~AngleUnits() = default;

std::unique_ptr<Units> AngleUnits::Clone() const
{
  return std::make_unique<AngleUnits>(*this);
}

QString AngleUnits::GetTypeIdentifier() const
{
  return QStringLiteral("Angle");
}

} // namespace RTE
