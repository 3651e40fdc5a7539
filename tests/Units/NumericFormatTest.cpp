#include <Core/Common/Units/FixedNumericFormat.h>
#include <Core/Common/Units/NumericFormat.h>
#include <Core/Common/Units/ScientificFormat.h>

#include "QStringPrinter.h"

#include <gtest/gtest.h>

#include <limits>

namespace
{

struct TextCase
{
  double value;
  quint32 digits;
  bool extend;
  std::string expected;
};

} // namespace

TEST(NumericFormat, PlainNotation)
{
  const TextCase cases[] = {
      {1234.5, 3, false, "1235"},
      {0.012345, 3, false, "0.0123"},
      {2.5, 3, false, "2.5"},
      {2.5, 3, true, "2.50"},
      // Multiples of ten keep one digit fewer: 20 has no decimals, 25 has one.
      {25.0, 3, true, "25.0"},
      {20.0, 3, true, "20"},
      {100.0, 3, true, "100"},
      {1000.0, 3, true, "1000"},
      {100.0, 3, false, "100"},
      {1000.0, 3, false, "1000"},
      {-20.0, 3, true, "-20"},
      {-25.0, 3, true, "-25.0"},
      {0.0, 3, true, "0"},
      {-0.0, 3, false, "0"},
      {-1234.5, 3, false, "-1235"},
      {-0.012345, 3, false, "-0.0123"},
      {0.125, 2, false, "0.13"}, // half away from zero, not to even
      {-0.125, 2, false, "-0.13"},
      {99.96, 3, false, "100"},
      {3.14159, 5, false, "3.1416"},
      {1.0, 3, true, "1.000"},
      {0.1, 3, false, "0.1"},
      {123456789.0, 3, false, "123456789"},
      {1e-300, 2, false, "0." + std::string(299, '0') + "1"},
      {std::numeric_limits<double>::quiet_NaN(), 3, false, "nan"},
      {std::numeric_limits<double>::infinity(), 3, false, "inf"},
      {-std::numeric_limits<double>::infinity(), 3, false, "-inf"},
  };
  for (const TextCase& c : cases)
  {
    SCOPED_TRACE(testing::Message() << c.value << " with " << c.digits << (c.extend ? " extended" : ""));
    EXPECT_EQ(Common::NumericFormat(c.digits, -3, 5, c.extend).NumberToString(c.value),
              QString::fromStdString(c.expected));
  }
  // The smallest double still prints without overflowing the rounding.
  EXPECT_TRUE(Common::NumericFormat(3).NumberToString(std::numeric_limits<double>::denorm_min()).startsWith("0.000"));
}

TEST(NumericFormat, FixedNotationKeepsEveryDecimal)
{
  const TextCase cases[] = {
      {3.14159, 2, false, "3.14"},     {2.0, 2, false, "2.00"},    {0.0, 3, false, "0.000"},
      {-0.0, 1, false, "0.0"},         {-0.004, 2, false, "0.00"}, {-1.5, 0, false, "-2"},
      {1234.5678, 1, false, "1234.6"}, {1e-9, 3, false, "0.000"},  {20.0, 2, false, "20.00"},
  };
  for (const TextCase& c : cases)
  {
    SCOPED_TRACE(testing::Message() << c.value << " with " << c.digits);
    EXPECT_EQ(Common::FixedNumericFormat(c.digits).NumberToString(c.value), QString::fromStdString(c.expected));
  }
  EXPECT_TRUE(Common::FixedNumericFormat(2).WillBeRounded(0.125));
  EXPECT_FALSE(Common::FixedNumericFormat(3).WillBeRounded(0.125));
  EXPECT_TRUE(Common::FixedNumericFormat(2).WillBeRounded(1e-9));
}

TEST(NumericFormat, ScientificNotation)
{
  const TextCase cases[] = {
      {12345.0, 3, false, "1.23e4"},
      {0.5, 3, false, "5e-1"},
      {0.5, 3, true, "5.00e-1"},
      {100.0, 3, false, "1e2"},
      {1.0, 3, false, "1e0"},
      {-12345.0, 3, false, "-1.23e4"},
      {-0.00123, 2, false, "-1.2e-3"},
      {0.0, 3, false, "0"},
      {6.02214076e23, 4, false, "6.022e23"},
      {1.25, 2, false, "1.3e0"},
      {9.996, 3, false, "1e1"},
      {9.996, 3, true, "1.00e1"},
      {1e-310, 3, false, "1e-310"},
      {1.7976931348623157e308, 3, false, "1.8e308"},
      {std::numeric_limits<double>::denorm_min(), 2, false, "4.9e-324"},
  };
  for (const TextCase& c : cases)
  {
    SCOPED_TRACE(testing::Message() << c.value << " with " << c.digits << (c.extend ? " extended" : ""));
    EXPECT_EQ(Common::ScientificFormat(c.digits, -3, 5, c.extend).NumberToString(c.value),
              QString::fromStdString(c.expected));
  }
}

TEST(NumericFormat, PlusSignAndZeroThreshold)
{
  const Common::NumericFormat plain(3, -3, 5, false, true, 1e-12);
  EXPECT_EQ(plain.NumberToString(2.5), QStringLiteral("+2.5"));
  EXPECT_EQ(plain.NumberToString(-2.5), QStringLiteral("-2.5"));
  EXPECT_EQ(plain.NumberToString(3e-17), QStringLiteral("0"));
  EXPECT_EQ(plain.NumberToString(-3e-17), QStringLiteral("0"));
  EXPECT_EQ(plain.NumberToString(2e-12), QStringLiteral("+0.000000000002"));
  EXPECT_TRUE(plain.ShowPlusSign());
  EXPECT_EQ(plain.ZeroThreshold(), 1e-12);

  const Common::ScientificFormat scientific(3, -3, 5, false, true, 1e-12);
  EXPECT_EQ(scientific.NumberToString(12345.0), QStringLiteral("+1.23e4"));
  EXPECT_EQ(scientific.NumberToString(1e-13), QStringLiteral("0"));
  EXPECT_EQ(Common::FixedNumericFormat(2, -3, 5, true, true).NumberToString(1.0), QStringLiteral("+1.00"));
}

TEST(NumericFormat, LegibilityScores)
{
  const Common::NumericFormat plain(3, -2, 3); // legible from 0.01 to below 1000
  const Common::ScientificFormat scientific(3, -2, 3);
  struct Case
  {
    double value;
    double plainScore;
    double scientificScore;
  };
  const Case cases[] = {
      {0.0, 1.0, 0.5},     {0.01, 1.0, 0.5},   {-0.01, 1.0, 0.5},     {999.0, 1.0, 0.5},   {1000.0, 0.0, 1.0},
      {-1000.0, 0.0, 1.0}, {0.005, -0.5, 1.0}, {-0.0025, -0.75, 1.0}, {2000.0, -1.0, 1.0}, {5000.0, -4.0, 1.0},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.value);
    EXPECT_DOUBLE_EQ(plain.LegibilityScore(c.value), c.plainScore);
    EXPECT_DOUBLE_EQ(scientific.LegibilityScore(c.value), c.scientificScore);
  }
  EXPECT_LT(plain.LegibilityScore(std::numeric_limits<double>::infinity()), -1e300);
}

TEST(NumericFormat, RoundingCheck)
{
  struct Case
  {
    double value;
    quint32 digits;
    bool plain;
    bool scientific;
  };
  const Case cases[] = {
      {0.125, 2, true, true},
      {0.125, 3, false, false},
      {0.0, 1, false, false},
      {1234.5, 3, true, true},
      {1234.5, 5, false, false},
      {100.0, 1, false, false},
      {0.1, 1, false, false},
      {1.0 / 3.0, 14, true, true},
      {1.0 / 3.0, 15, false, false},
      {-0.125, 2, true, true},
      {20.0, 3, false, false},
      {25.5, 2, true, true},
      // Plain keeps every integer digit; the mantissa keeps only the significant ones.
      {123456.0, 3, false, true},
      // 0.1 + 0.2 is 0.30000000000000004: far inside ten epsilons of 0.3.
      {0.1 + 0.2, 1, false, false},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(testing::Message() << c.value << " with " << c.digits);
    EXPECT_EQ(Common::NumericFormat(c.digits).WillBeRounded(c.value), c.plain);
    EXPECT_EQ(Common::ScientificFormat(c.digits).WillBeRounded(c.value), c.scientific);
  }
  EXPECT_FALSE(Common::NumericFormat(3).WillBeRounded(std::numeric_limits<double>::quiet_NaN()));
}
