// One value of a series mapped onto crank angles (see CycleTimestamps::mapToCrankAngle).
#pragma once

#include <Core/Common/Units/CrankAngle.h>

namespace RTE
{

struct CrankAngleSample
{
  CrankAngle angle;
  double value = 0.0;

  friend constexpr bool operator==(const CrankAngleSample&, const CrankAngleSample&) = default;
};

} // namespace RTE
