#include <Core/Common/Units/ForceUnits.h>

namespace RTE
{

const QString ForceUnits::TypeIdentifier = QStringLiteral("Force");
const QString ForceUnits::Newton = QStringLiteral("N");
const QString ForceUnits::MilliNewton = QStringLiteral("mN");
const QString ForceUnits::KiloNewton = QStringLiteral("kN");
const QString ForceUnits::MegaNewton = QStringLiteral("MN");
const QString ForceUnits::GigaNewton = QStringLiteral("GN");

ForceUnits::ForceUnits()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral("N"), QStringLiteral("N"), 0.0);
  AppendTargetUnit(QStringLiteral("mN"), QStringLiteral("mN"), 0.001, 0.0);
  AppendTargetUnit(QStringLiteral("kN"), QStringLiteral("kN"), 1000.0, 0.0);
  AppendTargetUnit(QStringLiteral("MN"), QStringLiteral("MN"), 1e6, 0.0);
  AppendTargetUnit(QStringLiteral("GN"), QStringLiteral("GN"), 1e9, 0.0);
}

ForceUnits::ForceUnits(const ForceUnits&) = default;
ForceUnits& ForceUnits::operator=(const ForceUnits&) = default;
ForceUnits::~ForceUnits() = default;

std::unique_ptr<Units> ForceUnits::Clone() const
{
  return std::make_unique<ForceUnits>(*this);
}

QString ForceUnits::GetTypeIdentifier() const
{
  return QStringLiteral("Force");
}

} // namespace RTE
