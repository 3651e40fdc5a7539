// Small builders shared by the cycle tests.
#pragma once

#include <Core/Common/CycleTimestamps/CycleTimestamps.h>

#include "OperatingSystem/TestHelpers.h"

#include <QString>

#include <cmath>
#include <optional>
#include <ostream>
#include <vector>

namespace CycleFixtures
{

// Milliseconds, exact to the picosecond for the values the tests use.
inline RTE::TimeSpan ms(double milliSeconds)
{
  return RTE::TimeSpan(static_cast<std::int64_t>(std::llround(milliSeconds * 1e9)));
}

inline std::vector<RTE::TimeSpan> times(const std::vector<double>& milliSeconds)
{
  std::vector<RTE::TimeSpan> result;
  for (double t : milliSeconds)
    result.push_back(ms(t));
  return result;
}

inline RTE::CycleTimestamps::Settings settings(double degrees, std::uint32_t cdmsPerCycle,
                                               std::optional<double> start = std::nullopt,
                                               std::optional<double> nextStart = std::nullopt)
{
  RTE::CycleTimestamps::Settings s;
  s.degreesPerCycle = RTE::DegreesPerCycle(degrees);
  s.cdmsPerCycle = RTE::CycleTimestamps::CdmCount(cdmsPerCycle);
  if (start)
    s.start = ms(*start);
  if (nextStart)
    s.nextStart = ms(*nextStart);
  return s;
}

// 720 degrees from 0 to 100 ms with marks at 0, 25, 50, 75 ms.
inline RTE::CycleTimestamps fullCycle(const std::vector<double>& exposures)
{
  return RTE::CycleTimestamps(settings(720.0, 4, 0.0, 100.0), times({0.0, 25.0, 50.0, 75.0}), times(exposures));
}

} // namespace CycleFixtures

// Readable texts in assertion messages.
inline void PrintTo(const QString& text, std::ostream* os)
{
  *os << '"' << text.toStdString() << '"';
}
