#include <Core/Common/Units/ConcentrationUnits.h>

namespace RTE
{

const QString ConcentrationUnits::TypeIdentifier = QStringLiteral("Concentration");
const QString ConcentrationUnits::pH = QStringLiteral("pH");

ConcentrationUnits::ConcentrationUnits()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral("pH"), QStringLiteral("pH"), 0.0);
}

ConcentrationUnits::ConcentrationUnits(const ConcentrationUnits&) = default;
ConcentrationUnits& ConcentrationUnits::operator=(const ConcentrationUnits&) = default;
ConcentrationUnits::~ConcentrationUnits() = default;

std::unique_ptr<Units> ConcentrationUnits::Clone() const
{
  return std::make_unique<ConcentrationUnits>(*this);
}

QString ConcentrationUnits::GetTypeIdentifier() const
{
  return QStringLiteral("Concentration");
}

} // namespace RTE
