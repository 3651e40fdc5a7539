#include "TimestampsTool.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>

#include <cmath>
#include <numbers>

namespace rte
{

namespace
{

// Relative dip of the crank speed, twice per cycle (compression and exhaust strokes).
constexpr double speedDip = 0.03;

// Time in seconds after the cycle's start at which the crank has turned theta degrees.
double timeAtAngle(double theta, double degrees, double period)
{
  const double phase = 2.0 * std::numbers::pi * 2.0 * theta / degrees;
  return period * (theta / degrees - speedDip * std::sin(phase) / (2.0 * std::numbers::pi * 2.0));
}

RTE::TimeSpan seconds(double s)
{
  return RTE::TimeSpan(std::llround(s * 1e12));
}

QString optionalTime(const std::optional<RTE::TimeSpan>& t)
{
  return t ? QStringLiteral("%1 (%2 ps)").arg(t->ToString(6), QString::number(t->ToPicoSeconds()))
           : QStringLiteral("missing");
}

} // namespace

RTE::CycleTimestamps synthesizeCycle(const SynthOptions& o)
{
  const RTE::DegreesPerCycle degrees(o.degreesPerCycle);
  if (!(o.rpm > 0.0) || o.marksPerCycle == 0 || o.exposuresPerCycle == 0)
    RTE::Raise(RTE::InvalidArgumentError(
        QStringLiteral("Speed, marks per cycle and exposures per cycle must be greater than zero")));
  const double d = degrees;
  const double period = (d / 360.0) * 60.0 / o.rpm;
  const double start = 1.0 + period * static_cast<double>(o.cycle);

  RTE::CycleTimestamps::Settings settings;
  settings.degreesPerCycle = degrees;
  settings.cdmsPerCycle = RTE::CycleTimestamps::CdmCount(o.marksPerCycle);
  settings.absoluteCycle = o.cycle + 100;
  settings.cycle = o.cycle;
  settings.minimalPprDistance = RTE::CrankAngle(1.0, degrees);

  // Angles relative to the cycle's start (0 to d) at which images are taken: evenly in
  // time for an ordinary cycle, within the first half of each step for a PPR cycle.
  std::vector<double> exposureAngles;
  std::vector<double> exposureTimes;
  if (o.pprSteps == 0)
  {
    for (quint32 j = 0; j < o.exposuresPerCycle; ++j)
      exposureTimes.push_back(period * (j + 0.5) / o.exposuresPerCycle);
  }
  else
  {
    const double width = d / o.pprSteps;
    for (quint32 s = 0; s < o.pprSteps; ++s)
    {
      const double lower = s * width;
      settings.pprSteps.push_back(
          {RTE::CrankAngle(lower - d / 2, degrees), RTE::CrankAngle(lower + width / 2 - d / 2, degrees)});
      const quint32 inStep = std::max<quint32>(1, o.exposuresPerCycle / o.pprSteps);
      for (quint32 j = 0; j < inStep; ++j)
        exposureTimes.push_back(timeAtAngle(lower + (width / 2) * j / inStep, d, period));
    }
  }

  const double half = timeAtAngle(d / 2, d, period);
  const auto keep = [&](double t)
  {
    return o.kind == CycleKind::Full || (o.kind == CycleKind::StartMissing && t >= half) ||
           (o.kind == CycleKind::EndMissing && t < half);
  };
  std::vector<RTE::TimeSpan> cdms;
  for (quint32 i = 0; i < o.marksPerCycle; ++i)
  {
    const double t = timeAtAngle(d * i / o.marksPerCycle, d, period);
    if (keep(t))
      cdms.push_back(seconds(start + t));
  }
  std::vector<RTE::TimeSpan> exposures;
  for (double t : exposureTimes)
  {
    if (keep(t))
      exposures.push_back(seconds(start + t));
  }
  if (o.kind != CycleKind::StartMissing)
    settings.start = seconds(start);
  if (o.kind != CycleKind::EndMissing)
    settings.nextStart = seconds(start + period);
  return RTE::CycleTimestamps(settings, cdms, exposures);
}

void printCycle(QTextStream& out, const RTE::CycleTimestamps& cycle, std::optional<qint64> rowLimit)
{
  const QString kind = cycle.isFullCycle()      ? QStringLiteral("full cycle")
                       : cycle.isStartMissing() ? QStringLiteral("start missing")
                                                : QStringLiteral("end missing");
  out << "Kind:              " << kind
      << (cycle.isPprCycle() ? QStringLiteral(", PPR cycle with %1 steps").arg(cycle.pprSteps().size())
                             : QStringLiteral(", ordinary cycle"))
      << "\n"
      << "Recorded cycle:    " << cycle.cycle() << " (absolute " << cycle.absoluteCycle() << ")\n"
      << "Degrees per cycle: " << double(cycle.degreesPerCycle()) << "\n"
      << "CDMs per cycle:    " << cycle.cdmsPerCycle() << " (" << cycle.cdmCount() << " stored)\n"
      << "Start:             " << optionalTime(cycle.start()) << "\n"
      << "Next start:        " << optionalTime(cycle.nextStart()) << "\n";
  const auto period = cycle.cyclePeriod();
  out << "Cycle period:      " << (period ? period->ToString(6) : QStringLiteral("-")) << "\n";
  const auto speed = cycle.rpm();
  out << "Mean speed:        "
      << (speed ? QStringLiteral("%1 rpm").arg(double(*speed), 0, 'f', 2) : QStringLiteral("-")) << "\n";
  const auto imagePeriod = cycle.imagePeriod();
  out << "Image period:      " << (imagePeriod ? imagePeriod->ToString(6) : QStringLiteral("-")) << "\n";
  if (cycle.isPprCycle())
  {
    out << "PPR steps:        ";
    for (const auto& step : cycle.pprSteps())
    {
      out << " [" << (step.lower() ? QString::number(double(*step.lower())) : QStringLiteral("open")) << ", "
          << (step.upper() ? QString::number(double(*step.upper())) : QStringLiteral("open")) << "]";
    }
    out << "\nMinimal PPR distance: " << double(cycle.minimalPprDistance()) << "\xc2\xb0, skip count "
        << cycle.skipCount() << "\n";
  }

  out << "Exposures:         " << cycle.exposureCount() << " (" << cycle.crankAngles().size()
      << " with a crank angle)\n";
  out << QStringLiteral("  %1  %2  %3  %4  %5\n")
             .arg(QStringLiteral("index"), 7)
             .arg(QStringLiteral("time [ps]"), 16)
             .arg(QStringLiteral("angle [\u00b0]"), 12)
             .arg(QStringLiteral("speed [rpm]"), 12)
             .arg(QStringLiteral("PPR step"), 8);
  const qint64 rows =
      rowLimit ? std::min<qint64>(*rowLimit, qint64(cycle.exposureCount())) : qint64(cycle.exposureCount());
  for (qint64 i = 0; i < rows; ++i)
  {
    const RTE::ExposureIndex index(static_cast<std::uint64_t>(i));
    const auto angle = cycle.crankAngleAt(index);
    const auto rpm = cycle.rpmAt(index);
    const auto step = cycle.pprStepAt(index);
    out << QStringLiteral("  %1  %2  %3  %4  %5\n")
               .arg(i, 7)
               .arg(cycle.exposureTimeAt(index)->ToPicoSeconds(), 16)
               .arg(angle ? QString::number(double(*angle), 'f', 3) : QStringLiteral("-"), 12)
               .arg(rpm ? QString::number(double(*rpm), 'f', 2) : QStringLiteral("-"), 12)
               .arg(step ? QString::number(*step) : QStringLiteral("-"), 8);
  }
  if (rows < qint64(cycle.exposureCount()))
    out << "  ... " << (qint64(cycle.exposureCount()) - rows) << " more\n";
}

} // namespace rte
