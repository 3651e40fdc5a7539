#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Units/TimeSpan.h>

#include "UnitsTestHelpers.h"

#include <gtest/gtest.h>

using RTE::TimeSpan;

namespace
{

const QString micro = QString(QChar(0x00B5));

} // namespace

TEST(TimeSpan, ConversionsAndArithmetic)
{
  const TimeSpan t(-1999999999999);
  EXPECT_EQ(t.ToNanoSeconds(), -1999999999); // truncated toward zero
  EXPECT_EQ(t.ToMilliSeconds(), -1999);
  EXPECT_EQ(t.ToSeconds(), -1);
  EXPECT_DOUBLE_EQ(TimeSpan(1500).ToNanoSecondsAsDouble(), 1.5);
  EXPECT_EQ(TimeSpan::Maximum().ToSeconds(), 9223372);
  TimeSpan s;
  s.SetMilliSeconds(-3);
  EXPECT_EQ(s, RTE::MicroSeconds(-3000));
  EXPECT_EQ(RTE::MilliSeconds(25) + RTE::MicroSeconds(5) - RTE::NanoSeconds(1), TimeSpan(25004999000));
  EXPECT_EQ(RTE::Seconds(3) / 2, RTE::MilliSeconds(1500));
  EXPECT_EQ(RTE::Seconds(3) / RTE::MilliSeconds(700), 4);
  EXPECT_EQ(TimeSpan(-5).Abs(), TimeSpan(5));
  EXPECT_EQ(TimeSpan::Maximum() + TimeSpan(1), TimeSpan::Minimum()); // wraps, not undefined
  s.SetToMinimum();
  EXPECT_EQ(s.ToPicoSeconds(), INT64_MIN);
}

TEST(TimeSpan, ToStringPicksUnitAndPlural)
{
  const std::pair<std::int64_t, QString> cases[] = {
      {0, QStringLiteral("0 s")},
      {999, QStringLiteral("999 ps")},
      {-999, QStringLiteral("-999 ps")},
      {1000, QStringLiteral("1 ns")},
      {999999, QStringLiteral("1e+03 ns")},
      {1000000, QStringLiteral("1 %1s").arg(micro)},
      {999999999999, QStringLiteral("1e+03 ms")},
      {1500000000000, QStringLiteral("1.5 s")},
      {60000000000000, QStringLiteral("1 minute")},
      {-60000000000000, QStringLiteral("-1 minute")},
      {90000000000000, QStringLiteral("1.5 minutes")},
      {-120000000000000, QStringLiteral("-2 minutes")},
      {3600000000000000, QStringLiteral("1 hour")},
      {5400000000000000, QStringLiteral("1.5 hours")},
      {172800000000000000, QStringLiteral("2 days")},
  };
  for (const auto& [ps, text] : cases)
  {
    SCOPED_TRACE(ps);
    EXPECT_EQ(TimeSpan(ps).ToString(3), text);
  }
  EXPECT_EQ(TimeSpan(123456789).ToString(6), QStringLiteral("123.457 %1s").arg(micro));
}

TEST(TimeSpan, FromStringConvertsAndSaturates)
{
  const std::pair<QString, std::int64_t> cases[] = {
      {QStringLiteral("1.5 hours"), 5400000000000000},
      {QStringLiteral("90 s"), 90000000000000},
      {QStringLiteral("1 minute"), 60000000000000},
      {QStringLiteral("-0.5 days"), -43200000000000000},
      {QStringLiteral("2.5 ms"), 2500000000},
      {QStringLiteral("250 %1s").arg(micro), 250000000},
      {QStringLiteral("-7 ns"), -7000},
      {QStringLiteral("-42.9 ps"), -42},
      {QStringLiteral("abc s"), 0},
      {QStringLiteral("nan s"), 0},
      {QStringLiteral("1e7 s"), INT64_MAX},
      {QStringLiteral("9223372.036854776 s"), INT64_MAX},
      {QStringLiteral("-9223372.036854776 s"), INT64_MIN},
      {QStringLiteral("9223372 s"), 9223372000000000000},
      {QStringLiteral("-1e10 ms"), INT64_MIN},
      {QStringLiteral("9223372036854.775 %1s").arg(micro), INT64_MAX},
      {QStringLiteral("9223372036854776 ns"), INT64_MAX},
      {QStringLiteral("1e30 ps"), INT64_MAX},
  };
  for (const auto& [text, ps] : cases)
  {
    SCOPED_TRACE(text.toStdString());
    EXPECT_EQ(TimeSpan::FromString(text).ToPicoSeconds(), ps);
  }
}

TEST(TimeSpan, FromStringRejectsMalformedText)
{
  for (const QString& text : {QStringLiteral("5"), QStringLiteral("5  s"), QStringLiteral("5 s "), QString()})
  {
    SCOPED_TRACE(text.toStdString());
    EXPECT_EQ(MessageOf<RTE::PostconditionFailed>([&] { TimeSpan::FromString(text); }),
              QStringLiteral("Postcondition failed: parts.size() == 2"));
  }
  for (const QString& text : {QStringLiteral("2 min"), QStringLiteral("2 S"), QStringLiteral("2 us")})
  {
    SCOPED_TRACE(text.toStdString());
    EXPECT_EQ(
        MessageOf<RTE::Exception>([&] { TimeSpan::FromString(text); }),
        QStringLiteral("Unknown unit - Don't know how to convert the given string '%1' into a TimeSpan.").arg(text));
  }
}
