// Shared by `rte timestamps` and its demo step: a synthetic engine cycle and the listing
// of a cycle.
#pragma once

#include <Core/Common/CycleTimestamps/CycleTimestamps.h>

#include <QTextStream>

#include <optional>

namespace rte
{

enum class CycleKind
{
  Full,
  StartMissing,
  EndMissing
};

struct SynthOptions
{
  double rpm = 1200.0;
  double degreesPerCycle = 720.0;
  quint32 marksPerCycle = 720;
  quint32 exposuresPerCycle = 100;
  quint32 pprSteps = 0;
  quint64 cycle = 1;
  CycleKind kind = CycleKind::Full;
};

// A cycle of a single-cylinder engine whose speed dips slightly twice per cycle;
// throws RTE exceptions for impossible options.
RTE::CycleTimestamps synthesizeCycle(const SynthOptions& options);

// Settings, kind, speeds and one line per exposure (at most rowLimit when given).
void printCycle(QTextStream& out, const RTE::CycleTimestamps& cycle, std::optional<qint64> rowLimit = std::nullopt);

} // namespace rte
