#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Units/Frequency.h>

#include "UnitsTestHelpers.h"

#include <gtest/gtest.h>

using RTE::Frequency;

TEST(Frequency, SpecialPeriods)
{
  EXPECT_TRUE(Frequency::Zero().IsZeroFrequency());
  EXPECT_TRUE(Frequency(9223372036854775807ULL).IsZeroFrequency());
  EXPECT_FALSE(Frequency(9223372036854775806ULL).IsZeroFrequency());
  EXPECT_TRUE(Frequency(0).isInfinite());
  for (const auto& [period, valid] :
       {std::pair{0ULL, false}, std::pair{1ULL, true}, std::pair{9223372036854775806ULL, true},
        std::pair{9223372036854775807ULL, false}})
  {
    SCOPED_TRACE(period);
    EXPECT_EQ(Frequency(period).isValid(), valid);
  }
}

TEST(Frequency, ConversionsFromAndToPeriod)
{
  EXPECT_EQ(Frequency::FromRPM(1200.0, 720).GetPeriodPicoSeconds(), 100000000000ULL);
  EXPECT_EQ(Frequency::FromRPM(1200.0, 360).GetPeriodPicoSeconds(), 50000000000ULL);
  EXPECT_EQ(Frequency::FromRPM(0.0, 720), Frequency::Zero());
  EXPECT_EQ(Frequency::FromRPM(0.0, 720).ToHertz(), 0.0);
  EXPECT_EQ(Frequency::FromMilliHertz(3.0).GetPeriodPicoSeconds(), 333333333333333ULL); // truncated
  EXPECT_EQ(Frequency::FromMilliHertz(1e-10), Frequency::Zero());
  EXPECT_TRUE(Frequency::FromMilliHertz(1e16).isInfinite());

  const Frequency tenHertz(100000000000ULL);
  EXPECT_DOUBLE_EQ(tenHertz.ToKiloHertz(), 0.01);
  EXPECT_EQ(tenHertz.ToMilliHertz(), 10000U);
  EXPECT_DOUBLE_EQ(tenHertz.ToRPM(720), 1200.0);
  EXPECT_DOUBLE_EQ(tenHertz.ToRPM(360), 600.0);
  EXPECT_EQ(tenHertz.ToPeriod(), RTE::MilliSeconds(100));
  EXPECT_EQ(Frequency::Zero().ToPeriod(), RTE::TimeSpan::Maximum());
  EXPECT_EQ(Frequency(9223372036854775807ULL).ToMilliHertz(), 0U);
  EXPECT_TRUE(Frequency(1010).IsCloseTo(Frequency(1000), 10));
  EXPECT_FALSE(Frequency(1000).IsCloseTo(Frequency(1011), 10));

  EXPECT_EQ(MessageOf<RTE::Exception>([] { (void)Frequency(0).ToHertz(); }),
            "Division by zero when trying to calculate a frequency from a zero period.");
  EXPECT_THROW((void)Frequency(0).ToMilliHertz(), RTE::Exception);
  EXPECT_THROW(Frequency::FromMilliHertz(-1.0), RTE::InvalidArgumentError);
  EXPECT_THROW(Frequency::FromRPM(100.0, 180), RTE::InvalidArgumentError);
}

TEST(Frequency, TextForms)
{
  const std::pair<std::uint64_t, QString> cases[] = {
      {20000000000ULL, QStringLiteral("50 Hz")}, {1000000001ULL, QStringLiteral("1e+03 Hz")},
      {1000000000ULL, QStringLiteral("1 kHz")},  {400000ULL, QStringLiteral("2.5 MHz")},
      {UINT64_MAX, QStringLiteral("0 Hz")},      {0, QStringLiteral("inf Hz")},
  };
  for (const auto& [period, text] : cases)
  {
    SCOPED_TRACE(text.toStdString());
    EXPECT_EQ(Frequency(period).ToString(3), text);
  }
  EXPECT_EQ(Frequency::FromString(QStringLiteral("50 HERTZ")), RTE::Hertz(50.0));
  EXPECT_EQ(Frequency::FromString(QStringLiteral("2.5 kHz")), RTE::Hertz(2500.0));
  EXPECT_EQ(Frequency::FromString(QStringLiteral("2.5 mhz")), RTE::Hertz(2.5e6));
  EXPECT_THROW(Frequency::FromString(QStringLiteral("50Hz")), RTE::PostconditionFailed);
  EXPECT_EQ(MessageOf<RTE::Exception>([] { Frequency::FromString(QStringLiteral("50 rpm")); }),
            "Unknown unit - Don't know how to convert the given string '50 rpm' into a frequency.");
}
