// Units that relate a rate to the quantity accumulated over a duration, and the time
// unit that shows a duration best.
//
//   // What 1 mm/s amounts to over 2 s, in each length unit: m 0.002, mm 2, ...
//   QList<RTE::Unit> lengths = RTE::getTimeRelatedUnits(QStringLiteral("mm/s"), 2.0, QStringLiteral("s"));
//   RTE::GetOptimalUnitIdForTime(-90.0, QStringLiteral("s"));  // "min"
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Unit.h>

#include <QList>
#include <QString>

namespace RTE
{

// For a rate unit (velocity, acceleration, strain rate, ...) the units of the integrated
// quantity over `time`; for a quantity unit the units of its rate (or second rate) over
// that time. Each resulting unit's factor turns a value in unitId into that unit. Uses the
// registered sets; the time is read in timeUnitId of the registered "Time" set (a default
// time set when none is registered). Empty when time is 0, timeUnitId is not a time unit,
// or unitId has no related set.
CORECOMMON_EXPORT QList<Unit> getTimeRelatedUnits(const QString& unitId, double time, const QString& timeUnitId);

// The largest of "h", "min", "s", "ms", "µs", "ns" in which |time| is greater than 1, else
// "ps". Throws RTE::InvalidArgumentError when timeUnitId is not a time unit (filter applied).
CORECOMMON_EXPORT QString GetOptimalUnitIdForTime(double time, const QString& timeUnitId);

} // namespace RTE
