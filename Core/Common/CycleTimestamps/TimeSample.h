// One value of a time series measured during an engine cycle, ordered by its time.
#pragma once

#include <Core/Common/Units/TimeSpan.h>

namespace RTE
{

struct TimeSample
{
  TimeSpan time;
  double value = 0.0;

  friend constexpr bool operator<(const TimeSample& a, const TimeSample& b) { return a.time < b.time; }
  friend constexpr bool operator==(const TimeSample&, const TimeSample&) = default;
};

} // namespace RTE
