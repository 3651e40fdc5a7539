#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Units/TimeStamp.h>

#include <QRegularExpression>

#include <gtest/gtest.h>

#include <cstdlib>

using RTE::TimeStamp;

// Readable texts in assertion messages (found by argument-dependent lookup).
static void PrintTo(const QString& text, std::ostream* os)
{
  *os << '"' << text.toStdString() << '"';
}

namespace
{

// 2024-03-01T12:00:00Z
constexpr long long noonSeconds = 1709294400;

} // namespace

TEST(TimeStamp, ConstructionSplitsMilliseconds)
{
  EXPECT_EQ(TimeStamp().GetSecondsSinceEpoch(), 0);
  EXPECT_EQ(TimeStamp().GetFractionPicoSeconds(), 0);

  const QDateTime withMs = QDateTime::fromMSecsSinceEpoch(noonSeconds * 1000 + 789, Qt::UTC);
  const TimeStamp t(withMs);
  EXPECT_EQ(t.GetSecondsSinceEpoch(), noonSeconds);
  EXPECT_EQ(t.GetFractionPicoSeconds(), 789000000000);
  EXPECT_EQ(t.GetDateTime().time().msec(), 0);
  EXPECT_EQ(t.GetAsQDateTimeWithMsPrecision(), withMs);

  const TimeStamp exact(noonSeconds, 999999999999ULL);
  EXPECT_EQ(exact.GetAsQDateTimeWithMsPrecision().toMSecsSinceEpoch(), noonSeconds * 1000 + 999);
  try
  {
    TimeStamp bad(noonSeconds, 1000000000000ULL);
    ADD_FAILURE() << "accepted";
  }
  catch (const RTE::VerificationFailed& e)
  {
    EXPECT_EQ(e.message(), QStringLiteral("fraction value invalid: 1000000000000"));
  }
  const TimeStamp now = TimeStamp::Now();
  EXPECT_GE(now.GetFractionPicoSeconds(), 0);
  EXPECT_LT(now.GetFractionPicoSeconds(), 1000000000000);
}

TEST(TimeStamp, ArithmeticCarriesIntoSeconds)
{
  const TimeStamp base(noonSeconds, 900000000000ULL);
  struct Case
  {
    std::int64_t addPs;
    long long seconds;
    std::int64_t fraction;
  };
  const Case cases[] = {
      {200000000000, noonSeconds + 1, 100000000000},   {-900000000001, noonSeconds - 1, 999999999999},
      {-2500000000000, noonSeconds - 2, 400000000000}, {3000000000000, noonSeconds + 3, 900000000000},
      {99999999999, noonSeconds, 999999999999},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.addPs);
    const TimeStamp moved = base + RTE::TimeSpan(c.addPs);
    EXPECT_EQ(moved.GetSecondsSinceEpoch(), c.seconds);
    EXPECT_EQ(moved.GetFractionPicoSeconds(), c.fraction);
    EXPECT_EQ(moved - base, RTE::TimeSpan(c.addPs));
    EXPECT_EQ(moved.GetTimeSpanTo(base), RTE::TimeSpan(-c.addPs));
    EXPECT_EQ(c.addPs > 0, moved > base);
    EXPECT_EQ(c.addPs > 0, base < moved);
  }
  TimeStamp t = base;
  t += RTE::Seconds(1);
  t.AddTimeSpan(RTE::Seconds(1));
  EXPECT_EQ(t - base, RTE::Seconds(2));
  EXPECT_NE(t, base);
  EXPECT_EQ(base, TimeStamp(noonSeconds, 900000000000ULL));
  EXPECT_LE(base, base);
  EXPECT_GE(base, base);

  // Points further apart than a span holds saturate.
  const TimeStamp far(noonSeconds + 200LL * 86400, 0);
  EXPECT_EQ(far - base, RTE::TimeSpan::Maximum());
  EXPECT_EQ(base - far, RTE::TimeSpan::Minimum());
  // Just inside the limit: 9223372 s and a fraction that does not tip it over.
  const TimeStamp edge(noonSeconds + 9223372, 136854775806ULL);
  EXPECT_EQ(edge - TimeStamp(noonSeconds, 100000000000ULL), RTE::TimeSpan(9223372036854775806LL));
  EXPECT_EQ(TimeStamp(noonSeconds + 9223372, 0) - TimeStamp(noonSeconds, 999999999999ULL),
            RTE::TimeSpan(9223371000000000001LL));
  EXPECT_EQ(TimeStamp(noonSeconds + 9223372, 999999999999ULL) - TimeStamp(noonSeconds, 0), RTE::TimeSpan::Maximum());
}

TEST(TimeStamp, Iso8601RoundTripAndZones)
{
  const TimeStamp t(noonSeconds, 250000ULL);
  EXPECT_EQ(t.ToISO8601String(TimeStamp::E_Timezone::UTC), QStringLiteral("2024-03-01T12:00:00.000000250000Z"));
  EXPECT_EQ(TimeStamp::FromISO8601String(t.ToISO8601String(TimeStamp::E_Timezone::UTC)), t);
  const TimeStamp fromLocal = TimeStamp::FromISO8601String(t.ToISO8601String(TimeStamp::E_Timezone::Local));
  EXPECT_EQ(fromLocal - t, RTE::TimeSpan());
  EXPECT_TRUE(t.ToISO8601String(TimeStamp::E_Timezone::Local).contains(QRegularExpression("[+-]\\d\\d:\\d\\d$")));

  struct Case
  {
    QString text;
    long long seconds;
    std::int64_t fraction;
  };
  const Case cases[] = {
      {QStringLiteral("2024-03-01T12:00:00Z"), noonSeconds, 0},
      {QStringLiteral("2024-03-01T12:00:00.5Z"), noonSeconds, 500000000000},
      {QStringLiteral("2024-03-01T12:00:00.000000000001Z"), noonSeconds, 1},
      {QStringLiteral("2024-03-01T13:30:00.25+01:30"), noonSeconds, 250000000000},
      {QStringLiteral("2024-03-01T10:00:00-02:00"), noonSeconds, 0},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.text.toStdString());
    const TimeStamp parsed = TimeStamp::FromISO8601String(c.text);
    EXPECT_EQ(parsed.GetSecondsSinceEpoch(), c.seconds);
    EXPECT_EQ(parsed.GetFractionPicoSeconds(), c.fraction);
  }
  // Without a zone the text is local time.
  const TimeStamp local = TimeStamp::FromISO8601String(QStringLiteral("2024-03-01T12:00:00"));
  EXPECT_EQ(local.GetDateTime(), QDateTime(QDate(2024, 3, 1), QTime(12, 0), Qt::LocalTime));

  for (const QString& bad :
       {QStringLiteral("2024-03-01T12:00:00.0000000000001Z"), QStringLiteral("2024-02-30T12:00:00Z"),
        QStringLiteral("2024-03-01 12:00:00Z"), QStringLiteral("2024-03-01T24:00:00Z"),
        QStringLiteral("2024-03-01T12:00:00+1:00"), QStringLiteral("2024-03-01T12:00:00+01:99"), QString()})
  {
    SCOPED_TRACE(bad.toStdString());
    try
    {
      TimeStamp::FromISO8601String(bad);
      ADD_FAILURE() << "accepted";
    }
    catch (const RTE::InvalidArgumentError& e)
    {
      EXPECT_EQ(e.message(), QStringLiteral("Invalid ISO 8601 time stamp: '%1'").arg(bad));
    }
  }
  EXPECT_EQ(TimeStamp(noonSeconds, 7ULL).toString(QStringLiteral("yyyy")).right(13), QStringLiteral(".000000000007"));
}
