#include <Core/Common/Units/RamanShiftUnits.h>

namespace RTE
{

const QString RamanShiftUnits::TypeIdentifier = QStringLiteral("Raman Shift");
const QString RamanShiftUnits::RamanShift = QStringLiteral("1/cm");

RamanShiftUnits::RamanShiftUnits()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral("1/cm"), QStringLiteral("1/cm"), 0.0);
}

RamanShiftUnits::RamanShiftUnits(const RamanShiftUnits&) = default;
RamanShiftUnits& RamanShiftUnits::operator=(const RamanShiftUnits&) = default;
RamanShiftUnits::~RamanShiftUnits() = default;

std::unique_ptr<Units> RamanShiftUnits::Clone() const
{
  return std::make_unique<RamanShiftUnits>(*this);
}

QString RamanShiftUnits::GetTypeIdentifier() const
{
  return QStringLiteral("Raman Shift");
}

} // namespace RTE
