#include <Core/Common/Storage/SettingsStringBasedDocument.h>
#include <Core/Common/Units/FrequencySettings.h>
#include <Core/Common/Units/PercentageSettings.h>
#include <Core/Common/Units/TimeSpanSettings.h>

#include "../LogCapture.h"
#include "QStringPrinter.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>

using Storage::SettingsStringBasedDocument;

namespace
{

// Writes value under "v" with the free function, goes through the document text, and
// reads it back with the member (both must agree on the layout).
template <typename T>
T roundTrip(const T& value, QString* xml = nullptr)
{
  SettingsStringBasedDocument written;
  Storage::SerializeTo(*written.CreateNode("v"), value);
  SettingsStringBasedDocument read(written.GetContent());
  if (xml)
    *xml = read.GetNode("v")->ToString();
  T result = value == T(1) ? T(2) : T(1); // anything else, so that a read that does nothing fails
  result.DeserializeFrom(*read.GetNode("v"));
  EXPECT_FALSE(read.HasReports());
  return result;
}

struct Reading
{
  bool reported = false;
  QStringList messages;
};

// Reads node "v" of an inline "<root>" text into value, which must start away from the
// default so that a reset is visible.
template <typename T>
Reading read(const char* rootXml, T& value)
{
  LogCapture capture("Core.Serialization");
  SettingsStringBasedDocument document(QString::fromUtf8(rootXml));
  Storage::DeserializeFrom(*document.GetNode("v"), value);
  return {document.HasReports(), capture.messages()};
}

} // namespace

TEST(QuantitySettings, ExtremeValuesRoundTripThroughTheText)
{
  for (const RTE::TimeSpan span : {RTE::TimeSpan::Minimum(), RTE::TimeSpan::Maximum(), RTE::TimeSpan(-1),
                                   RTE::MicroSeconds(250), RTE::TimeSpan(INT64_MIN + 1)})
  {
    SCOPED_TRACE(span.ToPicoSeconds());
    EXPECT_EQ(roundTrip(span), span);
  }
  // The specials by period: infinite (0), highest (1), the first and the all-bits zero.
  for (const std::uint64_t period : {std::uint64_t(0), std::uint64_t(1), std::uint64_t(INT64_MAX) - 1,
                                     std::uint64_t(INT64_MAX), std::uint64_t(1) << 63, UINT64_MAX})
  {
    SCOPED_TRACE(period);
    EXPECT_EQ(roundTrip(RTE::Frequency(period)).GetPeriodPicoSeconds(), period);
  }
  EXPECT_TRUE(roundTrip(RTE::Frequency::Zero()).IsZeroFrequency());
  EXPECT_TRUE(roundTrip(RTE::Frequency(0)).isInfinite());
  for (const double percent : {0.0, 12.5, -0.001, 150.0, 1e-300, -1.7e308, 99.9999999999999})
  {
    SCOPED_TRACE(percent);
    EXPECT_EQ(roundTrip(RTE::Percentage(percent)).value(), percent);
  }
  // Double leaves keep 15 significant digits: fractions come back rounded to them.
  for (const double fraction : {1.0 / 3.0, 1.0 / 7.0, 0.1 + 0.2})
  {
    SCOPED_TRACE(fraction);
    const double back = roundTrip(RTE::Percentage::FromFraction(fraction)).ToFraction();
    EXPECT_NEAR(back, fraction, 1e-15);
  }
}

TEST(QuantitySettings, WritesAVersionedRecordWithTheRawValue)
{
  QString xml;
  roundTrip(RTE::TimeSpan::Minimum(), &xml);
  EXPECT_EQ(xml, QStringLiteral("<v class=\"TimeSpan\" version=\"1\">\n"
                                " <PicoSeconds class=\"int64\" value=\"-9223372036854775808\" />\n</v>"));
  roundTrip(RTE::Frequency::Zero(), &xml);
  EXPECT_EQ(xml, QStringLiteral("<v class=\"Frequency\" version=\"1\">\n"
                                " <PeriodPicoSeconds class=\"uint64\" value=\"18446744073709551615\" />\n</v>"));
  roundTrip(RTE::Percentage(12.5), &xml);
  EXPECT_EQ(xml, QStringLiteral("<v class=\"Percentage\" version=\"1\">\n"
                                " <Percent class=\"double\" value=\"12.5\" />\n</v>"));

  // The node given is the one written, and it is returned for chaining.
  SettingsStringBasedDocument document;
  const auto node = document.CreateNode("v");
  EXPECT_EQ(&RTE::Seconds(1).SerializeTo(*node), node.get());
  EXPECT_EQ(&Storage::SerializeTo(*node, RTE::Hertz(1)), node.get());
  EXPECT_EQ(node->GetClass(), QStringLiteral("Frequency"));
}

TEST(QuantitySettings, AnotherClassOrAMissingLeafGivesTheDefaultWithoutReport)
{
  // Classes are compared exactly: a lower-case name is another class.
  RTE::TimeSpan span = RTE::Seconds(3);
  EXPECT_FALSE(read(R"(<root><v class="timespan" version="1"><PicoSeconds class="int64" value="5"/></v></root>)", span)
                   .reported);
  EXPECT_EQ(span, RTE::TimeSpan());
  span = RTE::Seconds(3);
  EXPECT_FALSE(
      read(R"(<root><v class="TimeSpan" version="1"><Other class="int64" value="5"/></v></root>)", span).reported);
  EXPECT_EQ(span, RTE::TimeSpan());

  RTE::Frequency frequency(42);
  EXPECT_FALSE(
      read(R"(<root><v class="TimeSpan" version="1"><PicoSeconds class="int64" value="5"/></v></root>)", frequency)
          .reported);
  EXPECT_EQ(frequency, RTE::Frequency::Zero());
  // Not the period 0: a missing period must not turn into the infinite frequency.
  frequency = RTE::Frequency(42);
  EXPECT_FALSE(read(R"(<root><v class="Frequency" version="1"/></root>)", frequency).reported);
  EXPECT_TRUE(frequency.IsZeroFrequency());
  EXPECT_FALSE(frequency.isInfinite());

  RTE::Percentage percentage(7.0);
  EXPECT_FALSE(read(R"(<root><v version="1"><Percent class="double" value="5"/></v></root>)", percentage).reported);
  EXPECT_EQ(percentage, RTE::Percentage());
  percentage = RTE::Percentage(7.0);
  EXPECT_FALSE(read(R"(<root><v class="Percentage" version="1"/></root>)", percentage).reported);
  EXPECT_EQ(percentage, RTE::Percentage());
}

TEST(QuantitySettings, AnotherVersionGivesTheDefaultAndIsReported)
{
  struct Case
  {
    const char* xml;
    const char* message;
  };
  const Case cases[] = {
      {R"(<root><v class="%1" version="2"><%2 class="%3" value="5"/></v></root>)", "Not supported version (2)"},
      {R"(<root><v class="%1"><%2 class="%3" value="5"/></v></root>)", "Not supported version (0)"},
      {R"(<root><v class="%1" version="4294967295"><%2 class="%3" value="5"/></v></root>)",
       "Not supported version (4294967295)"},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.message);
    const auto xmlFor = [&](const char* cls, const char* leaf, const char* type)
    { return QString::fromUtf8(c.xml).arg(QLatin1String(cls), QLatin1String(leaf), QLatin1String(type)).toUtf8(); };
    const auto expectReport = [&](const Reading& reading)
    {
      EXPECT_TRUE(reading.reported);
      ASSERT_EQ(reading.messages.size(), 1);
      EXPECT_TRUE(reading.messages[0].endsWith(QStringLiteral(" - ") + QLatin1String(c.message)))
          << reading.messages[0].toStdString();
    };

    RTE::TimeSpan span = RTE::Seconds(3);
    expectReport(read(xmlFor("TimeSpan", "PicoSeconds", "int64").constData(), span));
    EXPECT_EQ(span, RTE::TimeSpan());

    RTE::Frequency frequency(42);
    expectReport(read(xmlFor("Frequency", "PeriodPicoSeconds", "uint64").constData(), frequency));
    EXPECT_EQ(frequency, RTE::Frequency::Zero());

    RTE::Percentage percentage(7.0);
    expectReport(read(xmlFor("Percentage", "Percent", "double").constData(), percentage));
    EXPECT_EQ(percentage, RTE::Percentage());
  }
}

TEST(QuantitySettings, PercentagesTheTypeRefusesAreReportedNeverThrown)
{
  // The leaf parser reads these, the type refuses them.
  for (const char* text : {"nan", "inf", "-inf"})
  {
    SCOPED_TRACE(text);
    RTE::Percentage percentage(7.0);
    Reading reading;
    const QByteArray xml =
        QStringLiteral(R"(<root><v class="Percentage" version="1"><Percent class="double" value="%1"/></v></root>)")
            .arg(QLatin1String(text))
            .toUtf8();
    EXPECT_NO_THROW(reading = read(xml.constData(), percentage));
    EXPECT_EQ(percentage, RTE::Percentage());
    EXPECT_TRUE(reading.reported);
    ASSERT_EQ(reading.messages.size(), 1);
    EXPECT_TRUE(reading.messages[0].contains(QStringLiteral("Invalid percentage: ")))
        << reading.messages[0].toStdString();
  }
}
