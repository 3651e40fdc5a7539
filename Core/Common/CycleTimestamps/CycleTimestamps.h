// One recorded engine cycle: its start, the start of the next cycle, the times at which
// the crank passed its equally spaced angle marks (CDMs) and the times of the exposures.
// The constructor validates and precomputes the crank angle of every exposure; the object
// is immutable afterwards and answers queries with empty optionals instead of throwing.
//
//   RTE::CycleTimestamps::Settings s;
//   s.degreesPerCycle = RTE::DegreesPerCycle(720.0);
//   s.cdmsPerCycle = RTE::CycleTimestamps::CdmCount(4);
//   s.start = RTE::MilliSeconds(0);
//   s.nextStart = RTE::MilliSeconds(100);
//   RTE::CycleTimestamps cycle(s, cdms, exposures);
//   std::optional<RTE::CrankAngle> a = cycle.crankAngleAt(RTE::ExposureIndex{3});
//
// A cycle spans -d/2 to d/2 crank degrees (d = degreesPerCycle). A cycle whose start or
// end is missing (recording began or ended inside it) holds only part of its marks: the
// last ones or the first ones. Files: "Timestamps.bin", see store() and load().
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/CycleTimestamps/CrankAngleSample.h>
#include <Core/Common/CycleTimestamps/TimeSample.h>
#include <Core/Common/Units/CrankAngle.h>
#include <Core/Common/Units/Percentage.h>
#include <Core/Common/Units/Rpm.h>
#include <Core/Common/Units/TimeSpan.h>

#include <Zn/Utils/Constrained.h>
#include <Zn/Utils/Interval.h>
#include <Zn/Utils/NamedParm.h>

#include <QCoreApplication>
#include <QString>

#include <atomic>
#include <cstdint>
#include <map>
#include <optional>
#include <vector>

class QIODevice;

namespace RTE
{

struct ExposureTag
{
};
// A strongly typed index of an exposure of a cycle.
using ExposureIndex = Zn::NamedParm<std::uint64_t, ExposureTag>;

namespace CycleTimestampsDetail
{

// A duration computed on first use. Concurrent first uses compute the same value and
// store it without a data race; copies take the cached state along.
class CachedTimeSpan
{
public:
  CachedTimeSpan() = default;
  CachedTimeSpan(const CachedTimeSpan& other) { copyFrom(other); }
  CachedTimeSpan& operator=(const CachedTimeSpan& other)
  {
    copyFrom(other);
    return *this;
  }

  template <typename Compute>
  TimeSpan get(Compute compute) const
  {
    if (m_ready.load(std::memory_order_acquire))
      return TimeSpan(m_ps.load(std::memory_order_relaxed));
    const TimeSpan value = compute();
    m_ps.store(value.ToPicoSeconds(), std::memory_order_relaxed);
    m_ready.store(true, std::memory_order_release);
    return value;
  }

private:
  void copyFrom(const CachedTimeSpan& other)
  {
    const bool ready = other.m_ready.load(std::memory_order_acquire);
    m_ps.store(other.m_ps.load(std::memory_order_relaxed), std::memory_order_relaxed);
    m_ready.store(ready, std::memory_order_release);
  }

  mutable std::atomic<std::int64_t> m_ps{0};
  mutable std::atomic<bool> m_ready{false};
};

} // namespace CycleTimestampsDetail

class CORECOMMON_EXPORT CycleTimestamps
{
  Q_DECLARE_TR_FUNCTIONS(RTE::CycleTimestamps)

public:
  using CdmCount = Zn::Constrained<std::uint32_t, Zn::NotZero>;
  using PprStep = Zn::Interval<CrankAngle>;

  // Describes the cycle; the fields are in the order of the file.
  struct Settings
  {
    DegreesPerCycle degreesPerCycle;
    // Crank degree marks in a whole cycle.
    CdmCount cdmsPerCycle{1};
    // Crank-angle ranges of the steps of a multi-step (PPR) acquisition; empty for an
    // ordinary cycle.
    std::vector<PprStep> pprSteps;
    std::optional<TimeSpan> start;
    std::optional<TimeSpan> nextStart;
    // Counted from the beginning of the run.
    std::uint64_t absoluteCycle = 0;
    // The number of the recorded cycle ("RecordedCycle" in the file).
    std::uint64_t cycle = 0;
    // How far an exposure may lie beyond the upper end of a PPR step and still belong to it.
    CrankAngle minimalPprDistance;

    bool hasStart() const { return start.has_value(); }
    bool hasNextStart() const { return nextStart.has_value(); }

    friend bool operator==(const Settings&, const Settings&) = default;
  };

  // Copies, validates and precomputes. Throws, checked in this order:
  // RTE::InvalidArgumentError "At least start or end has to be specified";
  // RTE::LogicError "Start of following cycle is before start of this cycle",
  // "First CDM is before start of cycle", "First exposure is before start of cycle",
  // "Last CDM is at or after start of next cycle", "Last exposure is at or after start of
  // next cycle". The precomputation throws RTE::InvalidArgumentError "Invalid crank angle"
  // when the exposure angles would not ascend (times out of order, or more marks after
  // the start than a cycle has) and RTE::PostconditionFailed when a cycle with its start
  // missing holds more marks than cdmsPerCycle.
  CycleTimestamps(const Settings& settings, const std::vector<TimeSpan>& cdms, const std::vector<TimeSpan>& exposures);

  bool isFullCycle() const { return m_settings.hasStart() && m_settings.hasNextStart(); }
  bool isStartMissing() const { return !m_settings.hasStart() && m_settings.hasNextStart(); }
  bool isEndMissing() const { return m_settings.hasStart() && !m_settings.hasNextStart(); }
  bool isIncomplete() const { return isStartMissing() || isEndMissing(); }
  bool isPprCycle() const { return !m_settings.pprSteps.empty(); }
  bool isPrePprCycle() const { return m_settings.pprSteps.empty(); }

  const Settings& settings() const { return m_settings; }
  const std::optional<TimeSpan>& start() const { return m_settings.start; }
  const std::optional<TimeSpan>& nextStart() const { return m_settings.nextStart; }
  DegreesPerCycle degreesPerCycle() const { return m_settings.degreesPerCycle; }
  std::uint32_t cdmsPerCycle() const { return m_settings.cdmsPerCycle; }
  std::uint64_t absoluteCycle() const { return m_settings.absoluteCycle; }
  std::uint64_t cycle() const { return m_settings.cycle; }
  CrankAngle minimalPprDistance() const { return m_settings.minimalPprDistance; }
  const std::vector<PprStep>& pprSteps() const { return m_settings.pprSteps; }
  std::size_t cdmCount() const { return m_cdms.size(); }
  std::size_t exposureCount() const { return m_exposures.size(); }
  bool containsExposures() const { return !m_exposures.empty(); }
  const std::vector<TimeSpan>& cdms() const { return m_cdms; }
  const std::vector<TimeSpan>& exposures() const { return m_exposures; }
  // One angle per exposure that has one; exposures before the first mark of a full or
  // end-missing cycle have none, so the later ones move up in this list.
  const std::vector<CrankAngle>& crankAngles() const { return m_crankAngles; }
  // Exposure index (into crankAngles()) to PPR step index.
  const std::map<std::uint64_t, std::size_t>& exposureToPprMap() const { return m_exposureToPpr; }

  // nextStart - start of a full cycle, else empty.
  std::optional<TimeSpan> cyclePeriod() const;
  // The smallest distance between consecutive exposures; empty with fewer than two.
  std::optional<TimeSpan> imagePeriod() const;
  // Empty with fewer than two marks. Otherwise a running minimum that starts at zero and
  // measures the first mark against itself, so ascending marks always give zero. Kept so
  // on purpose: callers rely on the value it has always had.
  std::optional<TimeSpan> minimalCdmDistance() const;

  std::optional<TimeSpan> exposureTimeAt(ExposureIndex exposure) const;
  std::optional<CrankAngle> crankAngleAt(ExposureIndex exposure) const;
  // The mean speed over the cycle, or over the part of it that was recorded.
  std::optional<Rpm> rpm() const;
  // The speed at an exposure by the central difference over its neighbours.
  std::optional<Rpm> rpmAt(ExposureIndex exposure) const;
  // The exposure closest in time; ties go to the earlier one.
  std::optional<ExposureIndex> nearestExposure(const TimeSpan& time) const;
  // The exposure closest in crank angle among the precomputed angles; ties go to the
  // earlier one.
  std::optional<ExposureIndex> nearestExposure(const CrankAngle& angle) const;
  std::optional<std::size_t> pprStepAt(ExposureIndex exposure) const;
  // 0 for an ordinary cycle; for a PPR cycle the number of exposure angles below
  // minimalPprDistance - d/2.
  std::size_t skipCount() const;

  // One sample per mark whose span (half-way to its neighbours, ending at the mark itself
  // for the first and last) the series covers: the mean of the series over that span, the
  // sample past its end interpolated at the end. The series must be sorted by time.
  std::vector<CrankAngleSample> mapToCrankAngle(const std::vector<TimeSample>& series) const;

  // Writes "Timestamps.bin" version 4 to an open, writable device. Throws
  // RTE::InvalidRequest "Output device is not open" / "Cannot write to output device",
  // RTE::InvalidArgumentError when a PPR step has an open end (nothing is written then),
  // RTE::FileWriteError when the device fails.
  void store(QIODevice& device) const;
  // Writes the file at path through a temporary file that replaces it only when complete.
  // Throws RTE::FileOpenError "Cannot open '<path>'", and as store(QIODevice&).
  void store(const QString& path) const;

  // Reads version 3 or 4; opens the device for reading when it is not open. Throws
  // RTE::FileOpenError "Cannot open hypersampling timestamps", RTE::FileReadError naming
  // the faulty field ("Unknown data format", "Invalid format version field",
  // "Unsupported/invalid format version", "Invalid settings field", "Invalid CDMs field",
  // "Invalid exposures field", "Invalid recorded cycle field", or a truncated or
  // implausible value), and as the constructor for a cycle that is not consistent.
  static CycleTimestamps load(QIODevice& device);
  // Throws RTE::FileOpenError "Cannot open '<path>'", and as load(QIODevice&).
  static CycleTimestamps load(const QString& path);

  // The text formats of earlier tools, picoseconds only. Both open the device as load()
  // does and throw RTE::FileReadError "CDM timestamps are missing", "Exposure timestamps
  // are missing", "Invalid unit for timestamps - this version only supports ps but not
  // <unit>" or "Corrupt data for hypersampling timestamps" (anything else malformed), and
  // as the constructor. Text after "#" is a comment.
  //
  // loadLegacyFormat: one "Key=Value" per line, blank lines ignored; "Unit", "CDMs",
  // "Exposures", "DegreesPerCycle", "CdmsPerCycle" required; "Start", "NextStart" ("-" or
  // absent when missing), "AbsoluteCycle", "RecordedCycle" optional; "PprStep=lower;upper"
  // once per step in degrees (an empty side is an open end). Times are blank-separated.
  //
  //   Unit=ps
  //   DegreesPerCycle=720
  //   CdmsPerCycle=4
  //   Start=0
  //   NextStart=100000000000
  //   CDMs=0 25000000000 50000000000 75000000000
  //   Exposures=10000000000 60000000000
  static CycleTimestamps loadLegacyFormat(QIODevice& device);
  // loadOldLegacyFormat: four lines: the unit; degrees per cycle, CDMs per cycle, start
  // and next start ("-" when missing); the CDM times; the exposure times.
  //
  //   ps
  //   720 4 0 100000000000
  //   0 25000000000 50000000000 75000000000
  //   10000000000 60000000000
  static CycleTimestamps loadOldLegacyFormat(QIODevice& device);

  friend bool operator==(const CycleTimestamps& a, const CycleTimestamps& b)
  {
    return a.m_settings == b.m_settings && a.m_cdms == b.m_cdms && a.m_exposures == b.m_exposures;
  }

private:
  // Where the i-th stored mark lies in the whole cycle, and the angle between marks.
  struct MarkLayout
  {
    double step;
    std::int64_t firstPosition;
  };

  void validate() const;
  void precompute();
  void precomputeFullCycle();
  void precomputeStartMissingCycle();
  void precomputeEndMissingCycle();
  void precomputePprIndexes();
  // Walks the exposures once. Exposures before the first mark get the first mark's angle
  // when angleBeforeFirstMark, none otherwise; the last mark's interval ends at lastEnd,
  // or, without one, every exposure from the last mark on gets the last mark's angle.
  void precomputeAngles(const MarkLayout& layout, bool angleBeforeFirstMark, const std::optional<TimeSpan>& lastEnd);
  void appendAngle(double angle);

  MarkLayout markLayout() const;
  double crankAngle(std::int64_t position, double step) const;
  double interpolatedAngle(std::int64_t position, double step, const Percentage& percentage) const;
  std::pair<TimeSpan, TimeSpan> crankAngleSpan(std::size_t index) const;
  bool isForPprStep(double angle, const PprStep& step) const;
  static std::optional<Rpm> rpm(double a0, double a1, TimeSpan t0, TimeSpan t1);

  Settings m_settings;
  std::vector<TimeSpan> m_cdms;
  std::vector<TimeSpan> m_exposures;
  std::vector<CrankAngle> m_crankAngles;
  std::map<std::uint64_t, std::size_t> m_exposureToPpr;
  CycleTimestampsDetail::CachedTimeSpan m_imagePeriod;
};

} // namespace RTE
