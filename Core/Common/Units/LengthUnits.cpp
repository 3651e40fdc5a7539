#include <Core/Common/Units/LengthUnits.h>

namespace RTE
{

const QString LengthUnits::TypeIdentifier = QStringLiteral("Length");
const QString LengthUnits::Meter = QStringLiteral("m");
const QString LengthUnits::Millimeter = QStringLiteral("mm");
const QString LengthUnits::Micrometer = QStringLiteral("\u00B5m");
const QString LengthUnits::Centimeter = QStringLiteral("cm");
const QString LengthUnits::Inch = QStringLiteral("in");
const QString LengthUnits::Foot = QStringLiteral("ft");
const QString LengthUnits::Pixel = QStringLiteral("pixel");
const QString LengthUnits::Voxel = QStringLiteral("voxel");
const QString LengthUnits::Point = QStringLiteral("pt");

LengthUnits::LengthUnits()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral("m"), QStringLiteral("m"), 0.0);
  AppendTargetUnit(QStringLiteral("mm"), QStringLiteral("mm"), 0.001, 0.0);
  AppendTargetUnit(QStringLiteral("\u00B5m"), QStringLiteral("\u00B5m"), 1e-6, 0.0);
  AppendTargetUnit(QStringLiteral("cm"), QStringLiteral("cm"), 0.01, 0.0);
  AppendTargetUnit(QStringLiteral("in"), QStringLiteral("in"), 0.0254, 0.0);
  AppendTargetUnit(QStringLiteral("ft"), QStringLiteral("ft"), 0.3048, 0.0);
}

LengthUnits::LengthUnits(const LengthUnits&) = default;
LengthUnits& LengthUnits::operator=(const LengthUnits&) = default;
LengthUnits::~LengthUnits() = default;

std::unique_ptr<Units> LengthUnits::Clone() const
{
  return std::make_unique<LengthUnits>(*this);
}

QString LengthUnits::GetTypeIdentifier() const
{
  return QStringLiteral("Length");
}

} // namespace RTE
