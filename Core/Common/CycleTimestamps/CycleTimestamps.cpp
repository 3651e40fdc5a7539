#include <Core/Common/CycleTimestamps/CycleTimestamps.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>

#include <Zn/Utils/Algorithm.h>

#include <algorithm>
#include <cmath>

namespace RTE
{

namespace
{

// The index in a non-empty ascending list closest to a value: the first entry not below
// the value or the one before it, whichever is nearer, ties to the earlier. Before the
// first entry the second wins when it is as near as the first (only possible with equal
// or unordered entries).
template <typename List, typename Value, typename Distance>
std::uint64_t nearestIndex(const List& list, const Value& value, Distance distance)
{
  if (list.size() == 1)
    return 0;
  const auto found = std::lower_bound(list.begin(), list.end(), value);
  const std::size_t k = std::min<std::size_t>(found - list.begin(), list.size() - 1);
  if (k > 0)
    return distance(list[k - 1], value) <= distance(list[k], value) ? k - 1 : k;
  return distance(list[1], value) <= distance(list[0], value) ? 1 : 0;
}

} // namespace

CycleTimestamps::CycleTimestamps(const Settings& settings, const std::vector<TimeSpan>& cdms,
                                 const std::vector<TimeSpan>& exposures) :
    m_settings(settings),
    m_cdms(cdms),
    m_exposures(exposures)
{
  validate();
  precompute();
}

void CycleTimestamps::validate() const
{
  const auto& start = m_settings.start;
  const auto& nextStart = m_settings.nextStart;
  if (!start && !nextStart)
    Raise(InvalidArgumentError(tr("At least start or end has to be specified")));
  if (start && nextStart && *start > *nextStart)
    Raise(LogicError(tr("Start of following cycle is before start of this cycle")));
  if (start && !m_cdms.empty() && m_cdms.front() < *start)
    Raise(LogicError(tr("First CDM is before start of cycle")));
  if (start && !m_exposures.empty() && m_exposures.front() < *start)
    Raise(LogicError(tr("First exposure is before start of cycle")));
  if (nextStart && !m_cdms.empty() && m_cdms.back() >= *nextStart)
    Raise(LogicError(tr("Last CDM is at or after start of next cycle")));
  if (nextStart && !m_exposures.empty() && m_exposures.back() >= *nextStart)
    Raise(LogicError(tr("Last exposure is at or after start of next cycle")));
}

void CycleTimestamps::precompute()
{
  if (m_cdms.empty() || m_exposures.empty())
    return;
  m_crankAngles.reserve(m_exposures.size());
  if (isFullCycle())
    precomputeFullCycle();
  else if (m_settings.hasNextStart())
    precomputeStartMissingCycle();
  else
    precomputeEndMissingCycle();
  precomputePprIndexes();
}

CycleTimestamps::MarkLayout CycleTimestamps::markLayout() const
{
  const double d = m_settings.degreesPerCycle;
  const auto perCycle = static_cast<std::int64_t>(m_settings.cdmsPerCycle.get());
  if (isFullCycle())
    return {d / static_cast<double>(m_cdms.size()), 0};
  if (isStartMissing())
    return {d / static_cast<double>(perCycle), perCycle - static_cast<std::int64_t>(m_cdms.size())};
  return {d / static_cast<double>(perCycle), 0};
}

void CycleTimestamps::precomputeFullCycle()
{
  if (!isFullCycle())
    Raise(PostconditionFailed(QStringLiteral("Postcondition failed: isFullCycle()")));
  precomputeAngles(markLayout(), false, m_settings.nextStart);
}

void CycleTimestamps::precomputeStartMissingCycle()
{
  if (!(isIncomplete() && !m_settings.hasStart() && m_settings.hasNextStart()))
    Raise(PostconditionFailed(
        QStringLiteral("Postcondition failed: isIncomplete() && !m_settings.hasStart() && m_settings.hasNextStart()")));
  if (!(m_settings.cdmsPerCycle.get() >= m_cdms.size()))
    Raise(PostconditionFailed(QStringLiteral("Postcondition failed: m_settings.cdmsPerCycle >= m_cdms.size()")));
  precomputeAngles(markLayout(), true, m_settings.nextStart);
}

void CycleTimestamps::precomputeEndMissingCycle()
{
  if (!(isIncomplete() && m_settings.hasStart() && !m_settings.hasNextStart()))
    Raise(PostconditionFailed(
        QStringLiteral("Postcondition failed: isIncomplete() && m_settings.hasStart() && !m_settings.hasNextStart()")));
  precomputeAngles(markLayout(), false, std::nullopt);
}

void CycleTimestamps::precomputeAngles(const MarkLayout& layout, bool angleBeforeFirstMark,
                                       const std::optional<TimeSpan>& lastEnd)
{
  const std::size_t marks = m_cdms.size();
  std::size_t k = 0;
  for (const TimeSpan& exposure : m_exposures)
  {
    if (exposure < m_cdms.front())
    {
      if (angleBeforeFirstMark)
        appendAngle(crankAngle(layout.firstPosition, layout.step));
      continue;
    }
    while (k + 1 < marks && exposure >= m_cdms[k + 1])
      ++k;
    const auto position = layout.firstPosition + static_cast<std::int64_t>(k);
    const std::optional<TimeSpan> next = k + 1 < marks ? std::optional<TimeSpan>(m_cdms[k + 1]) : lastEnd;
    if (!next)
    {
      appendAngle(crankAngle(position, layout.step));
      continue;
    }
    const double span = (*next - m_cdms[k]).ToSecondsAsDouble();
    // A mark interval of no length only comes with marks out of order; the angle then
    // fails the ascending check rather than dividing by zero.
    const double percent = span > 0.0 ? 100.0 * (exposure - m_cdms[k]).ToSecondsAsDouble() / span : 0.0;
    appendAngle(interpolatedAngle(position, layout.step, Percentage(percent)));
  }
}

void CycleTimestamps::appendAngle(double angle)
{
  // Angles past the cycle's end (more marks after the start than a cycle has) wrap to its
  // beginning, and so fail the ascending check below.
  const CrankAngle wrapped = CrankAngle::wrapped(angle, m_settings.degreesPerCycle);
  if (!m_crankAngles.empty() && double(wrapped) < double(m_crankAngles.back()))
    Raise(InvalidArgumentError(tr("Invalid crank angle")));
  m_crankAngles.push_back(wrapped);
}

void CycleTimestamps::precomputePprIndexes()
{
  if (!isFullCycle() || m_settings.pprSteps.empty())
    return;
  if (!Zn::isSorted(m_crankAngles))
    Raise(PostconditionFailed(QStringLiteral("Postcondition failed: Zn::isSorted(m_crankAngles)")));
  const std::vector<PprStep>& steps = m_settings.pprSteps;
  std::size_t step = 0;
  for (std::size_t exposure = 0; exposure < m_crankAngles.size() && step < steps.size(); ++exposure)
  {
    while (step < steps.size())
    {
      if (isForPprStep(m_crankAngles[exposure], steps[step]))
      {
        // Exposures arrive in ascending order: the hint keeps the build linear.
        m_exposureToPpr.insert_or_assign(m_exposureToPpr.end(), exposure, step);
        break;
      }
      ++step;
    }
  }
}

double CycleTimestamps::crankAngle(std::int64_t position, double step) const
{
  return static_cast<double>(position) * step - m_settings.degreesPerCycle / 2;
}

double CycleTimestamps::interpolatedAngle(std::int64_t position, double step, const Percentage& percentage) const
{
  return crankAngle(position, step) + percentage.value() / 100.0 * step;
}

std::pair<TimeSpan, TimeSpan> CycleTimestamps::crankAngleSpan(std::size_t index) const
{
  // Also refuses index == cdmCount(), which has no mark to read.
  if (index >= m_cdms.size())
    Raise(OutOfRangeError(tr("Invalid increment index")));
  const TimeSpan previous = m_cdms[index == 0 ? 0 : index - 1];
  const TimeSpan current = m_cdms[index];
  const TimeSpan next = m_cdms[std::min(index + 1, m_cdms.size() - 1)];
  const TimeSpan a = previous + (current - previous) / 2;
  const TimeSpan b = current + (next - current) / 2;
  return {std::min(a, b), std::max(a, b)};
}

bool CycleTimestamps::isForPprStep(double angle, const PprStep& step) const
{
  // A step without a lower end takes no exposure.
  if (!step.lower())
    return false;
  if (double(*step.lower()) > angle)
    return false;
  if (!step.upper())
    return true;
  if (double(*step.upper()) > angle)
    return true;
  return angle - double(*step.upper()) < double(m_settings.minimalPprDistance);
}

std::optional<Rpm> CycleTimestamps::rpm(double a0, double a1, TimeSpan t0, TimeSpan t1)
{
  if (a0 > a1 || t0 >= t1)
    return std::nullopt;
  if (a1 == a0)
    return Rpm(0.0);
  const double periodPs = (t1 - t0).ToPicoSecondsAsDouble() * 360.0 / (a1 - a0);
  // A revolution takes at least a picosecond and at most what the period counter holds.
  const double clamped = std::clamp(periodPs, 1.0, 18446744073709549568.0);
  return Rpm(Frequency(static_cast<std::uint64_t>(clamped)));
}

std::optional<TimeSpan> CycleTimestamps::cyclePeriod() const
{
  if (!isFullCycle())
    return std::nullopt;
  return *m_settings.nextStart - *m_settings.start;
}

std::optional<TimeSpan> CycleTimestamps::imagePeriod() const
{
  if (m_exposures.size() < 2)
    return std::nullopt;
  return m_imagePeriod.get(
      [this]
      {
        TimeSpan smallest = TimeSpan::Maximum();
        for (std::size_t i = 1; i < m_exposures.size(); ++i)
          smallest = std::min(smallest, m_exposures[i] - m_exposures[i - 1]);
        return smallest;
      });
}

std::optional<TimeSpan> CycleTimestamps::minimalCdmDistance() const
{
  if (m_cdms.size() < 2)
    return std::nullopt;
  TimeSpan smallest;
  for (std::size_t i = 0; i < m_cdms.size(); ++i)
    smallest = std::min(smallest, m_cdms[i] - m_cdms[i == 0 ? 0 : i - 1]);
  return smallest;
}

std::optional<TimeSpan> CycleTimestamps::exposureTimeAt(ExposureIndex exposure) const
{
  if (exposure.get() >= m_exposures.size())
    return std::nullopt;
  return m_exposures[exposure.get()];
}

std::optional<CrankAngle> CycleTimestamps::crankAngleAt(ExposureIndex exposure) const
{
  if (exposure.get() >= m_crankAngles.size())
    return std::nullopt;
  return m_crankAngles[exposure.get()];
}

std::optional<Rpm> CycleTimestamps::rpm() const
{
  const double d = m_settings.degreesPerCycle;
  if (isFullCycle())
    return rpm(-d / 2, d / 2, *m_settings.start, *m_settings.nextStart);
  const double step = d / m_settings.cdmsPerCycle.get();
  if (isEndMissing())
  {
    if (m_cdms.size() < 2)
      return std::nullopt;
    return rpm(-d / 2, static_cast<double>(m_cdms.size() - 1) * step - d / 2, *m_settings.start, m_cdms.back());
  }
  if (m_cdms.empty())
    return std::nullopt;
  const auto firstPosition =
      static_cast<std::int64_t>(m_settings.cdmsPerCycle.get()) - static_cast<std::int64_t>(m_cdms.size());
  return rpm(crankAngle(firstPosition, step), d / 2, m_cdms.front(), *m_settings.nextStart);
}

std::optional<Rpm> CycleTimestamps::rpmAt(ExposureIndex exposure) const
{
  const std::uint64_t i = exposure.get();
  if (i >= m_exposures.size() || i >= m_crankAngles.size())
    return std::nullopt;
  const std::size_t before = i == 0 ? 0 : i - 1;
  const std::size_t angleAfter = std::min<std::size_t>(i + 1, m_crankAngles.size() - 1);
  const std::size_t timeAfter = std::min<std::size_t>(i + 1, m_exposures.size() - 1);
  return rpm(m_crankAngles[before], m_crankAngles[angleAfter], m_exposures[before], m_exposures[timeAfter]);
}

std::optional<ExposureIndex> CycleTimestamps::nearestExposure(const TimeSpan& time) const
{
  if (m_exposures.empty())
    return std::nullopt;
  return ExposureIndex(
      nearestIndex(m_exposures, time, [](const TimeSpan& a, const TimeSpan& b) { return (a - b).Abs(); }));
}

std::optional<ExposureIndex> CycleTimestamps::nearestExposure(const CrankAngle& angle) const
{
  if (m_crankAngles.empty())
    return std::nullopt;
  return ExposureIndex(nearestIndex(m_crankAngles, double(angle),
                                    [](const CrankAngle& a, double b) { return std::fabs(double(a) - b); }));
}

std::optional<std::size_t> CycleTimestamps::pprStepAt(ExposureIndex exposure) const
{
  const auto found = m_exposureToPpr.find(exposure.get());
  if (found == m_exposureToPpr.end())
    return std::nullopt;
  return found->second;
}

std::size_t CycleTimestamps::skipCount() const
{
  if (isPrePprCycle())
    return 0;
  const double limit = double(m_settings.minimalPprDistance) - m_settings.degreesPerCycle / 2;
  return static_cast<std::size_t>(
      std::count_if(m_crankAngles.begin(), m_crankAngles.end(), [limit](const CrankAngle& a) { return a < limit; }));
}

std::vector<CrankAngleSample> CycleTimestamps::mapToCrankAngle(const std::vector<TimeSample>& series) const
{
  std::vector<CrankAngleSample> result;
  if (series.empty() || m_cdms.empty())
    return result;
  const MarkLayout layout = markLayout();
  const auto byTime = [](const TimeSample& sample, const TimeSpan& time) { return sample.time < time; };

  for (std::size_t i = 0; i < m_cdms.size(); ++i)
  {
    const auto [a, b] = crankAngleSpan(i);
    if (!(series.front().time <= a && b <= series.back().time))
      continue;

    const auto firstIter = std::lower_bound(series.cbegin(), series.cend(), a, byTime);
    const auto lastIter = std::lower_bound(firstIter, series.cend(), b, byTime);
    if (series.cend() == lastIter)
      Raise(PostconditionFailed(QStringLiteral("Postcondition failed: series.cend() != lastIter")));
    double sum = 0.0;
    std::size_t count = 0;
    for (auto it = firstIter; it != lastIter; ++it, ++count)
      sum += it->value;
    if (lastIter->time > b && lastIter != series.cbegin())
    {
      // The sample past the span's end counts with its value at the end.
      const TimeSample& before = *(lastIter - 1);
      const double fraction =
          (b - before.time).ToPicoSecondsAsDouble() / (lastIter->time - before.time).ToPicoSecondsAsDouble();
      sum += before.value + (lastIter->value - before.value) * fraction;
    }
    else
    {
      sum += lastIter->value;
    }
    ++count;
    if (count == 0)
      Raise(PostconditionFailed(QStringLiteral("Postcondition failed: !values.empty()")));

    const double angle = crankAngle(layout.firstPosition + static_cast<std::int64_t>(i), layout.step);
    result.push_back({CrankAngle::wrapped(angle, m_settings.degreesPerCycle), sum / static_cast<double>(count)});
  }
  return result;
}

} // namespace RTE
