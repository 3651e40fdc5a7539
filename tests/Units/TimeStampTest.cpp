#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Units/TimeStamp.h>

#include "UnitsTestHelpers.h"

#include <gtest/gtest.h>

using RTE::TimeStamp;

namespace
{

constexpr long long noon = 1709294400; // 2024-03-01T12:00:00Z

} // namespace

TEST(TimeStamp, ConstructionSplitsMilliseconds)
{
  const QDateTime withMs = QDateTime::fromMSecsSinceEpoch(noon * 1000 + 789, Qt::UTC);
  const TimeStamp t(withMs);
  EXPECT_EQ(t.GetSecondsSinceEpoch(), noon);
  EXPECT_EQ(t.GetFractionPicoSeconds(), 789000000000);
  EXPECT_EQ(t.GetAsQDateTimeWithMsPrecision(), withMs);
  EXPECT_EQ(TimeStamp().GetSecondsSinceEpoch(), 0);
  EXPECT_EQ(MessageOf<RTE::VerificationFailed>([] { TimeStamp(noon, 1000000000000ULL); }),
            "fraction value invalid: 1000000000000");
}

TEST(TimeStamp, ArithmeticCarriesIntoSeconds)
{
  const TimeStamp base(noon, 900000000000ULL);
  struct Case
  {
    std::int64_t addPs;
    long long seconds;
    std::int64_t fraction;
  };
  for (const Case& c : {Case{200000000000, noon + 1, 100000000000}, Case{-900000000001, noon - 1, 999999999999},
                        Case{-2500000000000, noon - 2, 400000000000}, Case{99999999999, noon, 999999999999}})
  {
    SCOPED_TRACE(c.addPs);
    const TimeStamp moved = base + RTE::TimeSpan(c.addPs);
    EXPECT_EQ(moved.GetSecondsSinceEpoch(), c.seconds);
    EXPECT_EQ(moved.GetFractionPicoSeconds(), c.fraction);
    EXPECT_EQ(moved - base, RTE::TimeSpan(c.addPs));
    EXPECT_EQ(moved.GetTimeSpanTo(base), RTE::TimeSpan(-c.addPs));
    EXPECT_EQ(c.addPs > 0, moved > base);
  }
  // Beyond what a span holds the difference saturates; just inside it is exact.
  EXPECT_EQ(TimeStamp(noon + 200LL * 86400, 0) - base, RTE::TimeSpan::Maximum());
  EXPECT_EQ(base - TimeStamp(noon + 200LL * 86400, 0), RTE::TimeSpan::Minimum());
  EXPECT_EQ(TimeStamp(noon + 9223372, 136854775806ULL) - TimeStamp(noon, 100000000000ULL),
            RTE::TimeSpan(9223372036854775806LL));
  EXPECT_EQ(TimeStamp(noon + 9223372, 999999999999ULL) - TimeStamp(noon, 0), RTE::TimeSpan::Maximum());
}

TEST(TimeStamp, Iso8601Forms)
{
  const TimeStamp t(noon, 250000ULL);
  EXPECT_EQ(t.ToISO8601String(TimeStamp::E_Timezone::UTC), QStringLiteral("2024-03-01T12:00:00.000000250000Z"));
  EXPECT_EQ(TimeStamp::FromISO8601String(t.ToISO8601String(TimeStamp::E_Timezone::Local)) - t, RTE::TimeSpan());

  const std::tuple<QString, long long, std::int64_t> cases[] = {
      {QStringLiteral("2024-03-01T12:00:00Z"), noon, 0},
      {QStringLiteral("2024-03-01T12:00:00.5Z"), noon, 500000000000},
      {QStringLiteral("2024-03-01T12:00:00.000000000001Z"), noon, 1},
      {QStringLiteral("2024-03-01T13:30:00.25+01:30"), noon, 250000000000},
      {QStringLiteral("2024-03-01T10:00:00-02:00"), noon, 0},
  };
  for (const auto& [text, seconds, fraction] : cases)
  {
    SCOPED_TRACE(text.toStdString());
    const TimeStamp parsed = TimeStamp::FromISO8601String(text);
    EXPECT_EQ(parsed.GetSecondsSinceEpoch(), seconds);
    EXPECT_EQ(parsed.GetFractionPicoSeconds(), fraction);
  }
  EXPECT_EQ(TimeStamp::FromISO8601String(QStringLiteral("2024-03-01T12:00:00")).GetDateTime(),
            QDateTime(QDate(2024, 3, 1), QTime(12, 0), Qt::LocalTime));

  for (const QString& bad :
       {QStringLiteral("2024-03-01T12:00:00.0000000000001Z"), QStringLiteral("2024-02-30T12:00:00Z"),
        QStringLiteral("2024-03-01 12:00:00Z"), QStringLiteral("2024-03-01T12:00:00+01:99")})
  {
    SCOPED_TRACE(bad.toStdString());
    EXPECT_EQ(MessageOf<RTE::InvalidArgumentError>([&] { TimeStamp::FromISO8601String(bad); }),
              QStringLiteral("Invalid ISO 8601 time stamp: '%1'").arg(bad));
  }
}
