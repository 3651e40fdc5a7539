#include <Core/Common/Units/PartsPerUnit.h>

namespace RTE
{

const QString PartsPerUnit::TypeIdentifier = QStringLiteral("Parts-per");
const QString PartsPerUnit::PartsPerMillion = QStringLiteral("ppm");
const QString PartsPerUnit::PartsPerBillion = QStringLiteral("ppb");
const QString PartsPerUnit::PartsPerTrillion = QStringLiteral("ppt");
const QString PartsPerUnit::PartsPerQuadrillion = QStringLiteral("ppq");

PartsPerUnit::PartsPerUnit()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral("ppm"), QStringLiteral("ppm"), 0.0);
  AppendTargetUnit(QStringLiteral("ppb"), QStringLiteral("ppb"), 0.001, 0.0);
  AppendTargetUnit(QStringLiteral("ppt"), QStringLiteral("ppt"), 1e-6, 0.0);
  AppendTargetUnit(QStringLiteral("ppq"), QStringLiteral("ppq"), 1e-9, 0.0);
}

PartsPerUnit::PartsPerUnit(const PartsPerUnit&) = default;
PartsPerUnit& PartsPerUnit::operator=(const PartsPerUnit&) = default;
PartsPerUnit::~PartsPerUnit() = default;

std::unique_ptr<Units> PartsPerUnit::Clone() const
{
  return std::make_unique<PartsPerUnit>(*this);
}

QString PartsPerUnit::GetTypeIdentifier() const
{
  return QStringLiteral("Parts-per");
}

} // namespace RTE
