// Shows a value with the unit of its set in which its number reads best.
//
//   Common::AutoFormatValueWithUnit(0.0000123, QStringLiteral("s"));  // "12.3 µs"
//   Common::AutoFormatValueWithUnit(1500.0, QStringLiteral("mm"));    // "1.5 m"
//   Common::AutoFormatValueWithUnit(20.0, QStringLiteral("°C"));      // "20 °C"
//
// Rule for the unit, among the units of the registered set holding unitId:
// 1. Candidates are the given unit and the units the set offers (filter applied) that
//    have the same offset and whose factor differs from the given unit's by a power of
//    ten. A value thus never moves to a scale with another zero point (°C to K) nor
//    between unit systems (m to ft) or non-decimal steps (s to min).
// 2. A candidate whose converted magnitude lies in [1, 1000) beats every other; among
//    those the one with the largest factor (the smallest number) wins: 2.54 cm rather
//    than 25.4 mm, 1.5 bar rather than 150 kPa.
// 3. If none does, the candidate closest to that band in decades wins (a magnitude a
//    below 1 is -log10(a) decades away, one at or above 1000 log10(a) - 3).
// 4. Ties, zero, NaN, infinities and ids no registered set holds keep the given unit.
// The number is printed by the formatter; the unit's label follows after a blank (no
// blank and no label for an empty label, the id itself for an unknown id).
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/NumberFormatter.h>

#include <QString>

namespace Common
{

// The id of the unit chosen by the rule above.
CORECOMMON_EXPORT QString BestReadingUnitId(double value, const QString& unitId);

// The value converted to BestReadingUnitId, printed with that unit's label.
CORECOMMON_EXPORT QString AutoFormatValueWithUnit(double value, const QString& unitId,
                                                  const NumberFormatter& formatter = NumberFormatter::Default());

} // namespace Common
