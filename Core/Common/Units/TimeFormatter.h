// Shows a duration to a user: the number printed by a Common::NumberFormatter, then the
// unit, either a fixed one or the one that reads best.
//
//   Common::TimeFormatter::Default().ToString(RTE::MicroSeconds(12500));  // "12.5 ms"
//   Common::TimeFormatter::Default().ToString(RTE::Seconds(5400));        // "1.5 h"
//   Common::TimeFormatter(Common::NumberFormatter(4), u"µs").ToString(RTE::NanoSeconds(1234567));
//                                                                         // "1235 µs"
//
// The automatic unit is the largest of h, min, s, ms, µs, ns, ps of which the span holds
// at least one ("0 s" for zero), so the number lies in [1, 1000) for the decimal units, in
// [1, 60) for minutes. The text is for reading: it is rounded to the formatter's digits.
// For text that must read back exactly, use RTE::DefaultTimeToStringConverter.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/NumberFormatter.h>
#include <Core/Common/Units/TimeSpan.h>

#include <QString>
#include <QStringView>

namespace Common
{

class CORECOMMON_EXPORT TimeFormatter
{
public:
  // NumberFormatter::Default() and the automatic unit.
  TimeFormatter();
  // These numbers, and the unit: empty for the automatic one, else a time unit id or a
  // spelling RTE::TimeUnits::unitIdFromText knows ("us"). Throws RTE::InvalidArgumentError
  // for any other unit.
  explicit TimeFormatter(NumberFormatter numbers, QStringView unitId = {});

  // The formatter with the default settings, shared by the whole process.
  static const TimeFormatter& Default();

  // The unit in which ToString shows the span.
  QString UnitIdFor(RTE::TimeSpan span) const;
  // The span in that unit as a double (as exact as a double can be).
  double ValueIn(RTE::TimeSpan span, QStringView unitId) const;
  // "<number> <unit>".
  QString ToString(RTE::TimeSpan span) const;

  // The fixed unit id, or empty for the automatic unit.
  const QString& UnitId() const { return m_unitId; }
  const NumberFormatter& Numbers() const { return m_numbers; }

private:
  NumberFormatter m_numbers;
  QString m_unitId;
};

} // namespace Common
