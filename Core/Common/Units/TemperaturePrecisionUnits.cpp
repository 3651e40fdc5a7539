#include <Core/Common/Units/TemperaturePrecisionUnits.h>

namespace RTE
{

const QString TemperaturePrecisionUnits::TypeIdentifier = QStringLiteral("TemperaturePrecision");
const QString TemperaturePrecisionUnits::KelvinPrecisionId = QStringLiteral("KPrecision");
const QString TemperaturePrecisionUnits::CelsiusPrecisionId = QStringLiteral("CPrecision");

TemperaturePrecisionUnits::TemperaturePrecisionUnits()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral("KPrecision"), QStringLiteral("K"), 0.0);
  AppendTargetUnit(QStringLiteral("CPrecision"), QStringLiteral("\u00B0C"), 1.0, 0.0);
}

TemperaturePrecisionUnits::TemperaturePrecisionUnits(const TemperaturePrecisionUnits&) = default;
TemperaturePrecisionUnits& TemperaturePrecisionUnits::operator=(const TemperaturePrecisionUnits&) = default;
TemperaturePrecisionUnits::~TemperaturePrecisionUnits() = default;

std::unique_ptr<Units> TemperaturePrecisionUnits::Clone() const
{
  return std::make_unique<TemperaturePrecisionUnits>(*this);
}

QString TemperaturePrecisionUnits::GetTypeIdentifier() const
{
  return QStringLiteral("TemperaturePrecision");
}

} // namespace RTE
