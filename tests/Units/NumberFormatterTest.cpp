#include "UnitsRegistryFixture.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Units/AutoFormatValueWithUnit.h>
#include <Core/Common/Units/FixedNumericFormat.h>
#include <Core/Common/Units/NumberFormatter.h>
#include <Core/Common/Units/ScientificFormat.h>

#include <limits>

TEST(NumberFormatter, DefaultPicksNotationByLegibility)
{
  const Common::NumberFormatter& formatter = Common::NumberFormatter::Default();
  const std::pair<double, const char*> cases[] = {
      {1234.5, "1235"},      {0.0, "0"},
      {0.001, "0.001"},      {0.00099, "9.9e-4"},
      {99999.0, "99999"},    {100000.0, "1e5"},
      {-250000.0, "-2.5e5"}, {1.5e-7, "1.5e-7"},
      {42.0, "42"},          {std::numeric_limits<double>::quiet_NaN(), "nan"},
  };
  for (const auto& [value, expected] : cases)
  {
    SCOPED_TRACE(value);
    EXPECT_EQ(formatter.ToString(value), u8(expected));
  }
  EXPECT_NE(dynamic_cast<const Common::ScientificFormat*>(&formatter.SelectFormat(1e9)), nullptr);
  EXPECT_EQ(dynamic_cast<const Common::ScientificFormat*>(&formatter.SelectFormat(1.0)), nullptr);
  EXPECT_TRUE(formatter.WillBeRounded(1234.5));
  EXPECT_TRUE(formatter.WillBeRounded(123456789.0)); // scientific keeps three digits
}

TEST(NumberFormatter, OwnSettingsAndCandidates)
{
  const Common::NumberFormatter fourDigits(4, -1, 2, true);
  EXPECT_EQ(fourDigits.ToString(3.14159), QStringLiteral("3.142"));
  EXPECT_EQ(fourDigits.ToString(2.5), QStringLiteral("2.500"));
  EXPECT_EQ(fourDigits.ToString(150.0), QStringLiteral("1.500e2"));
  EXPECT_EQ(fourDigits.ToString(0.05), QStringLiteral("5.000e-2"));

  // Ties go to the earlier candidate.
  const Common::NumberFormatter fixedFirst(
      {std::make_shared<Common::FixedNumericFormat>(2), std::make_shared<Common::NumericFormat>(3)});
  EXPECT_EQ(fixedFirst.ToString(2.5), QStringLiteral("2.50"));
  EXPECT_EQ(fixedFirst.Formats().size(), 2u);

  EXPECT_THROW(Common::NumberFormatter(std::vector<std::shared_ptr<const Common::NumericFormat>>{}),
               RTE::InvalidArgumentError);
  EXPECT_THROW(Common::NumberFormatter({std::make_shared<Common::NumericFormat>(), nullptr}),
               RTE::InvalidArgumentError);
}

using AutoFormatValueWithUnit = UnitsRegistryFixture;

TEST_F(AutoFormatValueWithUnit, PicksTheUnitWhoseNumberReadsBest)
{
  struct Case
  {
    double value;
    const char* unit;
    const char* expected;
  };
  const Case cases[] = {
      {0.0000123, "s", "12.3 µs"},
      {1500.0, "mm", "1.5 m"},
      {0.0254, "m", "2.54 cm"},
      {-0.0254, "m", "-2.54 cm"},
      {150000.0, "Pa", "1.5 bar"},
      {2.5e-9, "s", "2.5 ns"},
      {7200.0, "s", "7200 s"}, // minutes and hours are not decimal steps
      {90.0, "min", "90 min"},
      {20.0, "°C", "20 °C"}, // never to a scale with another zero point
      {3.0, "psi", "3 psi"}, // nor to another unit system
      {0.3048, "m", "30.5 cm"},
      {5e-15, "s", "0.005 ps"}, // below every unit: the closest one
      {5e9, "Pa", "5 GPa"},
      {5e14, "Pa", "5e5 GPa"},
      {0.0, "mm", "0 mm"},
      {1.0, "m/s^2", "1 m/s²"},
      {0.002, "m/s^2", "2 mm/s²"},
      {1000.0, "m", "1000 m"},         // nothing larger than a metre in the set
      {12.0, "furlong", "12 furlong"}, // unknown ids are kept as they are
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(testing::Message() << c.value << " " << c.unit);
    EXPECT_EQ(Common::AutoFormatValueWithUnit(c.value, u8(c.unit)), u8(c.expected));
  }
  EXPECT_EQ(Common::BestReadingUnitId(0.0000123, QStringLiteral("s")), u8("µs"));
  EXPECT_EQ(Common::BestReadingUnitId(std::numeric_limits<double>::infinity(), QStringLiteral("s")),
            QStringLiteral("s"));
}

TEST_F(AutoFormatValueWithUnit, OnlyUnitsThatPassTheFilterAreOffered)
{
  registry.getUnits(QStringLiteral("mm")).SetFilter({QStringLiteral("m"), QStringLiteral("mm")});
  EXPECT_EQ(Common::AutoFormatValueWithUnit(0.0254, QStringLiteral("m")), QStringLiteral("25.4 mm"));
  // The given unit stays a candidate even when filtered out.
  EXPECT_EQ(Common::AutoFormatValueWithUnit(2.54, QStringLiteral("cm")), QStringLiteral("2.54 cm"));
  EXPECT_EQ(Common::AutoFormatValueWithUnit(254.0, QStringLiteral("cm")), QStringLiteral("2.54 m"));
}

TEST_F(AutoFormatValueWithUnit, UsesTheGivenFormatter)
{
  const Common::NumberFormatter formatter(5);
  EXPECT_EQ(Common::AutoFormatValueWithUnit(0.00001234567, QStringLiteral("s"), formatter), u8("12.346 µs"));
}
