#include "UnitsTestHelpers.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Units/DefaultStringToTimeConverter.h>
#include <Core/Common/Units/DefaultTimeToStringConverter.h>
#include <Core/Common/Units/TimeFormatter.h>
#include <Core/Common/Units/TimeUnits.h>

#include <gtest/gtest.h>

#include <random>

using RTE::TimeSpan;

namespace
{

const QString micro = QString(QChar(0x00B5));

} // namespace

TEST(TimeText, UnitHelpers)
{
  EXPECT_EQ(RTE::TimeUnits::unitIdFromText(u"us"), micro + QLatin1Char('s'));
  EXPECT_EQ(RTE::TimeUnits::unitIdFromText(u"\u03BCs"), micro + QLatin1Char('s'));
  EXPECT_EQ(RTE::TimeUnits::unitIdFromText(u"hours"), QStringLiteral("h"));
  EXPECT_EQ(RTE::TimeUnits::unitIdFromText(u"min"), QStringLiteral("min"));
  EXPECT_TRUE(RTE::TimeUnits::unitIdFromText(u"MS").isEmpty());
  EXPECT_TRUE(RTE::TimeUnits::unitIdFromText(u"m").isEmpty());
  EXPECT_EQ(RTE::TimeUnits::picoSecondsPerUnit(u"h"), 3600000000000000);
  EXPECT_EQ(RTE::TimeUnits::picoSecondsPerUnit(u"us"), 0); // ids only
  EXPECT_TRUE(RTE::TimeUnits::isDecimalUnitId(u"ns"));
  EXPECT_FALSE(RTE::TimeUnits::isDecimalUnitId(u"min"));

  const std::pair<TimeSpan, const char*> largest[] = {
      {TimeSpan(0), "s"},         {TimeSpan(999), "ps"},     {TimeSpan(-1000), "ns"},    {RTE::Seconds(59), "s"},
      {RTE::Seconds(-60), "min"}, {RTE::Seconds(3600), "h"}, {TimeSpan::Minimum(), "h"}, {TimeSpan::Maximum(), "h"},
  };
  for (const auto& [span, unit] : largest)
  {
    SCOPED_TRACE(span.ToPicoSeconds());
    EXPECT_EQ(RTE::TimeUnits::largestUnitIdFor(span), u8(unit));
  }
  EXPECT_EQ(RTE::TimeUnits::largestUnitIdFor(RTE::Seconds(7200), true), QStringLiteral("s"));
  EXPECT_EQ(RTE::TimeUnits::largestUnitIdFor(TimeSpan::Minimum(), true), QStringLiteral("s"));
}

TEST(TimeText, ExactTextInAutomaticAndFixedUnits)
{
  const RTE::DefaultTimeToStringConverter automatic;
  const std::pair<TimeSpan, const char*> cases[] = {
      {RTE::MicroSeconds(12500), "12.5 ms"},
      {TimeSpan(0), "0 s"},
      {TimeSpan(-1), "-1 ps"},
      {TimeSpan(1001), "1.001 ns"},
      {RTE::Seconds(7200), "7200 s"},
      {TimeSpan::Maximum(), "9223372.036854775807 s"},
      {TimeSpan::Minimum(), "-9223372.036854775808 s"},
  };
  for (const auto& [span, text] : cases)
    EXPECT_EQ(automatic.convert(span), u8(text));

  EXPECT_EQ(RTE::DefaultTimeToStringConverter(u"us").convert(RTE::MilliSeconds(2)), u8("2000 µs"));
  EXPECT_EQ(RTE::DefaultTimeToStringConverter(u"s").convert(TimeSpan(1)), u8("0.000000000001 s"));
  EXPECT_EQ(RTE::DefaultTimeToStringConverter(u"min").convert(RTE::Seconds(90)), u8("1.5 min"));
  EXPECT_EQ(RTE::DefaultTimeToStringConverter(u"h").convert(RTE::Seconds(-900)), u8("-0.25 h"));
  // No finite decimal: the nearest double.
  EXPECT_EQ(RTE::DefaultTimeToStringConverter(u"min").convert(RTE::Seconds(20)), u8("0.3333333333333333 min"));
  EXPECT_THROW(RTE::DefaultTimeToStringConverter(u"days"), RTE::InvalidArgumentError);
}

TEST(TimeText, ReadsNumbersAndUnitsExactly)
{
  const RTE::DefaultStringToTimeConverter reader;
  const std::pair<const char*, std::int64_t> cases[] = {
      {"12.5 ms", 12500000000},
      {"12.5ms", 12500000000},
      {"  -3e2   us ", -300000000},
      {"+1.5 min", 90000000000000},
      {"0.25 hours", 900000000000000},
      {"0.000000000001 s", 1},
      {"0.4 ps", 0},
      {"0.5 ps", 1},
      {"-0.5 ps", -1},
      {"1.0000000000000000000000000000000000009 s", 1000000000000}, // beyond 36 digits
      {"123456789012345678901234567890123456789e-30 ps", 123456789},
      {"9223372.036854775807 s", INT64_MAX},
      {"-9223372.036854775808 s", INT64_MIN},
      {"-0 s", 0},
      {"1e-99999999 s", 0},
  };
  for (const auto& [text, ps] : cases)
  {
    SCOPED_TRACE(text);
    EXPECT_EQ(reader.convert(u8(text)).ToPicoSeconds(), ps);
  }

  for (const char* bad : {"", "ms", "12.5", "1,5 ms", "nan s", "1.2.3 s", "12 5 ms", ". s", "-", "1e ms"})
  {
    SCOPED_TRACE(bad);
    EXPECT_FALSE(reader.tryConvert(u8(bad)).has_value());
    EXPECT_THROW(reader.convert(u8(bad)), RTE::InvalidArgumentError);
  }
  for (const char* tooLarge :
       {"9223372.036854775808 s", "-9223372.036854775809 s", "1e20 s", "2562048 h", "1e999999999 ps"})
  {
    SCOPED_TRACE(tooLarge);
    EXPECT_THROW(reader.convert(u8(tooLarge)), RTE::OutOfRangeError);
  }
  const QString unknown = MessageOf<RTE::InvalidArgumentError>([&] { reader.convert(u8("5 furlongs")); });
  EXPECT_TRUE(unknown.contains(QStringLiteral("unknown time unit 'furlongs'"))) << unknown.toStdString();

  const RTE::DefaultStringToTimeConverter seconds(u"s");
  EXPECT_EQ(seconds.convert(u"1.5").ToPicoSeconds(), 1500000000000);
  EXPECT_EQ(seconds.convert(u"1.5 ms").ToPicoSeconds(), 1500000000);
  EXPECT_THROW(RTE::DefaultStringToTimeConverter(u"m"), RTE::InvalidArgumentError);
}

TEST(TimeText, FormatterPicksAReadableUnit)
{
  const Common::TimeFormatter& formatter = Common::TimeFormatter::Default();
  EXPECT_EQ(formatter.ToString(RTE::MicroSeconds(12500)), u8("12.5 ms"));
  EXPECT_EQ(formatter.ToString(RTE::Seconds(5400)), u8("1.5 h"));
  EXPECT_EQ(formatter.ToString(RTE::Seconds(-90)), u8("-1.5 min"));
  EXPECT_EQ(formatter.ToString(TimeSpan(0)), u8("0 s"));
  EXPECT_EQ(formatter.ToString(TimeSpan(1234567)), u8("1.23 µs"));

  const Common::TimeFormatter fixed(Common::NumberFormatter(4), u"us");
  EXPECT_EQ(fixed.ToString(RTE::NanoSeconds(1234567)), u8("1235 µs"));
  EXPECT_EQ(fixed.UnitIdFor(RTE::Seconds(1)), u8("µs"));
  EXPECT_DOUBLE_EQ(formatter.ValueIn(TimeSpan::Maximum(), u"s"), 9223372.036854775807);
  EXPECT_THROW(Common::TimeFormatter(Common::NumberFormatter(), u"furlong"), RTE::InvalidArgumentError);
}

// Spans of every magnitude, in the automatic unit and in each decimal unit, read back
// to the same picosecond.
TEST(TimeText, AMillionRandomSpansSurviveTextAndBack)
{
  const RTE::DefaultTimeToStringConverter automatic;
  const RTE::DefaultTimeToStringConverter fixed[] = {
      RTE::DefaultTimeToStringConverter(u"s"), RTE::DefaultTimeToStringConverter(u"ms"),
      RTE::DefaultTimeToStringConverter(u"us"), RTE::DefaultTimeToStringConverter(u"ns"),
      RTE::DefaultTimeToStringConverter(u"ps")};
  const RTE::DefaultStringToTimeConverter reader;
  std::mt19937_64 random(112026);
  for (int i = 0; i < 1000000; ++i)
  {
    // A random shift spreads the magnitudes evenly over 1 ps to the whole range.
    const std::uint64_t bits = random();
    const auto span = TimeSpan(static_cast<std::int64_t>(bits) >> (bits % 64));
    const QString text = (i % 2 == 0) ? automatic.convert(span) : fixed[(i / 2) % 5].convert(span);
    ASSERT_EQ(reader.convert(text), span) << text.toStdString();
  }
  for (const TimeSpan edge : {TimeSpan::Maximum(), TimeSpan::Minimum(), TimeSpan(0), TimeSpan(-1)})
  {
    for (const auto& converter : fixed)
      EXPECT_EQ(reader.convert(converter.convert(edge)), edge);
  }
}
