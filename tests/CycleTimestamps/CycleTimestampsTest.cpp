#include <Core/Common/CycleTimestamps/CycleTimestamps.h>
#include <Core/Common/Exceptions/GeneralExceptions.h>

#include "CycleFixtures.h"

#include <gtest/gtest.h>

using namespace CycleFixtures;
using RTE::CycleTimestamps;
using RTE::ExposureIndex;

namespace
{

std::vector<double> anglesOf(const CycleTimestamps& cycle)
{
  std::vector<double> result;
  for (const RTE::CrankAngle& a : cycle.crankAngles())
    result.push_back(a);
  return result;
}

void expectAngles(const CycleTimestamps& cycle, const std::vector<double>& expected)
{
  const std::vector<double> actual = anglesOf(cycle);
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i)
  {
    SCOPED_TRACE(i);
    EXPECT_NEAR(actual[i], expected[i], 1e-9);
    EXPECT_EQ(cycle.crankAngles()[i].degreesPerCycle(), cycle.degreesPerCycle());
  }
}

} // namespace

TEST(CycleTimestamps, ConstructorChecksInOrder)
{
  struct Case
  {
    const char* what;
    std::optional<double> start;
    std::optional<double> nextStart;
    std::vector<double> cdms;
    std::vector<double> exposures;
    QString message;
    bool logicError;
  };
  // Each case also breaks every later rule, so a check out of order shows.
  const Case cases[] = {
      {"no ends", {}, {}, {}, {}, QStringLiteral("At least start or end has to be specified"), false},
      {"ends swapped",
       50.0,
       40.0,
       {10.0},
       {10.0, 60.0},
       QStringLiteral("Start of following cycle is before start of this cycle"),
       true},
      {"cdm before start",
       50.0,
       100.0,
       {10.0, 100.0},
       {10.0, 100.0},
       QStringLiteral("First CDM is before start of cycle"),
       true},
      {"exposure before start",
       50.0,
       100.0,
       {50.0, 100.0},
       {10.0, 100.0},
       QStringLiteral("First exposure is before start of cycle"),
       true},
      {"cdm at next start",
       0.0,
       100.0,
       {0.0, 100.0},
       {10.0, 100.0},
       QStringLiteral("Last CDM is at or after start of next cycle"),
       true},
      {"cdm after next start, start missing",
       {},
       100.0,
       {0.0, 101.0},
       {100.0},
       QStringLiteral("Last CDM is at or after start of next cycle"),
       true},
      {"exposure at next start",
       0.0,
       100.0,
       {0.0, 99.0},
       {10.0, 100.0},
       QStringLiteral("Last exposure is at or after start of next cycle"),
       true},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.what);
    RTE::CycleTimestamps::Settings s = settings(720.0, 4);
    s.start = c.start ? std::optional<RTE::TimeSpan>(ms(*c.start)) : std::nullopt;
    s.nextStart = c.nextStart ? std::optional<RTE::TimeSpan>(ms(*c.nextStart)) : std::nullopt;
    try
    {
      CycleTimestamps cycle(s, times(c.cdms), times(c.exposures));
      ADD_FAILURE() << "accepted";
    }
    catch (const RTE::LogicError& e)
    {
      EXPECT_TRUE(c.logicError);
      EXPECT_EQ(e.message(), c.message);
    }
    catch (const RTE::InvalidArgumentError& e)
    {
      EXPECT_FALSE(c.logicError);
      EXPECT_EQ(e.message(), c.message);
    }
  }

  // Start equal to next start is a cycle of no length, and allowed.
  RTE::CycleTimestamps::Settings same = settings(720.0, 4);
  same.start = ms(5.0);
  same.nextStart = ms(5.0);
  EXPECT_NO_THROW(CycleTimestamps(same, {}, {}));
}

TEST(CycleTimestamps, AnglesOfFullCycle)
{
  // 720 degrees in 100 ms, marks every 25 ms: -360, -180, 0, 180.
  const CycleTimestamps cycle = fullCycle({0.0, 12.5, 25.0, 50.0, 80.0, 99.0});
  EXPECT_TRUE(cycle.isFullCycle());
  EXPECT_FALSE(cycle.isIncomplete());
  EXPECT_TRUE(cycle.isPrePprCycle());
  expectAngles(cycle, {-360.0, -270.0, -180.0, 0.0, 216.0, 352.8});
  EXPECT_EQ(cycle.cyclePeriod(), ms(100.0));
  ASSERT_TRUE(cycle.rpm());
  EXPECT_DOUBLE_EQ(double(*cycle.rpm()), 1200.0);

  // Exposures before the first mark get no angle; later ones move up in the list.
  RTE::CycleTimestamps::Settings s = settings(720.0, 4);
  s.start = ms(0.0);
  s.nextStart = ms(100.0);
  const CycleTimestamps late(s, times({10.0, 40.0, 70.0}), times({5.0, 10.0, 55.0}));
  // Marks now at -360, -120, 120 (step 240 over three marks).
  expectAngles(late, {-360.0, -120.0 + 0.5 * 240.0});
  EXPECT_EQ(late.crankAngleAt(ExposureIndex(1)), RTE::CrankAngle(0.0, RTE::DegreesPerCycle(720.0)));
  EXPECT_FALSE(late.crankAngleAt(ExposureIndex(2)));
  EXPECT_EQ(late.exposureTimeAt(ExposureIndex(2)), ms(55.0));
  EXPECT_FALSE(late.exposureTimeAt(ExposureIndex(3)));
}

TEST(CycleTimestamps, AnglesOfStartMissingCycle)
{
  // Four of eight marks: positions 4 to 7, angles 0, 90, 180, 270.
  RTE::CycleTimestamps::Settings s = settings(720.0, 8);
  s.nextStart = ms(100.0);
  const CycleTimestamps cycle(s, times({0.0, 25.0, 50.0, 75.0}), times({-30.0, -1.0, 0.0, 37.5, 75.0, 90.0}));
  EXPECT_TRUE(cycle.isStartMissing());
  EXPECT_TRUE(cycle.isIncomplete());
  EXPECT_FALSE(cycle.cyclePeriod());
  // Exposures before the first mark take its angle, no extrapolation.
  expectAngles(cycle, {0.0, 0.0, 0.0, 135.0, 270.0, 324.0});
  ASSERT_TRUE(cycle.rpm());
  EXPECT_DOUBLE_EQ(double(*cycle.rpm()), 600.0); // 360 degrees in 100 ms

  // More stored marks than a cycle has.
  s.cdmsPerCycle = CycleTimestamps::CdmCount(3);
  try
  {
    CycleTimestamps tooMany(s, times({0.0, 25.0, 50.0, 75.0}), times({30.0}));
    ADD_FAILURE() << "accepted";
  }
  catch (const RTE::PostconditionFailed& e)
  {
    EXPECT_EQ(e.message(), QStringLiteral("Postcondition failed: m_settings.cdmsPerCycle >= m_cdms.size()"));
  }
}

TEST(CycleTimestamps, AnglesOfEndMissingCycle)
{
  // The first four of eight marks: -360, -270, -180, -90.
  RTE::CycleTimestamps::Settings s = settings(720.0, 8);
  s.start = ms(0.0);
  const CycleTimestamps cycle(s, times({10.0, 25.0, 50.0, 75.0}), times({5.0, 10.0, 37.5, 75.0, 500.0}));
  EXPECT_TRUE(cycle.isEndMissing());
  // Before the first mark: no angle; at or after the last: the last mark's angle.
  expectAngles(cycle, {-360.0, -225.0, -90.0, -90.0});
  ASSERT_TRUE(cycle.rpm());
  // 270 degrees from the start (0 ms) to the last mark (75 ms).
  EXPECT_DOUBLE_EQ(double(*cycle.rpm()), 600.0);

  // More marks after the start than a cycle has: the angles would run past the cycle.
  s.cdmsPerCycle = CycleTimestamps::CdmCount(2);
  try
  {
    CycleTimestamps tooMany(s, times({0.0, 25.0, 50.0}), times({10.0, 60.0}));
    ADD_FAILURE() << "accepted";
  }
  catch (const RTE::InvalidArgumentError& e)
  {
    EXPECT_EQ(e.message(), QStringLiteral("Invalid crank angle"));
  }
  // Exposures out of order.
  EXPECT_THROW(CycleTimestamps(settings(720.0, 8, 0.0, 100.0), times({0.0, 50.0}), times({60.0, 20.0, 30.0})),
               RTE::InvalidArgumentError);
}

TEST(CycleTimestamps, PprStepAssignment)
{
  // Eight marks in 72 ms over 720 degrees: 100 µs per degree from -360.
  RTE::CycleTimestamps::Settings s = settings(720.0, 8, 0.0, 72.0);
  const RTE::DegreesPerCycle d(720.0);
  s.pprSteps = {{RTE::CrankAngle(-360.0, d), RTE::CrankAngle(-300.0, d)},
                {RTE::CrankAngle(-200.0, d), RTE::CrankAngle(-100.0, d)},
                {RTE::CrankAngle(0.0, d), RTE::CrankAngle(100.0, d)}};
  s.minimalPprDistance = RTE::CrankAngle(5.0, d);
  const std::vector<double> angles{-360.0, -330.0, -298.0, -200.0, -150.0, -99.0, 50.0, 200.0, 210.0};
  std::vector<RTE::TimeSpan> exposures;
  for (double a : angles)
    exposures.push_back(RTE::MicroSeconds(static_cast<std::int64_t>((a + 360.0) * 100.0)));
  std::vector<double> cdms;
  for (int i = 0; i < 8; ++i)
    cdms.push_back(9.0 * i);
  const CycleTimestamps cycle(s, times(cdms), exposures);
  EXPECT_TRUE(cycle.isPprCycle());
  expectAngles(cycle, angles);

  // -298 lies 2 degrees past step 0's end, within the minimal distance; -99 likewise for
  // step 1; 200 lies beyond step 2, after which nothing is mapped.
  const std::optional<std::size_t> expected[] = {0, 0, 0, 1, 1, 1, 2, std::nullopt, std::nullopt};
  for (std::size_t i = 0; i < std::size(expected); ++i)
  {
    SCOPED_TRACE(i);
    EXPECT_EQ(cycle.pprStepAt(ExposureIndex(i)), expected[i]);
  }
  EXPECT_EQ(cycle.exposureToPprMap().size(), 7U);
  // Only -360 lies below 5 - 360.
  EXPECT_EQ(cycle.skipCount(), 1U);

  // An exposure between steps exhausts the walk: the step index never goes back.
  RTE::CycleTimestamps::Settings gap = s;
  const std::vector<double> gapAngles{-350.0, -250.0, -150.0};
  std::vector<RTE::TimeSpan> gapExposures;
  for (double a : gapAngles)
    gapExposures.push_back(RTE::MicroSeconds(static_cast<std::int64_t>((a + 360.0) * 100.0)));
  const CycleTimestamps gapCycle(gap, times(cdms), gapExposures);
  EXPECT_EQ(gapCycle.pprStepAt(ExposureIndex(0)), 0U);
  EXPECT_FALSE(gapCycle.pprStepAt(ExposureIndex(1)));
  EXPECT_FALSE(gapCycle.pprStepAt(ExposureIndex(2)));

  // Only full cycles get a map.
  RTE::CycleTimestamps::Settings endMissing = s;
  endMissing.nextStart.reset();
  EXPECT_TRUE(CycleTimestamps(endMissing, times(cdms), exposures).exposureToPprMap().empty());
  EXPECT_EQ(CycleTimestamps(settings(720.0, 8, 0.0, 72.0), times(cdms), exposures).skipCount(), 0U);
}

TEST(CycleTimestamps, PeriodsAndSpeedAtExposures)
{
  const CycleTimestamps cycle = fullCycle({0.0, 10.0, 15.0});
  EXPECT_EQ(cycle.imagePeriod(), ms(5.0));
  EXPECT_EQ(cycle.imagePeriod(), ms(5.0)); // cached
  const CycleTimestamps copy = cycle;
  EXPECT_EQ(copy.imagePeriod(), ms(5.0));
  EXPECT_FALSE(fullCycle({10.0}).imagePeriod());
  EXPECT_EQ(cycle.minimalCdmDistance(), RTE::TimeSpan());

  RTE::CycleTimestamps::Settings s = settings(720.0, 4, 0.0, 100.0);
  EXPECT_FALSE(CycleTimestamps(s, times({0.0}), {}).minimalCdmDistance());
  EXPECT_EQ(CycleTimestamps(s, times({0.0, 1.0}), {}).minimalCdmDistance(), RTE::TimeSpan());

  // 7.2 degrees per ms at 1200 rpm: every exposure, also the one-sided ends, reads 1200.
  for (std::uint64_t i = 0; i < 3; ++i)
  {
    SCOPED_TRACE(i);
    ASSERT_TRUE(cycle.rpmAt(ExposureIndex(i)));
    EXPECT_NEAR(double(*cycle.rpmAt(ExposureIndex(i))), 1200.0, 1e-6);
  }
  EXPECT_FALSE(cycle.rpmAt(ExposureIndex(3)));
  EXPECT_FALSE(fullCycle({10.0}).rpmAt(ExposureIndex(0)));

  // Equal angles give zero speed; an end-missing cycle with one mark has no mean speed.
  RTE::CycleTimestamps::Settings endMissing = settings(720.0, 8);
  endMissing.start = ms(0.0);
  const CycleTimestamps stalled(endMissing, times({0.0}), times({1.0, 2.0}));
  EXPECT_EQ(stalled.rpmAt(ExposureIndex(0)), RTE::Rpm(0.0));
  EXPECT_FALSE(stalled.rpm());
}

TEST(CycleTimestamps, NearestExposure)
{
  const CycleTimestamps cycle = fullCycle({0.0, 10.0, 15.0});
  struct Case
  {
    double time;
    std::uint64_t expected;
  };
  for (const Case& c :
       {Case{-5.0, 0}, Case{0.0, 0}, Case{5.0, 0}, Case{5.001, 1}, Case{12.5, 1}, Case{13.0, 2}, Case{99.0, 2}})
  {
    SCOPED_TRACE(c.time);
    EXPECT_EQ(cycle.nearestExposure(ms(c.time)), ExposureIndex(c.expected));
  }
  const RTE::DegreesPerCycle d(720.0);
  // Angles -360, -288, -252.
  struct AngleCase
  {
    double angle;
    std::uint64_t expected;
  };
  for (const AngleCase& c : {AngleCase{-360.0, 0}, AngleCase{-324.0, 0}, AngleCase{-323.0, 1}, AngleCase{-270.0, 1},
                             AngleCase{-269.0, 2}, AngleCase{300.0, 2}})
  {
    SCOPED_TRACE(c.angle);
    EXPECT_EQ(cycle.nearestExposure(RTE::CrankAngle(c.angle, d)), ExposureIndex(c.expected));
  }
  EXPECT_EQ(fullCycle({42.0}).nearestExposure(ms(0.0)), ExposureIndex(0));
  const CycleTimestamps none(settings(720.0, 4, 0.0, 100.0), times({0.0}), {});
  EXPECT_FALSE(none.nearestExposure(ms(0.0)));
  EXPECT_FALSE(none.nearestExposure(RTE::CrankAngle(0.0, d)));
  EXPECT_FALSE(none.containsExposures());
}

TEST(CycleTimestamps, MapToCrankAngleAveragesOverMarkSpans)
{
  const CycleTimestamps cycle = fullCycle({});
  // value = time in ms, one sample per ms from 0 to 100.
  std::vector<RTE::TimeSample> series;
  for (int t = 0; t <= 99; ++t)
    series.push_back({ms(t), double(t)});

  const std::vector<RTE::CrankAngleSample> mapped = cycle.mapToCrankAngle(series);
  ASSERT_EQ(mapped.size(), 4U);
  // Spans [0, 12.5], [12.5, 37.5], [37.5, 62.5], [62.5, 75]: the sample past the end
  // counts with its value interpolated at the end (12.5, not 13).
  const double expected[] = {(78.0 + 12.5) / 14.0, (625.0 + 37.5) / 26.0, (1250.0 + 62.5) / 26.0, 69.0};
  const double angles[] = {-360.0, -180.0, 0.0, 180.0};
  for (std::size_t i = 0; i < 4; ++i)
  {
    SCOPED_TRACE(i);
    EXPECT_DOUBLE_EQ(mapped[i].value, expected[i]);
    EXPECT_EQ(mapped[i].angle, RTE::CrankAngle(angles[i], RTE::DegreesPerCycle(720.0)));
  }

  // A series that begins after the first mark's span, or ends before the last one's.
  const std::vector<RTE::TimeSample> late(series.begin() + 1, series.begin() + 70);
  const std::vector<RTE::CrankAngleSample> partial = cycle.mapToCrankAngle(late);
  ASSERT_EQ(partial.size(), 2U);
  EXPECT_EQ(double(partial[0].angle), -180.0);
  EXPECT_EQ(double(partial[1].angle), 0.0);
  EXPECT_TRUE(cycle.mapToCrankAngle({}).empty());

  // Start missing: marks at positions 4 to 7 of 8.
  RTE::CycleTimestamps::Settings s = settings(720.0, 8);
  s.nextStart = ms(100.0);
  const CycleTimestamps startMissing(s, times({0.0, 25.0, 50.0, 75.0}), {});
  const std::vector<RTE::CrankAngleSample> shifted = startMissing.mapToCrankAngle(series);
  ASSERT_EQ(shifted.size(), 4U);
  EXPECT_EQ(double(shifted[0].angle), 0.0);
  EXPECT_EQ(double(shifted[3].angle), 270.0);
  EXPECT_DOUBLE_EQ(shifted[3].value, 69.0);
}
