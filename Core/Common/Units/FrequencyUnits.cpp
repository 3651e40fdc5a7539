#include <Core/Common/Units/FrequencyUnits.h>

namespace RTE
{

const QString FrequencyUnits::TypeIdentifier = QStringLiteral("Frequency");
const QString FrequencyUnits::Hertz = QStringLiteral("Hz");
const QString FrequencyUnits::Kilohertz = QStringLiteral("kHz");
const QString FrequencyUnits::Megahertz = QStringLiteral("MHz");
const QString FrequencyUnits::Gigahertz = QStringLiteral("GHz");

FrequencyUnits::FrequencyUnits()
{
  // Literals rather than the static members: a set may be built by a static
  // initialiser elsewhere in this library, before those members are initialised.
  SetBaseUnitId(QStringLiteral("Hz"), QStringLiteral("Hz"), 0.0);
  AppendTargetUnit(QStringLiteral("kHz"), QStringLiteral("kHz"), 1000.0, 0.0);
  AppendTargetUnit(QStringLiteral("MHz"), QStringLiteral("MHz"), 1e6, 0.0);
  AppendTargetUnit(QStringLiteral("GHz"), QStringLiteral("GHz"), 1e9, 0.0);
}

FrequencyUnits::FrequencyUnits(const FrequencyUnits&) = default;
FrequencyUnits& FrequencyUnits::operator=(const FrequencyUnits&) = default;
FrequencyUnits::~FrequencyUnits() = default;

std::unique_ptr<Units> FrequencyUnits::Clone() const
{
  return std::make_unique<FrequencyUnits>(*this);
}

QString FrequencyUnits::GetTypeIdentifier() const
{
  return QStringLiteral("Frequency");
}

} // namespace RTE
