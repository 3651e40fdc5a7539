#include "UnitsTestHelpers.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Units/FloatConverter.h>
#include <Core/Common/Units/ToString.h>

#include <gtest/gtest.h>

#include <bit>
#include <clocale>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

using RTE::FloatConverter;

TEST(NumberText, IntegersAndFloatsIgnoreTheLocale)
{
  // A German C locale would make printf and strtod use a comma.
  const char* previous = std::setlocale(LC_ALL, nullptr);
  const std::string saved = previous ? previous : "C";
  std::setlocale(LC_ALL, "de_DE.UTF-8");

  EXPECT_EQ(RTE::toString(0), QStringLiteral("0"));
  EXPECT_EQ(RTE::toString(std::int8_t(-128)), QStringLiteral("-128"));
  EXPECT_EQ(RTE::toString(std::uint16_t(65535)), QStringLiteral("65535"));
  EXPECT_EQ(RTE::toString(std::numeric_limits<std::int64_t>::min()), QStringLiteral("-9223372036854775808"));
  EXPECT_EQ(RTE::toString(std::numeric_limits<std::uint64_t>::max()), QStringLiteral("18446744073709551615"));
  EXPECT_EQ(RTE::toString(1234567.0), QStringLiteral("1234567"));
  EXPECT_EQ(RTE::toString(0.1), QStringLiteral("0.1"));
  EXPECT_EQ(RTE::toString(0.1F), QStringLiteral("0.1"));
  EXPECT_EQ(RTE::toString(-2.5e-7), QStringLiteral("-2.5e-07"));
  EXPECT_EQ(RTE::toString(std::numeric_limits<double>::infinity()), QStringLiteral("inf"));
  EXPECT_EQ(RTE::toString(2.0 / 3.0, 3), QStringLiteral("0.667"));
  EXPECT_EQ(RTE::toString(1234.5, 2, RTE::FloatStyle::Fixed), QStringLiteral("1234.50"));
  EXPECT_EQ(RTE::toString(1234.5, 2, RTE::FloatStyle::Scientific), QStringLiteral("1.23e+03"));
  EXPECT_EQ(RTE::toString(1e20, 3), QStringLiteral("1e+20"));
  EXPECT_EQ(FloatConverter::toDouble(u"1234.5"), 1234.5);

  std::setlocale(LC_ALL, saved.c_str());
  EXPECT_THROW(RTE::toString(1.0, -1), RTE::InvalidArgumentError);
}

TEST(NumberText, ReadsWhatCProgramsWriteAndRejectsTheRest)
{
  EXPECT_EQ(FloatConverter::toDouble(u" 2.5e-3 "), 0.0025);
  EXPECT_EQ(FloatConverter::toDouble(u"+7"), 7.0);
  EXPECT_EQ(FloatConverter::toDouble(u"-.5"), -0.5);
  EXPECT_EQ(FloatConverter::toDouble(u"1E3"), 1000.0);
  EXPECT_TRUE(std::isnan(FloatConverter::toDouble(u"nan")));
  EXPECT_EQ(FloatConverter::toDouble(u"-Infinity"), -std::numeric_limits<double>::infinity());
  EXPECT_EQ(FloatConverter::toFloat(u"16777217"), 16777216.0F); // correctly rounded to float
  // Underflow reads as the nearest value; overflow is an error.
  EXPECT_EQ(FloatConverter::toDouble(u"1e-400"), 0.0);
  EXPECT_TRUE(std::signbit(FloatConverter::toDouble(u"-1e-99999")));
  EXPECT_EQ(FloatConverter::toDouble(u"4.9406564584124654e-324"), std::numeric_limits<double>::denorm_min());
  EXPECT_THROW(FloatConverter::toDouble(u"1e400"), RTE::OutOfRangeError);
  EXPECT_THROW(FloatConverter::toFloat(u"1e39"), RTE::OutOfRangeError);
  EXPECT_THROW(FloatConverter::toDouble(u"-1e99999"), RTE::OutOfRangeError);

  for (const char16_t* bad : {u"", u"  ", u"1,5", u"1.5.2", u"12 ms", u"+-1", u"--1", u"0x10", u"1e", u"e5", u".",
                              u"\u00BD", u"1 2", u"\u0661"})
  {
    SCOPED_TRACE(QString::fromUtf16(bad).toStdString());
    EXPECT_FALSE(FloatConverter::tryToDouble(bad).has_value());
    EXPECT_THROW(FloatConverter::toDouble(bad), RTE::InvalidArgumentError);
  }
  EXPECT_TRUE(MessageOf<RTE::InvalidArgumentError>([] { FloatConverter::toDouble(u"1,5"); })
                  .contains(QStringLiteral("'1,5' is not a number")));
  EXPECT_FALSE(FloatConverter::tryToDouble(QString(5000, QLatin1Char('1'))).has_value());
}

// Every double, whatever its bits, reads back from its text as the same double.
TEST(NumberText, AMillionRandomDoublesSurviveTextAndBack)
{
  std::mt19937_64 random(20261123);
  int nans = 0;
  for (int i = 0; i < 1000000; ++i)
  {
    const auto value = std::bit_cast<double>(random());
    const QString text = FloatConverter::toString(value);
    const double back = FloatConverter::toDouble(text);
    if (std::isnan(value))
    {
      ++nans;
      ASSERT_TRUE(std::isnan(back)) << text.toStdString();
      continue;
    }
    ASSERT_EQ(std::bit_cast<std::uint64_t>(back), std::bit_cast<std::uint64_t>(value)) << text.toStdString();
  }
  EXPECT_LT(nans, 2000); // the bit patterns really were spread over the whole range

  for (int i = 0; i < 100000; ++i)
  {
    const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    if (std::isnan(value))
      continue;
    const float back = FloatConverter::toFloat(FloatConverter::toString(value));
    ASSERT_EQ(std::bit_cast<std::uint32_t>(back), std::bit_cast<std::uint32_t>(value));
  }
}
