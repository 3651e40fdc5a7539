#include <Core/Common/Units/DiopterUnits.h>

namespace RTE
{

const QString DiopterUnits::TypeIdentifier = QStringLiteral("Diopter");
const QString DiopterUnits::Diopter = QStringLiteral("dpt");
const QString DiopterUnits::MilliDiopter = QStringLiteral("mdpt");

DiopterUnits::DiopterUnits()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral("dpt"), QStringLiteral("dpt"), 0.0);
  AppendTargetUnit(QStringLiteral("mdpt"), QStringLiteral("mdpt"), 0.001, 0.0);
}

DiopterUnits::DiopterUnits(const DiopterUnits&) = default;
DiopterUnits& DiopterUnits::operator=(const DiopterUnits&) = default;
DiopterUnits::~DiopterUnits() = default;

std::unique_ptr<Units> DiopterUnits::Clone() const
{
  return std::make_unique<DiopterUnits>(*this);
}

QString DiopterUnits::GetTypeIdentifier() const
{
  return QStringLiteral("Diopter");
}

} // namespace RTE
