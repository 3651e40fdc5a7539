// Reads a duration from "<number> <unit>" text exactly, without going through a double:
// what RTE::DefaultTimeToStringConverter writes reads back to the same picosecond.
//
//   RTE::DefaultStringToTimeConverter().convert(u"12.5 ms");   // 12500000000 ps
//   RTE::DefaultStringToTimeConverter().convert(u"-3e2 us");   // -300000000 ps
//   RTE::DefaultStringToTimeConverter(u"s").convert(u"1.5");   // 1.5 s (bare number: seconds)
//
// The number: an optional sign, digits with "." as the decimal point, an optional exponent
// ("e-3"); digits beyond the 36th significant one are ignored. The unit follows after
// any number of blanks (or none: "12.5ms") and is one RTE::TimeUnits::unitIdFromText
// knows ("s", "ms", "µs", "us", "ns", "ps", "min", "h", ...). Blanks around the text are
// ignored. A value between two picoseconds is rounded to the nearer one (halves away
// from zero). The locale never matters.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/I_StringToTimeConverter.h>

#include <QString>

#include <optional>

namespace RTE
{

class CORECOMMON_EXPORT DefaultStringToTimeConverter : public I_StringToTimeConverter
{
public:
  // A unit is required.
  DefaultStringToTimeConverter();
  // A bare number is read in this unit (any spelling unitIdFromText knows). Throws
  // RTE::InvalidArgumentError when it is not a time unit.
  explicit DefaultStringToTimeConverter(QStringView defaultUnitId);
  ~DefaultStringToTimeConverter() override;

  // Throws RTE::InvalidArgumentError for text that is not a number and a time unit (the
  // message names the text and the known units) and RTE::OutOfRangeError for a duration
  // beyond TimeSpan::Minimum() to TimeSpan::Maximum() (about 106 days either way).
  TimeSpan convert(QStringView text) const override;

  // As convert, but empty instead of throwing (no log line either).
  std::optional<TimeSpan> tryConvert(QStringView text) const noexcept;

  // The unit of bare numbers, or empty when a unit is required.
  const QString& defaultUnitId() const { return m_defaultUnitId; }

private:
  QString m_defaultUnitId;
};

} // namespace RTE
