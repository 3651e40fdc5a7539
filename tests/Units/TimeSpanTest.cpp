#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Units/TimeSpan.h>

#include <QString>

#include <gtest/gtest.h>

using RTE::TimeSpan;

namespace
{

const QString micro = QString(QChar(0x00B5));

} // namespace

TEST(TimeSpan, UnitConversionsTruncateTowardZero)
{
  const TimeSpan t(-1999999999999);
  EXPECT_EQ(t.ToNanoSeconds(), -1999999999);
  EXPECT_EQ(t.ToMicroSeconds(), -1999999);
  EXPECT_EQ(t.ToMilliSeconds(), -1999);
  EXPECT_EQ(t.ToSeconds(), -1);
  EXPECT_DOUBLE_EQ(t.ToSecondsAsDouble(), -1.999999999999);
  EXPECT_DOUBLE_EQ(TimeSpan(1500).ToNanoSecondsAsDouble(), 1.5);

  // The 32-bit cut of ToSeconds never bites within the range of the count.
  EXPECT_EQ(TimeSpan::Maximum().ToSeconds(), 9223372);
  EXPECT_EQ(TimeSpan::Minimum().ToSeconds(), -9223372);

  TimeSpan s;
  s.SetMilliSeconds(-3);
  EXPECT_EQ(s, RTE::MicroSeconds(-3000));
  s.SetNanoSeconds(7);
  EXPECT_EQ(s.ToPicoSeconds(), 7000);
}

TEST(TimeSpan, ArithmeticAndLimits)
{
  EXPECT_EQ(RTE::MilliSeconds(25) + RTE::MicroSeconds(5) - RTE::NanoSeconds(1), TimeSpan(25004999000));
  EXPECT_EQ(RTE::Seconds(3) / 2, RTE::MilliSeconds(1500));
  EXPECT_EQ(RTE::Seconds(3) / RTE::MilliSeconds(700), 4);
  EXPECT_EQ(3 * RTE::MilliSeconds(2), RTE::MilliSeconds(6));
  EXPECT_EQ(TimeSpan(-5).Abs(), TimeSpan(5));
  EXPECT_LT(TimeSpan(-1), TimeSpan(0));
  EXPECT_EQ(TimeSpan::Maximum().ToPicoSeconds(), 9223372036854775807LL);
  EXPECT_EQ(TimeSpan::Minimum().ToPicoSeconds(), INT64_MIN);
  // Overflow wraps instead of being undefined.
  EXPECT_EQ(TimeSpan::Maximum() + TimeSpan(1), TimeSpan::Minimum());
  EXPECT_EQ(TimeSpan::Minimum().Abs(), TimeSpan::Minimum());
  TimeSpan t;
  t.SetToMinimum();
  EXPECT_EQ(t, TimeSpan::Minimum());
  t.SetToMaximum();
  EXPECT_EQ(t, TimeSpan::Maximum());
}

TEST(TimeSpan, ToStringPicksUnitAndPlural)
{
  struct Case
  {
    std::int64_t ps;
    int precision;
    QString text;
  };
  const Case cases[] = {
      {0, 3, QStringLiteral("0 s")},
      {999, 3, QStringLiteral("999 ps")},
      {-999, 3, QStringLiteral("-999 ps")},
      {1000, 3, QStringLiteral("1 ns")},
      {999999, 3, QStringLiteral("1e+03 ns")},
      {1000000, 3, QStringLiteral("1 %1s").arg(micro)},
      {250000000, 3, QStringLiteral("250 %1s").arg(micro)},
      {1000000000, 3, QStringLiteral("1 ms")},
      {1500000000000, 3, QStringLiteral("1.5 s")},
      {59000000000000, 3, QStringLiteral("59 s")},
      {60000000000000, 3, QStringLiteral("1 minute")},
      {-60000000000000, 3, QStringLiteral("-1 minute")},
      {90000000000000, 3, QStringLiteral("1.5 minutes")},
      {120000000000000, 3, QStringLiteral("2 minutes")},
      {-120000000000000, 3, QStringLiteral("-2 minutes")},
      {3600000000000000, 3, QStringLiteral("1 hour")},
      {5400000000000000, 3, QStringLiteral("1.5 hours")},
      {86400000000000000, 3, QStringLiteral("1 day")},
      {172800000000000000, 3, QStringLiteral("2 days")},
      {123456789, 2, QStringLiteral("1.2e+02 %1s").arg(micro)},
      {123456789, 6, QStringLiteral("123.457 %1s").arg(micro)},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.ps);
    EXPECT_EQ(TimeSpan(c.ps).ToString(c.precision), c.text);
  }
}

TEST(TimeSpan, FromStringConvertsAndSaturates)
{
  struct Case
  {
    QString text;
    std::int64_t ps;
  };
  const Case cases[] = {
      {QStringLiteral("1.5 hours"), 5400000000000000},
      {QStringLiteral("1 hour"), 3600000000000000},
      {QStringLiteral("90 s"), 90000000000000},
      {QStringLiteral("2 minutes"), 120000000000000},
      {QStringLiteral("1 minute"), 60000000000000},
      {QStringLiteral("1 day"), 86400000000000000},
      {QStringLiteral("-0.5 days"), -43200000000000000},
      {QStringLiteral("2.5 ms"), 2500000000},
      {QStringLiteral("250 %1s").arg(micro), 250000000},
      {QStringLiteral("-7 ns"), -7000},
      {QStringLiteral("42.9 ps"), 42},
      {QStringLiteral("-42.9 ps"), -42},
      {QStringLiteral("abc s"), 0},
      {QStringLiteral("nan s"), 0},
      {QStringLiteral("1e7 s"), INT64_MAX},
      {QStringLiteral("9223372.036854776 s"), INT64_MAX},
      {QStringLiteral("-9223372.036854776 s"), INT64_MIN},
      {QStringLiteral("9223372 s"), 9223372000000000000},
      {QStringLiteral("200 days"), INT64_MAX},
      {QStringLiteral("-200 days"), INT64_MIN},
      {QStringLiteral("9223372036.854776 ms"), INT64_MAX},
      {QStringLiteral("-1e10 ms"), INT64_MIN},
      {QStringLiteral("9223372036854.775 %1s").arg(micro), INT64_MAX},
      {QStringLiteral("9223372036854776 ns"), INT64_MAX},
      {QStringLiteral("-9223372036854776 ns"), INT64_MIN},
      {QStringLiteral("1e30 ps"), INT64_MAX},
      {QStringLiteral("-inf ps"), INT64_MIN},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.text.toStdString());
    EXPECT_EQ(TimeSpan::FromString(c.text).ToPicoSeconds(), c.ps);
  }
}

TEST(TimeSpan, FromStringRejectsMalformedText)
{
  for (const QString& text :
       {QStringLiteral("5"), QStringLiteral("5  s"), QStringLiteral("5 s "), QStringLiteral("1 2 s"), QString()})
  {
    SCOPED_TRACE(text.toStdString());
    try
    {
      TimeSpan::FromString(text);
      ADD_FAILURE() << "accepted";
    }
    catch (const RTE::PostconditionFailed& e)
    {
      EXPECT_EQ(e.message(), QStringLiteral("Postcondition failed: parts.size() == 2"));
    }
  }
  for (const QString& text : {QStringLiteral("2 min"), QStringLiteral("2 S"), QStringLiteral("2 Minutes"),
                              QStringLiteral("2 us"), QStringLiteral("2 ")})
  {
    SCOPED_TRACE(text.toStdString());
    try
    {
      TimeSpan::FromString(text);
      ADD_FAILURE() << "accepted";
    }
    catch (const RTE::PostconditionFailed&)
    {
      ADD_FAILURE() << "wrong exception";
    }
    catch (const RTE::Exception& e)
    {
      EXPECT_EQ(
          e.message(),
          QStringLiteral("Unknown unit - Don't know how to convert the given string '%1' into a TimeSpan.").arg(text));
    }
  }
}

TEST(TimeSpan, ToStringReadsBack)
{
  for (std::int64_t ps : {std::int64_t(0), std::int64_t(999), std::int64_t(250000000), std::int64_t(-7000000000000),
                          std::int64_t(5400000000000000)})
  {
    SCOPED_TRACE(ps);
    EXPECT_EQ(TimeSpan::FromString(TimeSpan(ps).ToString(17)).ToPicoSeconds(), ps);
  }
}
