#include <Core/Common/CycleTimestamps/CycleTimestamps.h>
#include <Core/Common/Exceptions/GeneralExceptions.h>

#include "CycleFixtures.h"

#include <gtest/gtest.h>

using namespace CycleFixtures;
using RTE::CycleTimestamps;
using RTE::ExposureIndex;
using Ms = std::optional<double>;

namespace
{

void expectAngles(const CycleTimestamps& cycle, const std::vector<double>& expected)
{
  ASSERT_EQ(cycle.crankAngles().size(), expected.size());
  for (std::size_t i = 0; i < expected.size(); ++i)
  {
    SCOPED_TRACE(i);
    EXPECT_NEAR(double(cycle.crankAngles()[i]), expected[i], 1e-9);
  }
}

// Exposures at the given crank angles of a cycle of 8 marks over 720 degrees in 72 ms.
std::vector<RTE::TimeSpan> atAngles(const std::vector<double>& angles)
{
  std::vector<RTE::TimeSpan> result;
  for (double a : angles)
    result.push_back(RTE::MicroSeconds(std::llround((a + 360.0) * 100.0)));
  return result;
}

const std::vector<double> eightMarks{0.0, 9.0, 18.0, 27.0, 36.0, 45.0, 54.0, 63.0};

} // namespace

TEST(CycleTimestamps, ConstructorChecksInOrder)
{
  struct Case
  {
    Ms start, nextStart;
    std::vector<double> cdms, exposures;
    QString message;
  };
  // Each case also breaks every later rule, so a check out of order shows.
  const Case cases[] = {
      {{}, {}, {}, {}, QStringLiteral("At least start or end has to be specified")},
      {50.0, 40.0, {10.0}, {10.0, 60.0}, QStringLiteral("Start of following cycle is before start of this cycle")},
      {50.0, 100.0, {10.0, 100.0}, {10.0, 100.0}, QStringLiteral("First CDM is before start of cycle")},
      {50.0, 100.0, {50.0, 100.0}, {10.0, 100.0}, QStringLiteral("First exposure is before start of cycle")},
      {0.0, 100.0, {0.0, 100.0}, {10.0, 100.0}, QStringLiteral("Last CDM is at or after start of next cycle")},
      {{}, 100.0, {0.0, 101.0}, {100.0}, QStringLiteral("Last CDM is at or after start of next cycle")},
      {0.0, 100.0, {0.0, 99.0}, {10.0, 100.0}, QStringLiteral("Last exposure is at or after start of next cycle")},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.message.toStdString());
    const auto make = [&]
    { CycleTimestamps(settings(720.0, 4, c.start, c.nextStart), times(c.cdms), times(c.exposures)); };
    if (c.start || c.nextStart)
      EXPECT_EQ(MessageOf<RTE::LogicError>(make), c.message);
    else
      EXPECT_EQ(MessageOf<RTE::InvalidArgumentError>(make), c.message);
  }
  EXPECT_NO_THROW(CycleTimestamps(settings(720.0, 4, 5.0, 5.0), {}, {})); // a cycle of no length
}

TEST(CycleTimestamps, AnglesOfEachKindOfCycle)
{
  struct Case
  {
    const char* what;
    std::uint32_t cdmsPerCycle;
    Ms start, nextStart;
    std::vector<double> cdms, exposures, angles;
  };
  const Case cases[] = {
      // Marks at -360, -180, 0, 180; interpolated in between, the last up to the next start.
      {"full", 4, 0.0, 100.0, {0, 25, 50, 75}, {0.0, 12.5, 25.0, 50.0, 80.0, 99.0}, {-360, -270, -180, 0, 216, 352.8}},
      // Exposures before the first mark get no angle; the step is 720 / 3.
      {"full, late marks", 4, 0.0, 100.0, {10, 40, 70}, {5, 10, 55}, {-360, 0}},
      // The last four of eight marks: 0, 90, 180, 270; earlier exposures take the first one.
      {"start missing", 8, {}, 100.0, {0, 25, 50, 75}, {-30, -1, 0, 37.5, 75, 90}, {0, 0, 0, 135, 270, 324}},
      // The first four of eight: -360 to -90; from the last mark on, its angle.
      {"end missing", 8, 0.0, {}, {10, 25, 50, 75}, {5, 10, 37.5, 75, 500}, {-360, -225, -90, -90}},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.what);
    const CycleTimestamps cycle(settings(720.0, c.cdmsPerCycle, c.start, c.nextStart), times(c.cdms),
                                times(c.exposures));
    expectAngles(cycle, c.angles);
    EXPECT_EQ(cycle.crankAngleAt(ExposureIndex(c.angles.size())), std::nullopt);
  }

  EXPECT_EQ(MessageOf<RTE::PostconditionFailed>(
                [] {
                  CycleTimestamps(settings(720.0, 3, {}, 100.0), times({0, 25, 50, 75}), times({30}));
                }),
            QStringLiteral("Postcondition failed: m_settings.cdmsPerCycle >= m_cdms.size()"));
  // More marks after the start than a cycle has, and exposures out of order.
  EXPECT_EQ(MessageOf<RTE::InvalidArgumentError>(
                [] {
                  CycleTimestamps(settings(720.0, 2, 0.0), times({0, 25, 50}), times({10, 60}));
                }),
            QStringLiteral("Invalid crank angle"));
  EXPECT_EQ(MessageOf<RTE::InvalidArgumentError>(
                [] {
                  CycleTimestamps(settings(720.0, 8, 0.0, 100.0), times({0, 50}), times({60, 20}));
                }),
            QStringLiteral("Invalid crank angle"));
}

TEST(CycleTimestamps, PprStepAssignment)
{
  CycleTimestamps::Settings s = settings(720.0, 8, 0.0, 72.0);
  const RTE::DegreesPerCycle d(720.0);
  s.pprSteps = {{RTE::CrankAngle(-360.0, d), RTE::CrankAngle(-300.0, d)},
                {RTE::CrankAngle(-200.0, d), RTE::CrankAngle(-100.0, d)},
                {RTE::CrankAngle(0.0, d), RTE::CrankAngle(100.0, d)}};
  s.minimalPprDistance = RTE::CrankAngle(5.0, d);
  const std::vector<double> angles{-360.0, -330.0, -298.0, -200.0, -150.0, -99.0, 50.0, 106.0, 210.0};
  const CycleTimestamps cycle(s, times(eightMarks), atAngles(angles));
  expectAngles(cycle, angles);
  // -298 and -99 lie within the minimal distance past their step's end; 106 lies just beyond
  // that distance past the last step, and nothing later is mapped.
  const std::optional<std::size_t> expected[] = {0, 0, 0, 1, 1, 1, 2, std::nullopt, std::nullopt};
  for (std::size_t i = 0; i < std::size(expected); ++i)
    EXPECT_EQ(cycle.pprStepAt(ExposureIndex(i)), expected[i]) << i;
  EXPECT_EQ(cycle.skipCount(), 1U); // only -360 lies below 5 - 360

  // An exposure between steps exhausts the walk: the step index never goes back.
  const CycleTimestamps gap(s, times(eightMarks), atAngles({-350.0, -250.0, -150.0}));
  EXPECT_EQ(gap.exposureToPprMap(), (std::map<std::uint64_t, std::size_t>{{0, 0}}));
  // Only full cycles get a map.
  s.nextStart.reset();
  EXPECT_TRUE(CycleTimestamps(s, times(eightMarks), atAngles(angles)).exposureToPprMap().empty());
}

TEST(CycleTimestamps, PeriodsAndSpeeds)
{
  const CycleTimestamps cycle = fullCycle({0.0, 10.0, 15.0});
  EXPECT_EQ(cycle.cyclePeriod(), ms(100.0));
  EXPECT_EQ(cycle.imagePeriod(), ms(5.0));
  EXPECT_EQ(CycleTimestamps(cycle).imagePeriod(), ms(5.0)); // the cache travels with a copy
  EXPECT_EQ(fullCycle({10.0}).imagePeriod(), std::nullopt);
  EXPECT_EQ(cycle.minimalCdmDistance(), RTE::TimeSpan()); // always zero for ascending marks
  EXPECT_EQ(CycleTimestamps(settings(720.0, 4, 0.0, 1.0), times({0.0}), {}).minimalCdmDistance(), std::nullopt);

  EXPECT_DOUBLE_EQ(double(*cycle.rpm()), 1200.0); // 720 degrees in 100 ms
  // 270 degrees from the start to the last of four of eight marks in 75 ms.
  EXPECT_DOUBLE_EQ(double(*CycleTimestamps(settings(720.0, 8, 0.0), times({0, 25, 50, 75}), {}).rpm()), 600.0);
  // From the first of the last four marks (0 degrees) to the next start (360).
  EXPECT_DOUBLE_EQ(double(*CycleTimestamps(settings(720.0, 8, {}, 100.0), times({0, 25, 50, 75}), {}).rpm()), 600.0);
  EXPECT_EQ(CycleTimestamps(settings(720.0, 8, 0.0), times({0}), {}).rpm(), std::nullopt);

  for (std::uint64_t i = 0; i < 3; ++i) // one-sided at the ends, central between
    EXPECT_NEAR(double(cycle.rpmAt(ExposureIndex(i)).value_or(RTE::Rpm())), 1200.0, 1e-6) << i;
  EXPECT_EQ(cycle.rpmAt(ExposureIndex(3)), std::nullopt);
  EXPECT_EQ(fullCycle({10.0}).rpmAt(ExposureIndex(0)), std::nullopt);
  // Two exposures from the last mark on share its angle: no movement.
  EXPECT_EQ(CycleTimestamps(settings(720.0, 8, 0.0), times({0}), times({1, 2})).rpmAt(ExposureIndex(0)), RTE::Rpm(0.0));
}

TEST(CycleTimestamps, NearestExposure)
{
  const CycleTimestamps cycle = fullCycle({0.0, 10.0, 15.0}); // angles -360, -288, -252
  for (const auto& [t, expected] : {std::pair{-5.0, 0}, std::pair{5.0, 0}, std::pair{5.001, 1}, std::pair{12.5, 1},
                                    std::pair{13.0, 2}, std::pair{99.0, 2}})
    EXPECT_EQ(cycle.nearestExposure(ms(t)), ExposureIndex(expected)) << t;
  const RTE::DegreesPerCycle d(720.0);
  for (const auto& [a, expected] : {std::pair{-360.0, 0}, std::pair{-324.0, 0}, std::pair{-323.0, 1},
                                    std::pair{-270.0, 1}, std::pair{-269.0, 2}, std::pair{300.0, 2}})
    EXPECT_EQ(cycle.nearestExposure(RTE::CrankAngle(a, d)), ExposureIndex(expected)) << a;
  const CycleTimestamps none(settings(720.0, 4, 0.0, 100.0), times({0.0}), {});
  EXPECT_EQ(none.nearestExposure(ms(0.0)), std::nullopt);
  EXPECT_EQ(none.nearestExposure(RTE::CrankAngle(0.0, d)), std::nullopt);
}

TEST(CycleTimestamps, MapToCrankAngleAveragesOverMarkSpans)
{
  std::vector<RTE::TimeSample> series; // value = time in ms
  for (int t = 0; t <= 99; ++t)
    series.push_back({ms(t), double(t)});
  // Spans [0, 12.5], [12.5, 37.5], [37.5, 62.5], [62.5, 75]: the sample past a span's end
  // counts with its value interpolated at the end (12.5, not 13).
  const std::vector<std::pair<double, double>> expected{
      {-360.0, (78.0 + 12.5) / 14.0}, {-180.0, (625.0 + 37.5) / 26.0}, {0.0, (1250.0 + 62.5) / 26.0}, {180.0, 69.0}};
  const auto check = [](const std::vector<RTE::CrankAngleSample>& mapped, std::vector<std::pair<double, double>> want)
  {
    ASSERT_EQ(mapped.size(), want.size());
    for (std::size_t i = 0; i < want.size(); ++i)
    {
      EXPECT_EQ(double(mapped[i].angle), want[i].first) << i;
      EXPECT_DOUBLE_EQ(mapped[i].value, want[i].second) << i;
    }
  };
  const CycleTimestamps cycle = fullCycle({});
  check(cycle.mapToCrankAngle(series), expected);
  // A series that begins after the first span or ends before the last leaves those out.
  check(cycle.mapToCrankAngle({series.begin() + 1, series.begin() + 70}), {expected[1], expected[2]});
  EXPECT_TRUE(cycle.mapToCrankAngle({}).empty());
  // Start missing: the same marks at positions 4 to 7 of 8.
  const CycleTimestamps startMissing(settings(720.0, 8, {}, 100.0), times({0, 25, 50, 75}), {});
  check(startMissing.mapToCrankAngle(series),
        {{0.0, expected[0].second}, {90.0, expected[1].second}, {180.0, expected[2].second}, {270.0, 69.0}});
}
