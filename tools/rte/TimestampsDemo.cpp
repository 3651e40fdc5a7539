// Demo step: a synthetic engine cycle written to "Timestamps.bin", read back and listed,
// then a measured series mapped onto crank angles.
#include "Command.h"
#include "TimestampsTool.h"

#include <QTemporaryDir>

#include <cmath>

namespace
{

void demoTimestamps(QTextStream& out)
{
  out << "A recorded engine cycle keeps its crank degree marks (CDMs) and exposure times in\n"
         "\"Timestamps.bin\"; loading it gives every exposure a crank angle and a speed.\n"
         "(Same as: rte timestamps synth --marks 36 --exposures 8 ; rte timestamps show Timestamps.bin)\n\n";
  QTemporaryDir dir;
  const QString path = dir.filePath(QStringLiteral("Timestamps.bin"));
  rte::SynthOptions options;
  options.marksPerCycle = 36;
  options.exposuresPerCycle = 8;
  rte::synthesizeCycle(options).store(path);
  const RTE::CycleTimestamps cycle = RTE::CycleTimestamps::load(path);
  rte::printCycle(out, cycle);

  out << "\nThe same engine recorded from the middle of a cycle (start missing): the marks\n"
         "are the last ones of the cycle, so the first exposure starts near 0 degrees.\n";
  options.kind = rte::CycleKind::StartMissing;
  rte::printCycle(out, rte::synthesizeCycle(options), 3);

  out << "\nA cylinder pressure sampled every 0.5 ms, averaged around the marks (every sixth shown):\n";
  std::vector<RTE::TimeSample> pressure;
  const RTE::TimeSpan start = *cycle.start();
  for (RTE::TimeSpan t = start; t < *cycle.nextStart(); t += RTE::MicroSeconds(500))
  {
    const double phase = (t - start).ToSecondsAsDouble() / cycle.cyclePeriod()->ToSecondsAsDouble();
    pressure.push_back({t, 1.0 + 40.0 * std::exp(-std::pow((phase - 0.5) * 12.0, 2.0))});
  }
  const std::vector<RTE::CrankAngleSample> mapped = cycle.mapToCrankAngle(pressure);
  for (std::size_t i = 0; i < mapped.size(); i += 6)
    out << QStringLiteral("  %1\u00b0  %2 bar\n")
               .arg(double(mapped[i].angle), 7, 'f', 1)
               .arg(mapped[i].value, 6, 'f', 2);
  out << "  (" << mapped.size() << " of " << cycle.cdmCount() << " marks covered by the series)\n";
}

const rte::DemoStepRegistration step{{40, QStringLiteral("Engine cycle timestamps"), &demoTimestamps}};

} // namespace
