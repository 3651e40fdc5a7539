#include <Core/Common/Units/PressureUnits.h>

namespace RTE
{

const QString PressureUnits::TypeIdentifier = QStringLiteral("Pressure");
const QString PressureUnits::Pascal = QStringLiteral("Pa");
const QString PressureUnits::Millipascal = QStringLiteral("mPa");
const QString PressureUnits::Kilopascal = QStringLiteral("kPa");
const QString PressureUnits::Megapascal = QStringLiteral("MPa");
const QString PressureUnits::Gigapascal = QStringLiteral("GPa");
const QString PressureUnits::Millibar = QStringLiteral("mbar");
const QString PressureUnits::Bar = QStringLiteral("bar");
const QString PressureUnits::Kilobar = QStringLiteral("kbar");
const QString PressureUnits::PSI = QStringLiteral("psi");

PressureUnits::PressureUnits()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral("Pa"), QStringLiteral("Pa"), 0.0);
  AppendTargetUnit(QStringLiteral("mPa"), QStringLiteral("mPa"), 0.001, 0.0);
  AppendTargetUnit(QStringLiteral("kPa"), QStringLiteral("kPa"), 1000.0, 0.0);
  AppendTargetUnit(QStringLiteral("MPa"), QStringLiteral("MPa"), 1e6, 0.0);
  AppendTargetUnit(QStringLiteral("GPa"), QStringLiteral("GPa"), 1e9, 0.0);
  AppendTargetUnit(QStringLiteral("mbar"), QStringLiteral("mbar"), 100.0, 0.0);
  AppendTargetUnit(QStringLiteral("bar"), QStringLiteral("bar"), 100000.0, 0.0);
  AppendTargetUnit(QStringLiteral("kbar"), QStringLiteral("kbar"), 1e8, 0.0);
  AppendTargetUnit(QStringLiteral("psi"), QStringLiteral("psi"), 6894.65, 0.0);
}

PressureUnits::PressureUnits(const PressureUnits&) = default;
PressureUnits& PressureUnits::operator=(const PressureUnits&) = default;
PressureUnits::~PressureUnits() = default;

std::unique_ptr<Units> PressureUnits::Clone() const
{
  return std::make_unique<PressureUnits>(*this);
}

QString PressureUnits::GetTypeIdentifier() const
{
  return QStringLiteral("Pressure");
}

} // namespace RTE
