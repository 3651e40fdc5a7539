// Demo step: unit sets, the units registry, number formats and preferred units.
#include "Command.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Units/AutoFormatValueWithUnit.h>
#include <Core/Common/Units/NumberFormatter.h>
#include <Core/Common/Units/NumericFormat.h>
#include <Core/Common/Units/PreferredUnits.h>
#include <Core/Common/Units/ScientificFormat.h>
#include <Core/Common/Units/TimeRelatedUnits.h>
#include <Core/Common/Units/UnitsRegistry.h>

namespace
{

void demoUnits(QTextStream& out)
{
  const RTE::UnitsRegistry& registry = RTE::UnitsRegistry::getInstance();
  out << "Every unit id belongs to one unit set; the process registry holds " << registry.getTypeIdentifiers().size()
      << " sets:\n  " << registry.getTypeIdentifiers().join(QStringLiteral(", "))
      << "\n\nConversions are linear scales (value * factor + offset):\n";
  const struct
  {
    double value;
    const char* from;
    const char* to;
  } conversions[] = {{20.0, "°C", "K"}, {300.0, "K", "°C"}, {3.0, "psi", "kPa"}, {1.0, "in", "mm"}, {90.0, "min", "h"}};
  for (const auto& c : conversions)
  {
    const QString from = QString::fromUtf8(c.from);
    const QString to = QString::fromUtf8(c.to);
    const Zn::LinearScale scale = registry.findScale(from, to);
    out << QStringLiteral("  %1 %2 = %3 %4   (factor %5, offset %6)\n")
               .arg(QString::number(c.value), registry.getLabelForUnitId(from),
                    QString::number(scale.getScaled(c.value), 'g', 10), registry.getLabelForUnitId(to),
                    QString::number(scale.getFactor(), 'g', 10), QString::number(scale.getOffset(), 'g', 10));
  }
  const Zn::LinearScale none = registry.findScale(QStringLiteral("mm"), QStringLiteral("Hz"));
  out << "  mm to Hz is no conversion: findScale falls back to factor " << none.getFactor() << ", offset "
      << none.getOffset() << "\n";
  try
  {
    (void)registry.getUnits(QStringLiteral("furlong"));
  }
  catch (const RTE::InvalidArgumentError& e)
  {
    out << "  getUnits(\"furlong\") throws: " << e.message() << "\n";
  }

  out << "\nA velocity over 2 s becomes a length (getTimeRelatedUnits(\"mm/s\", 2, \"s\")):\n ";
  for (const RTE::Unit& unit : RTE::getTimeRelatedUnits(QStringLiteral("mm/s"), 2.0, QStringLiteral("s")))
    out << " " << unit.label << " x" << unit.factor;
  out << "\nBest time unit for 5400 s: " << RTE::GetOptimalUnitIdForTime(5400.0, QStringLiteral("s"))
      << ", for 0.0004 s: " << RTE::GetOptimalUnitIdForTime(0.0004, QStringLiteral("s")) << "\n";

  out << "\nNumber formats with 3 significant digits (plain | scientific):\n";
  const Common::NumericFormat plain(3, -3, 5, true);
  const Common::ScientificFormat scientific(3);
  for (double value : {1234.5, 25.0, 20.0, 100.0, 0.012345, 0.125})
  {
    const QString line = QStringLiteral("  %1 -> %2 | %3 %4")
                             .arg(QString::number(value), -9)
                             .arg(plain.NumberToString(value), -7)
                             .arg(scientific.NumberToString(value), -8)
                             .arg(plain.WillBeRounded(value) ? QStringLiteral("(rounded)") : QString());
    out << line.trimmed().prepend(QStringLiteral("  ")) << "\n";
  }
  out << "  (20 and 100 are multiples of ten and get no decimals; 25 gets one)\n";

  out << "\nValues with the unit that reads best:\n";
  for (const auto& [value, unit] : {std::pair{0.0000123, "s"}, std::pair{1500.0, "mm"}, std::pair{150000.0, "Pa"},
                                    std::pair{20.0, "°C"}, std::pair{1e9, "Hz"}})
  {
    out << "  " << Common::NumberFormatter::Default().ToString(value) << " " << QString::fromUtf8(unit) << " -> "
        << Common::AutoFormatValueWithUnit(value, QString::fromUtf8(unit)) << "\n";
  }

  out << "\nPreferred units for raw counts of 0.01 mm: 250 counts are\n ";
  const RTE::PreferredUnits preferred =
      RTE::PreferredUnits::fromLinearScale(Zn::LinearScale(0.01, 0.0, QStringLiteral("mm"), QString()), std::nullopt,
                                           QStringLiteral("raw"), QStringLiteral("counts"));
  for (const QString& id : preferred.GetTargetUnitIds())
    out << " " << preferred.Convert(250.0, QStringLiteral("raw"), id) << " " << id;
  out << "\n  preferred: " << preferred.getPreferredUnitId() << "\n";
}

const rte::DemoStepRegistration step{{30, QStringLiteral("Units and number formats"), &demoUnits}};

} // namespace
