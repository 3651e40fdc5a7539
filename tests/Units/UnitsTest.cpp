#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Units/ArbitraryUnits.h>
#include <Core/Common/Units/LengthUnits.h>
#include <Core/Common/Units/TemperatureUnits.h>

#include "QStringPrinter.h"

#include <gtest/gtest.h>

namespace
{

const QString mm = QStringLiteral("mm");
const QString m = QStringLiteral("m");
const QString um = QString::fromUtf8("µm");
const QString cm = QStringLiteral("cm");

QStringList ids(const QList<RTE::Unit>& units)
{
  QStringList result;
  for (const RTE::Unit& unit : units)
    result.append(unit.id);
  return result;
}

} // namespace

TEST(Units, FreshSetListsInInsertionOrderWithSequentialSortOrder)
{
  const RTE::LengthUnits length;
  const QStringList expected{m, mm, um, cm, QStringLiteral("in"), QStringLiteral("ft")};
  EXPECT_EQ(length.GetAllUnitIds(), expected);
  EXPECT_EQ(length.GetUnitCount(), 6u);
  EXPECT_EQ(length[5].sortOrder, 5.0);
  EXPECT_EQ(length.GetTargetUnitIds(), expected.mid(1));
  EXPECT_EQ(ids(length.GetTargetUnits()), expected.mid(1));
  QStringList iterated;
  for (const RTE::Unit& unit : length)
    iterated.append(unit.id);
  EXPECT_EQ(iterated, expected.mid(1));
}

TEST(Units, FilterKeepsOnlyKnownIdsAndHidesTheRest)
{
  RTE::LengthUnits length;
  length.SetFilter({mm, QStringLiteral("xyz")});
  EXPECT_EQ(length.GetFilter(), QStringList{mm});
  EXPECT_FALSE(length.ContainsUnitId(m, false));
  EXPECT_TRUE(length.ContainsUnitId(m, true));
  EXPECT_TRUE(length.ContainsUnitId(mm, false));
  EXPECT_FALSE(length.ContainsUnitId(QStringLiteral("xyz"), true));
  EXPECT_EQ(ids(length.GetAllUnits(false)), QStringList{mm});
  EXPECT_EQ(length.GetAllUnits(true).size(), 6);
  EXPECT_EQ(length.GetUnitCount(), 1u);
  EXPECT_EQ(length[0].id, mm);
  // Labels are looked up past the filter; only the list of labels follows it.
  EXPECT_EQ(length.GetLabelForUnitId(cm), cm);
  EXPECT_EQ(length.GetLabelForUnitId(m), m);
  EXPECT_TRUE(length.GetLabelForUnitId(QStringLiteral("xyz")).isEmpty());
  EXPECT_EQ(length.GetAllUnitLabels(), QStringList{mm});
  EXPECT_THROW(length[1], RTE::OutOfRangeError);
  // Conversions ignore the filter.
  EXPECT_TRUE(length.CanScale(m, cm));
  EXPECT_DOUBLE_EQ(length.Convert(1.0, m, cm), 100.0);

  // The filter keeps the caller's order, base included.
  length.SetFilter({cm, m});
  EXPECT_EQ(length.GetFilter(), (QStringList{cm, m}));
  EXPECT_EQ(length.GetAllUnitIds(), (QStringList{m, cm}));
  EXPECT_EQ(length.GetTargetUnitIds(), QStringList{cm});

  length.SetFilter({});
  EXPECT_TRUE(length.GetFilter().isEmpty());
  EXPECT_EQ(length.GetUnitCount(), 6u);

  length.SetFilter({mm, um});
  length.ClearFilter();
  EXPECT_EQ(length.GetUnitCount(), 6u);

  // Only unknown ids (case counts): no filter at all.
  length.SetFilter({QStringLiteral("MM"), QStringLiteral("yard")});
  EXPECT_TRUE(length.GetFilter().isEmpty());
  EXPECT_EQ(length.GetUnitCount(), 6u);
}

TEST(Units, RemoveTargetUnitAlsoDropsItFromTheFilter)
{
  RTE::LengthUnits length;
  length.SetFilter({mm, cm});
  length.RemoveTargetUnit(mm);
  EXPECT_EQ(length.GetFilter(), QStringList{cm});
  EXPECT_FALSE(length.ContainsUnitId(mm, true));
  EXPECT_EQ(length.GetAllUnitIds(), QStringList{cm});

  length.RemoveTargetUnit(m); // the base stays
  length.RemoveTargetUnit(QStringLiteral("xyz"));
  EXPECT_EQ(length.GetBaseUnitId(), m);
  EXPECT_EQ(length.GetAllUnits(true).size(), 5);

  length.ClearAllTargetUnits();
  EXPECT_TRUE(length.GetTargetUnits(true).isEmpty());
  EXPECT_EQ(length.GetBaseUnitId(), m);
}

TEST(Units, SetTargetUnitReplacesTargetsAndNeverTheBase)
{
  RTE::LengthUnits length;
  length.SetTargetUnit(cm, QStringLiteral("centimetre"), 0.02, 1.0);
  const RTE::Unit changed = length[3];
  EXPECT_EQ(changed, RTE::Unit(cm, QStringLiteral("centimetre"), 0.02, 1.0, 3.0));

  // Not a target: appended with sortOrder = count, even for the base id.
  length.SetTargetUnit(m, QStringLiteral("metre"), 2.0, 0.0);
  EXPECT_EQ(length.GetBaseUnit(), RTE::Unit(m, m, 1.0, 0.0, 0.0));
  const QList<RTE::Unit> targets = length.GetTargetUnits(true);
  ASSERT_EQ(targets.size(), 6);
  EXPECT_EQ(targets.last(), RTE::Unit(m, QStringLiteral("metre"), 2.0, 0.0, 6.0));
  EXPECT_EQ(length.GetLabelForUnitId(m), m); // the base's label wins
}

TEST(Units, AppendTargetUnitTakesSortOrderFromTheFilteredCount)
{
  RTE::ArbitraryUnits units(QStringLiteral("cnt"), QStringLiteral("counts"));
  units.AppendTargetUnit(QStringLiteral("kcnt"), QStringLiteral("kilocounts"), 1000.0, 0.0);
  units.SetFilter({QStringLiteral("kcnt")});
  units.AppendTargetUnit(QStringLiteral("Mcnt"), QStringLiteral("Mcnt"), 1e6, 0.0);
  EXPECT_EQ(units.GetTargetUnits(true).last().sortOrder, 1.0); // one unit passed the filter
  units.AppendTargetUnit(RTE::Unit(QStringLiteral("x"), QStringLiteral("x"), 2.0, 0.0, -5.0));
  EXPECT_EQ(units.GetTargetUnits(true).last().sortOrder, -5.0);
}

TEST(Units, SortOrderDecidesListingButNotTargetIteration)
{
  RTE::LengthUnits length;
  length.SetSortOrder(QStringLiteral("ft"), -1.0);
  length.SetSortOrder(m, 10.0);
  length.SetSortOrder(QStringLiteral("xyz"), -100.0);
  const QStringList sorted{QStringLiteral("ft"), mm, um, cm, QStringLiteral("in"), m};
  EXPECT_EQ(length.GetAllUnitIds(), sorted);
  EXPECT_EQ(length[0].id, QStringLiteral("ft"));
  EXPECT_EQ(length.GetTargetUnitIds(), (QStringList{QStringLiteral("ft"), mm, um, cm, QStringLiteral("in")}));
  // GetTargetUnits keeps insertion order.
  EXPECT_EQ(ids(length.GetTargetUnits()), (QStringList{mm, um, cm, QStringLiteral("in"), QStringLiteral("ft")}));
  // Equal keys keep base-then-insertion order.
  length.SetSortOrder(QStringLiteral("ft"), 1.0);
  length.SetSortOrder(m, 1.0);
  EXPECT_EQ(length.GetAllUnitIds().mid(0, 3), (QStringList{m, mm, QStringLiteral("ft")}));
}

TEST(Units, IndexOperatorReturnsReferencesIntoTheSet)
{
  RTE::LengthUnits length;
  length.SetFilter({cm, mm});
  length[1].label = QStringLiteral("Zentimeter"); // second by sortOrder: mm (1) before cm (3)
  EXPECT_EQ(length.GetLabelForUnitId(cm), QStringLiteral("Zentimeter"));
  length.ClearFilter();
  length[0].label = QStringLiteral("metre");
  EXPECT_EQ(length.GetBaseUnit().label, QStringLiteral("metre"));
  EXPECT_THROW(length[6], RTE::OutOfRangeError);
  EXPECT_THROW(length[0xFFFFFFFFu], RTE::OutOfRangeError);
}

TEST(Units, ScalesConvertBothWaysWithOffsets)
{
  const RTE::TemperatureUnits temperature;
  const QString celsius = QString::fromUtf8("°C");
  const QString kelvin = QStringLiteral("K");
  const Zn::LinearScale toKelvin = temperature.GetScale(celsius, kelvin);
  EXPECT_EQ(toKelvin.getFactor(), 1.0);
  EXPECT_EQ(toKelvin.getOffset(), 273.15);
  EXPECT_EQ(toKelvin.getUnit(), kelvin);
  EXPECT_TRUE(toKelvin.getDescription().isEmpty());
  const Zn::LinearScale toCelsius = temperature.GetScale(kelvin, celsius);
  EXPECT_EQ(toCelsius.getFactor(), 1.0);
  EXPECT_EQ(toCelsius.getOffset(), -273.15);
  EXPECT_DOUBLE_EQ(temperature.Convert(20.0, celsius, kelvin), 293.15);
  EXPECT_DOUBLE_EQ(temperature.Convert(0.0, kelvin, celsius), -273.15);
  EXPECT_EQ(temperature.Convert(5.0, celsius, celsius), 5.0);

  // An offset on both sides: (F.offset - T.offset) / T.factor.
  RTE::ArbitraryUnits scale(QStringLiteral("b"));
  scale.AppendTargetUnit(QStringLiteral("x"), QStringLiteral("x"), 2.0, 10.0);
  scale.AppendTargetUnit(QStringLiteral("y"), QStringLiteral("y"), 4.0, 2.0);
  const Zn::LinearScale xToY = scale.GetScale(QStringLiteral("x"), QStringLiteral("y"));
  EXPECT_EQ(xToY.getFactor(), 0.5);
  EXPECT_EQ(xToY.getOffset(), 2.0);
  EXPECT_EQ(xToY.getScaled(3.0), (3.0 * 2.0 + 10.0 - 2.0) / 4.0);

  // Between two targets; the factors themselves are pinned in DefaultUnitSetsTest.
  const RTE::LengthUnits length;
  EXPECT_DOUBLE_EQ(length.GetScale(mm, cm).getFactor(), 0.1);
  EXPECT_DOUBLE_EQ(length.Convert(1.0, QStringLiteral("in"), cm), 2.54);
}

TEST(Units, ScaleWithAnUnknownIdThrowsVerificationFailed)
{
  const RTE::LengthUnits length;
  for (const auto& [from, to] : {std::pair{mm, QStringLiteral("Hz")}, std::pair{QStringLiteral("Hz"), mm},
                                 std::pair{QStringLiteral("pixel"), mm}})
  {
    SCOPED_TRACE(qPrintable(from + QStringLiteral(" -> ") + to));
    EXPECT_FALSE(length.CanScale(from, to));
    try
    {
      (void)length.Convert(1.0, from, to);
      ADD_FAILURE() << "no exception";
    }
    catch (const RTE::VerificationFailed& e)
    {
      EXPECT_EQ(e.message(), QStringLiteral("At least one unit id is not part of the units object."));
      EXPECT_FALSE(e.sourceFile().isEmpty());
    }
  }
}

TEST(Units, CloneAndCopyAreDeepAndKeepTheType)
{
  RTE::LengthUnits length;
  length.SetFilter({mm});
  length.SetSortOrder(mm, 7.0);
  const std::unique_ptr<RTE::Units> clone = length.Clone();
  ASSERT_NE(dynamic_cast<RTE::LengthUnits*>(clone.get()), nullptr);
  EXPECT_EQ(clone->GetTypeIdentifier(), QStringLiteral("Length"));
  EXPECT_EQ(clone->GetFilter(), QStringList{mm});
  EXPECT_EQ(clone->GetAllUnits(true), length.GetAllUnits(true));

  length.RemoveTargetUnit(cm);
  EXPECT_TRUE(clone->ContainsUnitId(cm, true));

  RTE::LengthUnits assigned;
  assigned = length;
  EXPECT_FALSE(assigned.ContainsUnitId(cm, true));
  EXPECT_EQ(assigned.GetFilter(), QStringList{mm});
}

TEST(ArbitraryUnits, BaseUnitFromConstructorAndChangeBaseUnit)
{
  RTE::ArbitraryUnits units(QStringLiteral("cnt"));
  EXPECT_EQ(units.GetTypeIdentifier(), QStringLiteral("ArbitraryUnits"));
  EXPECT_EQ(units.GetBaseUnit(), RTE::Unit(QStringLiteral("cnt"), QStringLiteral("cnt"), 1.0, 0.0, 0.0));
  EXPECT_TRUE(units.GetTargetUnits(true).isEmpty());

  units.AppendTargetUnit(QStringLiteral("kcnt"), QString(), 1000.0, 0.0);
  units.ChangeBaseUnit(QStringLiteral("ev"), QStringLiteral("events"), false);
  EXPECT_EQ(units.GetBaseUnit(), RTE::Unit(QStringLiteral("ev"), QStringLiteral("events"), 1.0, 0.0, 0.0));
  EXPECT_EQ(units.GetTargetUnits(true).size(), 1);

  units.ChangeBaseUnit(RTE::Unit(QStringLiteral("px"), QString(), 5.0, 3.0, 9.0), true);
  EXPECT_EQ(units.GetBaseUnit(), RTE::Unit(QStringLiteral("px"), QStringLiteral("px"), 1.0, 0.0, 0.0));
  EXPECT_TRUE(units.GetTargetUnits(true).isEmpty());
  EXPECT_NE(dynamic_cast<RTE::ArbitraryUnits*>(units.Clone().get()), nullptr);
}
