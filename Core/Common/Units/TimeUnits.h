// Durations; base second.
//
// Text helpers for durations written as "<number> <unit>":
//
//   RTE::TimeUnits::unitIdFromText(u"us");                      // "µs"
//   RTE::TimeUnits::picoSecondsPerUnit(u"ms");                  // 1000000000
//   RTE::TimeUnits::largestUnitIdFor(RTE::MilliSeconds(1500));  // "s"
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/TimeSpan.h>
#include <Core/Common/Units/Units.h>

#include <QStringView>

#include <cstdint>

namespace RTE
{

class CORECOMMON_EXPORT TimeUnits : public Units
{
public:
  // "Time"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString Second;
  static const QString Millisecond;
  static const QString Microsecond;
  static const QString Nanosecond;
  static const QString Picosecond;
  static const QString Minute;
  static const QString Hour;

  TimeUnits();
  TimeUnits(const TimeUnits&);
  TimeUnits& operator=(const TimeUnits&);
  ~TimeUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;

  // The unit id a text names: an id of this set, or one of the spellings people type
  // for them: "us" and the Greek small mu ("μs") for "µs", "sec" for "s", "minute(s)"
  // for "min", "hour(s)" for "h". Case-sensitive ("MS" names nothing). Empty when the
  // text names no time unit.
  static QString unitIdFromText(QStringView text);

  // How many picoseconds one of the unit is; 0 for an id that is not a time unit id.
  static std::int64_t picoSecondsPerUnit(QStringView unitId);

  // Whether the unit is a power of ten of picoseconds (s, ms, µs, ns, ps), so that every
  // span has a finite decimal text in it.
  static bool isDecimalUnitId(QStringView unitId);

  // The largest unit of which |span| holds at least one: "h", "min", "s", "ms", "µs",
  // "ns" or "ps"; with decimalOnly, "s" at most. Zero gives "s".
  static QString largestUnitIdFor(TimeSpan span, bool decimalOnly = false);
};

} // namespace RTE
