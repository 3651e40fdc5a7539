#include "UnitsRegistryFixture.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Units/LengthUnits.h>
#include <Core/Common/Units/StrainRate2Units.h>
#include <Core/Common/Units/TimeRelatedUnits.h>
#include <Core/Common/Units/TimeUnits.h>

#include <Core/Common/Units/AccelerationUnits.h>

namespace
{

struct Factor
{
  const char* id;
  double factor;
};

void expectUnits(const QList<RTE::Unit>& actual, const std::vector<Factor>& expected)
{
  ASSERT_EQ(actual.size(), static_cast<qsizetype>(expected.size()));
  for (size_t i = 0; i < expected.size(); ++i)
  {
    const RTE::Unit& unit = actual[static_cast<qsizetype>(i)];
    SCOPED_TRACE(expected[i].id);
    EXPECT_EQ(unit.id, u8(expected[i].id));
    EXPECT_NEAR(unit.factor, expected[i].factor, std::abs(expected[i].factor) * 1e-12);
    EXPECT_EQ(unit.offset, 0.0);
    EXPECT_EQ(unit.sortOrder, 0.0);
  }
}

} // namespace

using TimeRelatedUnitsTest = UnitsRegistryFixture;

TEST_F(TimeRelatedUnitsTest, LengthVelocityAndAcceleration)
{
  SCOPED_TRACE("velocity over 2 s gives lengths");
  const QList<RTE::Unit> lengths = RTE::getTimeRelatedUnits(QStringLiteral("mm/s"), 2.0, QStringLiteral("s"));
  expectUnits(lengths,
              {{"m", 0.002}, {"mm", 2.0}, {"µm", 2000.0}, {"cm", 0.2}, {"in", 0.002 / 0.0254}, {"ft", 0.002 / 0.3048}});
  EXPECT_EQ(lengths[2].label, u8("µm"));

  SCOPED_TRACE("length over 2 s gives velocities");
  expectUnits(RTE::getTimeRelatedUnits(QStringLiteral("mm"), 2.0, QStringLiteral("s")),
              {{"m/s", 500.0}, {"mm/s", 0.5}, {"µm/s", 0.0005}});

  SCOPED_TRACE("acceleration over 2000 ms gives lengths, with the time squared");
  expectUnits(RTE::getTimeRelatedUnits(QStringLiteral("mm/s^2"), 2000.0, QStringLiteral("ms")),
              {{"m", 0.004}, {"mm", 4.0}, {"µm", 4000.0}, {"cm", 0.4}, {"in", 0.004 / 0.0254}, {"ft", 0.004 / 0.3048}});

  SCOPED_TRACE("the filter of the other set applies");
  registry.getUnits(QStringLiteral("mm")).SetFilter({QStringLiteral("cm"), QStringLiteral("mm")});
  expectUnits(RTE::getTimeRelatedUnits(QStringLiteral("m/s"), 0.5, QStringLiteral("s")), {{"mm", 500.0}, {"cm", 50.0}});

  SCOPED_TRACE("without velocities a length relates to accelerations");
  registry.clear();
  registry.registerUnits(std::make_unique<RTE::LengthUnits>());
  registry.registerUnits(std::make_unique<RTE::AccelerationUnits>());
  expectUnits(RTE::getTimeRelatedUnits(QStringLiteral("mm"), 2.0, QStringLiteral("s")),
              {{"m/s^2", 250.0}, {"mm/s^2", 0.25}, {"µm/s^2", 0.00025}});
}

TEST_F(TimeRelatedUnitsTest, StrainAndItsRates)
{
  expectUnits(RTE::getTimeRelatedUnits(QStringLiteral("1/s"), 2.0, QStringLiteral("s")),
              {{"S", 2.0}, {"µS", 2e6}, {"mS", 2000.0}, {"%_Strain", 200.0}});
  expectUnits(RTE::getTimeRelatedUnits(QStringLiteral("mS"), 2.0, QStringLiteral("s")), {{"1/s", 500.0}});
  expectUnits(RTE::getTimeRelatedUnits(QStringLiteral("1/s^2"), 3.0, QStringLiteral("s")),
              {{"S", 9.0}, {"µS", 9e6}, {"mS", 9000.0}, {"%_Strain", 900.0}});

  // Squared strain relates to strain acceleration only once its set is registered.
  EXPECT_TRUE(RTE::getTimeRelatedUnits(QStringLiteral("%_StrainRate"), 2.0, QStringLiteral("s")).isEmpty());
  registry.registerUnits(std::make_unique<RTE::StrainRate2Units>());
  expectUnits(RTE::getTimeRelatedUnits(QStringLiteral("%_StrainRate"), 2.0, QStringLiteral("s")), {{"1/s^2", 25.0}});
}

TEST_F(TimeRelatedUnitsTest, NoRelatedUnits)
{
  EXPECT_TRUE(RTE::getTimeRelatedUnits(QStringLiteral("mm/s"), 0.0, QStringLiteral("s")).isEmpty());
  EXPECT_TRUE(RTE::getTimeRelatedUnits(QStringLiteral("mm/s"), 2.0, QStringLiteral("Hz")).isEmpty());
  EXPECT_TRUE(RTE::getTimeRelatedUnits(QStringLiteral("Hz"), 2.0, QStringLiteral("s")).isEmpty());
  EXPECT_TRUE(RTE::getTimeRelatedUnits(QStringLiteral("rad"), 2.0, QStringLiteral("s")).isEmpty());
}

TEST_F(TimeRelatedUnitsTest, OptimalUnitForTime)
{
  struct Case
  {
    double time;
    const char* unit;
    const char* expected;
  };
  const Case cases[] = {
      {3600.0, "s", "min"}, {5400.0, "s", "h"}, {1.0, "h", "min"},     {1.5, "h", "h"},    {90.0, "min", "h"},
      {-90.0, "s", "min"},  {1.5, "s", "s"},    {1.0, "s", "ms"},      {2.0, "µs", "µs"},  {1.0, "µs", "ns"},
      {0.5, "ns", "ps"},    {0.0, "s", "ps"},   {-0.0012, "ms", "µs"}, {61.0, "s", "min"},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(std::to_string(c.time) + " " + c.unit);
    EXPECT_EQ(RTE::GetOptimalUnitIdForTime(c.time, u8(c.unit)), u8(c.expected));
  }
  EXPECT_THROW((void)RTE::GetOptimalUnitIdForTime(1.0, QStringLiteral("Hz")), RTE::InvalidArgumentError);
  registry.getUnits(QStringLiteral("s")).SetFilter({QStringLiteral("ms")});
  EXPECT_THROW((void)RTE::GetOptimalUnitIdForTime(1.0, QStringLiteral("s")), RTE::InvalidArgumentError);
  EXPECT_EQ(RTE::GetOptimalUnitIdForTime(1.0, QStringLiteral("ms")), QStringLiteral("µs"));
}
