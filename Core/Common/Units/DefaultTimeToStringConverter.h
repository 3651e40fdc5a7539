// Writes a duration as "<number> <unit id>" with every digit it needs and no more, so
// that RTE::DefaultStringToTimeConverter reads back exactly the same span.
//
//   RTE::DefaultTimeToStringConverter().convert(RTE::MicroSeconds(12500));   // "12.5 ms"
//   RTE::DefaultTimeToStringConverter(u"µs").convert(RTE::MilliSeconds(2));  // "2000 µs"
//   RTE::DefaultTimeToStringConverter().convert(RTE::TimeSpan(-1));          // "-1 ps"
//
// The automatic unit is the largest of s, ms, µs, ns, ps of which the span holds at least
// one ("0 s" for zero); those units are powers of ten of picoseconds, so the decimal text
// is always finite and exact. In a fixed "min" or "h" the text is exact when it is finite
// (90 s reads "1.5 min") and otherwise the shortest text of the nearest double (1 ps in
// min): the one case that does not read back exactly.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/I_TimeToStringConverter.h>

#include <QStringView>

namespace RTE
{

class CORECOMMON_EXPORT DefaultTimeToStringConverter : public I_TimeToStringConverter
{
public:
  // The automatic unit.
  DefaultTimeToStringConverter();
  // Always this unit: a time unit id or a spelling RTE::TimeUnits::unitIdFromText knows
  // ("us"). Throws RTE::InvalidArgumentError for anything else.
  explicit DefaultTimeToStringConverter(QStringView unitId);
  ~DefaultTimeToStringConverter() override;

  QString convert(TimeSpan span) const override;

  // The fixed unit id, or empty for the automatic unit.
  const QString& unitId() const { return m_unitId; }

private:
  QString m_unitId;
};

} // namespace RTE
