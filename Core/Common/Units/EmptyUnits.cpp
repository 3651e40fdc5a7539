#include <Core/Common/Units/EmptyUnits.h>

namespace RTE
{

const QString EmptyUnits::TypeIdentifier = QStringLiteral("EmptyUnits");

EmptyUnits::EmptyUnits()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral("None"), QStringLiteral("Off"), 0.0);
}

EmptyUnits::EmptyUnits(const EmptyUnits&) = default;
EmptyUnits& EmptyUnits::operator=(const EmptyUnits&) = default;
EmptyUnits::~EmptyUnits() = default;

std::unique_ptr<Units> EmptyUnits::Clone() const
{
  return std::make_unique<EmptyUnits>(*this);
}

QString EmptyUnits::GetTypeIdentifier() const
{
  return QStringLiteral("EmptyUnits");
}

} // namespace RTE
