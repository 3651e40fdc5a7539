#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Units/Frequency.h>

#include <gtest/gtest.h>

using RTE::Frequency;

TEST(Frequency, SpecialPeriods)
{
  EXPECT_EQ(Frequency().GetPeriodPicoSeconds(), UINT64_MAX);
  EXPECT_TRUE(Frequency::Zero().IsZeroFrequency());
  EXPECT_TRUE(Frequency(9223372036854775807ULL).IsZeroFrequency());
  EXPECT_FALSE(Frequency(9223372036854775806ULL).IsZeroFrequency());
  EXPECT_TRUE(Frequency(0).isInfinite());
  EXPECT_EQ(Frequency::Maximum().GetPeriodPicoSeconds(), 1U);

  struct Case
  {
    std::uint64_t period;
    bool valid;
  };
  for (const Case& c : {Case{0, false}, Case{1, true}, Case{9223372036854775806ULL, true},
                        Case{9223372036854775807ULL, false}, Case{UINT64_MAX, false}})
  {
    SCOPED_TRACE(c.period);
    EXPECT_EQ(Frequency(c.period).isValid(), c.valid);
  }
  Frequency f(5);
  f.SetZeroFrequency();
  EXPECT_EQ(f, Frequency::Zero());
}

TEST(Frequency, ConversionsFromAndToPeriod)
{
  EXPECT_EQ(Frequency::FromRPM(1200.0, 720).GetPeriodPicoSeconds(), 100000000000ULL);
  EXPECT_EQ(Frequency::FromRPM(1200.0, 360).GetPeriodPicoSeconds(), 50000000000ULL);
  EXPECT_TRUE(Frequency::FromRPM(0.0, 720).IsZeroFrequency());
  EXPECT_EQ(Frequency::FromRPM(0.0, 720).ToHertz(), 0.0);
  EXPECT_EQ(Frequency::FromMilliHertz(0.0), Frequency::Zero());
  EXPECT_EQ(Frequency::FromMilliHertz(1000.0).GetPeriodPicoSeconds(), 1000000000000ULL);
  EXPECT_EQ(Frequency::FromMilliHertz(3.0).GetPeriodPicoSeconds(), 333333333333333ULL);
  EXPECT_EQ(Frequency::FromMilliHertz(1e-10), Frequency::Zero());
  EXPECT_TRUE(Frequency::FromMilliHertz(1e16).isInfinite());
  EXPECT_EQ(RTE::Hertz(50.0).GetPeriodPicoSeconds(), 20000000000ULL);
  EXPECT_EQ(RTE::KiloHertz(2.0).GetPeriodPicoSeconds(), 500000000ULL);

  const Frequency tenHertz(100000000000ULL);
  EXPECT_DOUBLE_EQ(tenHertz.ToHertz(), 10.0);
  EXPECT_DOUBLE_EQ(tenHertz.ToKiloHertz(), 0.01);
  EXPECT_EQ(tenHertz.ToMilliHertz(), 10000U);
  EXPECT_DOUBLE_EQ(tenHertz.ToRPM(720), 1200.0);
  EXPECT_DOUBLE_EQ(tenHertz.ToRPM(360), 600.0);
  EXPECT_EQ(tenHertz.ToPeriod(), RTE::MilliSeconds(100));
  EXPECT_EQ(Frequency::Zero().ToPeriod(), RTE::TimeSpan::Maximum());
  EXPECT_EQ(Frequency(9223372036854775806ULL).ToMilliHertz(), 0U);
  EXPECT_EQ(Frequency(9223372036854775807ULL).ToMilliHertz(), 0U);
  EXPECT_EQ(Frequency(9223372036854775807ULL).ToHertz(), 0.0);

  EXPECT_TRUE(Frequency(1000).IsCloseTo(Frequency(1010), 10));
  EXPECT_TRUE(Frequency(1010).IsCloseTo(Frequency(1000), 10));
  EXPECT_FALSE(Frequency(1000).IsCloseTo(Frequency(1011), 10));
  EXPECT_TRUE(Frequency(0).IsCloseTo(Frequency::Zero(), UINT64_MAX));
}

TEST(Frequency, InfiniteFrequencyThrows)
{
  const QString message = QStringLiteral("Division by zero when trying to calculate a frequency from a zero period.");
  for (int which = 0; which < 3; ++which)
  {
    SCOPED_TRACE(which);
    try
    {
      if (which == 0)
        (void)Frequency(0).ToHertz();
      else if (which == 1)
        (void)Frequency(0).ToMilliHertz();
      else
        (void)Frequency(0).ToRPM(720);
      ADD_FAILURE() << "no exception";
    }
    catch (const RTE::Exception& e)
    {
      EXPECT_EQ(e.message(), message);
    }
  }
  EXPECT_THROW(Frequency::FromMilliHertz(-1.0), RTE::InvalidArgumentError);
  EXPECT_THROW(Frequency::FromRPM(-1.0, 720), RTE::InvalidArgumentError);
  EXPECT_THROW(Frequency::FromRPM(100.0, 180), RTE::InvalidArgumentError);
}

TEST(Frequency, TextForms)
{
  struct Case
  {
    std::uint64_t period;
    QString text;
  };
  const Case cases[] = {
      {20000000000ULL, QStringLiteral("50 Hz")},
      {1000000000ULL, QStringLiteral("1 kHz")},
      {1000000001ULL, QStringLiteral("1e+03 Hz")},
      {400000ULL, QStringLiteral("2.5 MHz")},
      {1000000ULL, QStringLiteral("1 MHz")},
      {UINT64_MAX, QStringLiteral("0 Hz")},
      {0, QStringLiteral("inf Hz")},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.text.toStdString());
    EXPECT_EQ(Frequency(c.period).ToString(3), c.text);
  }

  EXPECT_EQ(Frequency::FromString(QStringLiteral("50 Hz")), RTE::Hertz(50.0));
  EXPECT_EQ(Frequency::FromString(QStringLiteral("50 HERTZ")), RTE::Hertz(50.0));
  EXPECT_EQ(Frequency::FromString(QStringLiteral("2.5 kHz")), RTE::Hertz(2500.0));
  EXPECT_EQ(Frequency::FromString(QStringLiteral("2.5 kilohertz")), RTE::Hertz(2500.0));
  EXPECT_EQ(Frequency::FromString(QStringLiteral("2.5 MHz")), RTE::Hertz(2.5e6));
  EXPECT_EQ(Frequency::FromString(QStringLiteral("2.5 mhz")), RTE::Hertz(2.5e6));
  EXPECT_EQ(Frequency::FromString(QStringLiteral("0 Hz")), Frequency::Zero());
  EXPECT_EQ(Frequency::FromString(Frequency(400000ULL).ToString(6)).GetPeriodPicoSeconds(), 400000ULL);

  EXPECT_THROW(Frequency::FromString(QStringLiteral("50Hz")), RTE::PostconditionFailed);
  EXPECT_THROW(Frequency::FromString(QStringLiteral("-5 Hz")), RTE::InvalidArgumentError);
  try
  {
    Frequency::FromString(QStringLiteral("50 rpm"));
    ADD_FAILURE() << "accepted";
  }
  catch (const RTE::Exception& e)
  {
    EXPECT_EQ(e.message(),
              QStringLiteral("Unknown unit - Don't know how to convert the given string '50 rpm' into a frequency."));
  }
}
