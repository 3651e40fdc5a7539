#include "UnitsRegistryFixture.h"

#include <Core/Common/Units/LengthUnits.h>
#include <Core/Common/Units/PreferredUnits.h>
#include <Core/Common/Units/TemperatureUnits.h>

namespace
{

const QString raw = QStringLiteral("raw");

} // namespace

using PreferredUnitsTest = UnitsRegistryFixture;

TEST_F(PreferredUnitsTest, FromLinearScaleConvertsRawValuesStraightToEveryUnit)
{
  const RTE::PreferredUnits units = RTE::PreferredUnits::fromLinearScale(
      Zn::LinearScale(0.01, 0.0, QStringLiteral("mm"), QString()), std::nullopt, raw, QStringLiteral("counts"));
  EXPECT_EQ(units.GetTypeIdentifier(), QStringLiteral("PreferredUnits"));
  EXPECT_EQ(units.GetBaseUnit(), RTE::Unit(raw, QStringLiteral("counts"), 1.0, 0.0, 0.0));
  EXPECT_EQ(units.getPreferredUnitId(), QStringLiteral("mm"));

  const std::pair<const char*, double> factors[] = {{"m", 100000.0}, {"mm", 100.0},  {"µm", 0.1},
                                                    {"cm", 1000.0},  {"in", 2540.0}, {"ft", 30480.0}};
  const QList<RTE::Unit> targets = units.GetTargetUnits(true);
  ASSERT_EQ(targets.size(), 6);
  for (qsizetype i = 0; i < targets.size(); ++i)
  {
    SCOPED_TRACE(factors[i].first);
    EXPECT_EQ(targets[i].id, u8(factors[i].first));
    EXPECT_NEAR(targets[i].factor, factors[i].second, factors[i].second * 1e-12);
    EXPECT_EQ(targets[i].offset, 0.0);
  }
  // 250 raw counts of 0.01 mm.
  EXPECT_DOUBLE_EQ(units.Convert(250.0, raw, QStringLiteral("mm")), 2.5);
  EXPECT_DOUBLE_EQ(units.Convert(250.0, raw, QStringLiteral("cm")), 0.25);
  EXPECT_DOUBLE_EQ(units.Convert(2.5, QStringLiteral("mm"), raw), 250.0);
}

TEST_F(PreferredUnitsTest, OffsetsOfScaleAndUnitsCombine)
{
  // raw -> °C as 0.5 * raw - 10.
  const RTE::PreferredUnits units = RTE::PreferredUnits::fromLinearScale(
      Zn::LinearScale(0.5, -10.0, u8("°C"), QString()), std::nullopt, raw, QString());
  EXPECT_EQ(units.getPreferredUnitId(), u8("°C"));
  EXPECT_DOUBLE_EQ(units.Convert(100.0, raw, u8("°C")), 40.0);
  EXPECT_DOUBLE_EQ(units.Convert(100.0, raw, QStringLiteral("K")), 313.15);
  EXPECT_DOUBLE_EQ(units.Convert(313.15, QStringLiteral("K"), raw), 100.0);

  // raw -> K as 2 * raw + 1.
  const RTE::PreferredUnits kelvin = RTE::PreferredUnits::fromLinearScale(
      Zn::LinearScale(2.0, 1.0, QStringLiteral("K"), QString()), std::nullopt, raw, QString());
  EXPECT_DOUBLE_EQ(kelvin.Convert(10.0, raw, QStringLiteral("K")), 21.0);
  EXPECT_DOUBLE_EQ(kelvin.Convert(10.0, raw, u8("°C")), 21.0 - 273.15);
}

TEST_F(PreferredUnitsTest, TimeAddsRelatedUnits)
{
  // raw -> mm/s as 0.01 * raw; over 2000 µs a velocity becomes a length.
  const RTE::PreferredUnits units = RTE::PreferredUnits::fromLinearScale(
      Zn::LinearScale(0.01, 0.0, QStringLiteral("mm/s"), QString()), 2000.0, raw, QString());
  const QStringList expected{QStringLiteral("m/s"), QStringLiteral("mm/s"), u8("µm/s"),
                             QStringLiteral("m"),   QStringLiteral("mm"),   u8("µm"),
                             QStringLiteral("cm"),  QStringLiteral("in"),   QStringLiteral("ft")};
  EXPECT_EQ(units.GetTargetUnitIds(), expected);
  // 100 raw = 1 mm/s; over 2 ms that is 0.002 mm.
  EXPECT_DOUBLE_EQ(units.Convert(100.0, raw, QStringLiteral("mm/s")), 1.0);
  EXPECT_DOUBLE_EQ(units.Convert(100.0, raw, QStringLiteral("mm")), 0.002);
  EXPECT_DOUBLE_EQ(units.Convert(100.0, raw, u8("µm")), 2.0);

  const RTE::PreferredUnits noTime = RTE::PreferredUnits::fromLinearScale(
      Zn::LinearScale(0.01, 0.0, QStringLiteral("mm/s"), QString()), 0.0, raw, QString());
  EXPECT_EQ(noTime.GetTargetUnitIds().size(), 3);
}

TEST_F(PreferredUnitsTest, UnknownUnitOrZeroFactorGivesOnlyTheBase)
{
  for (const Zn::LinearScale& scale : {Zn::LinearScale(1.0, 0.0, QStringLiteral("furlong"), QString()),
                                       Zn::LinearScale(0.0, 5.0, QStringLiteral("mm"), QString()),
                                       Zn::LinearScale(1.0, 0.0, QStringLiteral("cm/s^2"), QString())})
  {
    SCOPED_TRACE(qPrintable(scale.getUnit()));
    const RTE::PreferredUnits units = RTE::PreferredUnits::fromLinearScale(scale, 1.0, raw, QStringLiteral("r"));
    EXPECT_EQ(units.GetBaseUnit(), RTE::Unit(raw, QStringLiteral("r"), 1.0, 0.0, 0.0));
    EXPECT_TRUE(units.GetTargetUnits(true).isEmpty());
    EXPECT_TRUE(units.getPreferredUnitId().isEmpty());
  }
  // The registry's filter does not narrow the units offered.
  registry.getUnits(QStringLiteral("mm")).SetFilter({QStringLiteral("cm")});
  const RTE::PreferredUnits filtered = RTE::PreferredUnits::fromLinearScale(
      Zn::LinearScale(1.0, 0.0, QStringLiteral("mm"), QString()), std::nullopt, raw, QString());
  EXPECT_EQ(filtered.GetTargetUnits(true).size(), 6);
}

TEST_F(PreferredUnitsTest, CopyFromAnotherSetAndEditing)
{
  RTE::LengthUnits length;
  length.SetSortOrder(QStringLiteral("ft"), -1.0);
  length.SetFilter({QStringLiteral("ft"), QStringLiteral("cm"), QStringLiteral("m")});
  RTE::PreferredUnits units(length);
  EXPECT_EQ(units.GetBaseUnit(), RTE::Unit(QStringLiteral("m"), QStringLiteral("m"), 1.0, 0.0, 0.0));
  EXPECT_EQ(units.getPreferredUnitId(), QStringLiteral("m"));
  const QList<RTE::Unit> targets = units.GetTargetUnits(true);
  ASSERT_EQ(targets.size(), 2);
  EXPECT_EQ(targets[0], RTE::Unit(QStringLiteral("cm"), QStringLiteral("cm"), 0.01, 0.0, 3.0));
  EXPECT_EQ(targets[1], RTE::Unit(QStringLiteral("ft"), QStringLiteral("ft"), 0.3048, 0.0, -1.0));
  EXPECT_EQ(units.GetFilter(), (QStringList{QStringLiteral("ft"), QStringLiteral("cm"), QStringLiteral("m")}));
  EXPECT_EQ(units.GetAllUnitIds(), (QStringList{QStringLiteral("ft"), QStringLiteral("m"), QStringLiteral("cm")}));

  const std::unique_ptr<RTE::Units> clone = units.Clone();
  ASSERT_NE(dynamic_cast<RTE::PreferredUnits*>(clone.get()), nullptr);
  EXPECT_EQ(static_cast<RTE::PreferredUnits&>(*clone).getPreferredUnitId(), QStringLiteral("m"));

  units.changeBaseUnit(QStringLiteral("px"), QString());
  EXPECT_EQ(units.GetBaseUnit().label, QStringLiteral("px"));
  EXPECT_TRUE(units.GetTargetUnits(true).isEmpty());
  EXPECT_FALSE(units.isEmpty());
  units.AppendTargetUnit(QStringLiteral("kpx"), QString(), 1000.0, 0.0);
  units.clear();
  EXPECT_TRUE(units.isEmpty());
  EXPECT_TRUE(units.GetBaseUnitId().isEmpty());
  EXPECT_TRUE(RTE::PreferredUnits().isEmpty());
}
