#include "UnitsRegistryFixture.h"

#include "LogCapture.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Units/ArbitraryUnits.h>
#include <Core/Common/Units/DiopterUnits.h>
#include <Core/Common/Units/LengthUnits.h>
#include <Core/Common/Units/TimeUnits.h>

#include <thread>
#include <vector>

namespace
{

const QStringList defaultTypes{
    QStringLiteral("Acceleration"), QStringLiteral("Angle"),     QStringLiteral("Concentration"),
    QStringLiteral("Force"),        QStringLiteral("Frequency"), QStringLiteral("Length"),
    QStringLiteral("Parts-per"),    QStringLiteral("Pressure"),  QStringLiteral("StrainAcceleration"),
    QStringLiteral("StrainRate"),   QStringLiteral("Strain"),    QStringLiteral("TemperaturePrecision"),
    QStringLiteral("Temperature"),  QStringLiteral("Time"),      QStringLiteral("Velocity")};

} // namespace

using UnitsRegistryTest = UnitsRegistryFixture;

TEST_F(UnitsRegistryTest, DefaultSetsInRegistrationOrder)
{
  EXPECT_EQ(registry.getTypeIdentifiers(), defaultTypes);
  for (const char* notDefault :
       {"Diopter", "Dimensionless", "Raman Shift", "StrainRate2", "SwirlingStrengthDimensionless",
        "SwirlingStrengthDimensionful", "EmptyUnits", "ArbitraryUnits"})
  {
    SCOPED_TRACE(notDefault);
    EXPECT_FALSE(registry.contains(u8(notDefault)));
  }
  // Registering the defaults again changes nothing.
  RTE::registerDefaultUnits();
  EXPECT_EQ(registry.getTypeIdentifiers(), defaultTypes);
}

TEST_F(UnitsRegistryTest, SharedAndPlainInstanceAreTheSameObject)
{
  EXPECT_EQ(RTE::UnitsRegistry::getSharedInstance().get(), &RTE::UnitsRegistry::getInstance());
  std::vector<const RTE::UnitsRegistry*> seen(4);
  std::vector<std::thread> threads;
  for (size_t i = 0; i < seen.size(); ++i)
    threads.emplace_back([&seen, i] { seen[i] = RTE::UnitsRegistry::getSharedInstance().get(); });
  for (std::thread& thread : threads)
    thread.join();
  for (const RTE::UnitsRegistry* instance : seen)
    EXPECT_EQ(instance, &registry);
}

TEST_F(UnitsRegistryTest, FirstRegistrationOfATypeWins)
{
  auto changedTime = std::make_unique<RTE::TimeUnits>();
  changedTime->SetTargetUnit(QStringLiteral("ms"), QStringLiteral("millis"), 0.5, 0.0);
  LogCapture capture("Core.Units");
  registry.registerUnits(std::move(changedTime));
  EXPECT_EQ(registry.getTypeIdentifiers(), defaultTypes);
  EXPECT_EQ(registry.getLabelForUnitId(QStringLiteral("ms")), QStringLiteral("ms"));
  EXPECT_DOUBLE_EQ(registry.findScale(QStringLiteral("s"), QStringLiteral("ms")).getFactor(), 1000.0);
  EXPECT_EQ(capture.messages().size(), 1);

  registry.registerUnits(nullptr);
  EXPECT_EQ(registry.getTypeIdentifiers().size(), defaultTypes.size());

  registry.registerUnits(std::make_unique<RTE::DiopterUnits>());
  EXPECT_EQ(registry.getTypeIdentifiers().last(), QStringLiteral("Diopter"));
  EXPECT_TRUE(registry.containsUnitId(QStringLiteral("mdpt")));
}

TEST_F(UnitsRegistryTest, GetUnitsFindsTheSetOrThrowsNamingTheId)
{
  EXPECT_EQ(registry.getUnits(u8("µs")).GetTypeIdentifier(), QStringLiteral("Time"));
  EXPECT_EQ(registry.getUnits(QStringLiteral("psi")).GetTypeIdentifier(), QStringLiteral("Pressure"));
  EXPECT_EQ(MessageOf<RTE::InvalidArgumentError>([&] { (void)registry.getUnits(QStringLiteral("furlong")); }),
            "No units object with the given unit id (furlong) found.");
  // Ids differing only in case are different units.
  EXPECT_THROW((void)registry.getUnits(QStringLiteral("MM")), RTE::InvalidArgumentError);
}

TEST_F(UnitsRegistryTest, FilterOfARegisteredSetAppliesToQueries)
{
  registry.getUnits(QStringLiteral("mm")).SetFilter({QStringLiteral("mm"), QStringLiteral("cm")});
  EXPECT_FALSE(registry.containsUnitId(QStringLiteral("in")));
  EXPECT_TRUE(registry.containsUnitId(QStringLiteral("in"), true));
  EXPECT_THROW((void)registry.getUnits(QStringLiteral("in")), RTE::InvalidArgumentError);
  EXPECT_EQ(registry.getUnits(QStringLiteral("in"), true).GetTypeIdentifier(), QStringLiteral("Length"));
  EXPECT_EQ(registry.getLabelsForUnitId(QStringLiteral("cm")),
            (QStringList{QStringLiteral("mm"), QStringLiteral("cm")}));
  EXPECT_EQ(registry.getBaseUnitForUnitId(QStringLiteral("in")), QStringLiteral("in"));
  EXPECT_EQ(registry.getBaseUnitForUnitId(QStringLiteral("in"), true), QStringLiteral("m"));
  EXPECT_EQ(registry.findScale(QStringLiteral("in"), QStringLiteral("mm")).getFactor(), 1.0);
  EXPECT_DOUBLE_EQ(registry.findScale(QStringLiteral("in"), QStringLiteral("mm"), true).getFactor(), 25.4);
}

TEST_F(UnitsRegistryTest, FindScaleAndIsSameUnitsFallBackForIdsOfDifferentSets)
{
  const Zn::LinearScale identity(1.0, 0.0, QString(), QString());
  EXPECT_EQ(registry.findScale(QStringLiteral("mm"), QStringLiteral("Hz")), identity);
  EXPECT_EQ(registry.findScale(QStringLiteral("furlong"), QStringLiteral("mm")), identity);
  EXPECT_EQ(registry.findScale(QStringLiteral("mm"), QStringLiteral("furlong")), identity);

  const Zn::LinearScale celsiusToKelvin = registry.findScale(u8("°C"), QStringLiteral("K"));
  EXPECT_EQ(celsiusToKelvin, Zn::LinearScale(1.0, 273.15, QStringLiteral("K"), QString()));
  EXPECT_EQ(registry.findScale(QStringLiteral("K"), u8("°C")).getOffset(), -273.15);
  // Same label, different sets: no conversion between absolute and difference temperatures.
  EXPECT_EQ(registry.findScale(u8("°C"), QStringLiteral("CPrecision")), identity);
  EXPECT_TRUE(registry.isSameUnits(QStringLiteral("mm"), QStringLiteral("ft")));
  EXPECT_FALSE(registry.isSameUnits(QStringLiteral("mm"), QStringLiteral("ms")));
  EXPECT_FALSE(registry.isSameUnits(u8("°C"), QStringLiteral("CPrecision")));
  EXPECT_TRUE(registry.isSameUnits(QStringLiteral("frame"), QStringLiteral("frame")));
  EXPECT_FALSE(registry.isSameUnits(QStringLiteral("frame"), QStringLiteral("mm")));
  EXPECT_FALSE(registry.isSameUnits(QStringLiteral("frame"), QStringLiteral("frames")));
}

TEST_F(UnitsRegistryTest, LabelQueriesAndTheirFallbacks)
{
  EXPECT_EQ(registry.getLabelForUnitId(QStringLiteral("m/s^2")), u8("m/s²"));
  EXPECT_EQ(registry.getLabelForUnitId(QStringLiteral("CPrecision")), u8("°C"));
  EXPECT_EQ(registry.getLabelForUnitId(QStringLiteral("furlong")), QStringLiteral("furlong"));
  EXPECT_EQ(registry.getLabelsForUnitId(QStringLiteral("kN")),
            (QStringList{QStringLiteral("N"), QStringLiteral("mN"), QStringLiteral("kN"), QStringLiteral("MN"),
                         QStringLiteral("GN")}));
  EXPECT_TRUE(registry.getLabelsForUnitId(QStringLiteral("furlong")).isEmpty());
  EXPECT_EQ(registry.getBaseUnitForUnitId(u8("µm/s^2")), QStringLiteral("m/s^2"));
  EXPECT_EQ(registry.getBaseUnitForUnitId(QStringLiteral("furlong")), QStringLiteral("furlong"));

  EXPECT_EQ(registry.getPluralUnitLabel(QStringLiteral("voxel")), QStringLiteral("voxels"));
  EXPECT_EQ(registry.getPluralUnitLabel(QStringLiteral("pixel")), QStringLiteral("pixels"));
  EXPECT_EQ(registry.getPluralUnitLabel(QStringLiteral("ms")), QStringLiteral("ms"));
  EXPECT_EQ(registry.getPluralUnitLabel(QStringLiteral("1/s^2")), u8("1/s²"));
  EXPECT_EQ(registry.getPluralUnitLabel(QStringLiteral("frame")), QStringLiteral("frames"));
}

TEST_F(UnitsRegistryTest, ClearRemovesEverySet)
{
  registry.clear();
  EXPECT_TRUE(registry.getTypeIdentifiers().isEmpty());
  EXPECT_FALSE(registry.containsUnitId(QStringLiteral("mm"), true));
  EXPECT_EQ(registry.getLabelForUnitId(QStringLiteral("mm")), QStringLiteral("mm"));
  EXPECT_EQ(registry.getEmptyUnits().GetBaseUnit().label, QStringLiteral("Off"));
  // A cleared registry takes a changed set of a type it had before.
  auto time = std::make_unique<RTE::TimeUnits>();
  time->RemoveTargetUnit(QStringLiteral("h"));
  registry.registerUnits(std::move(time));
  EXPECT_FALSE(registry.containsUnitId(QStringLiteral("h"), true));
}

TEST_F(UnitsRegistryTest, RateBasedUnits)
{
  struct Case
  {
    const char* id;
    bool acceleration;
    bool velocity;
  };
  const Case cases[] = {{"m/s^2", true, false}, {"µm/s^2", true, false},  {"1/s^2", true, false},
                        {"mm/s", false, true},  {"µm/s", false, true},    {"1/s", false, true},
                        {"mm", false, false},   {"cm/s^2", false, false}, {"S^2", false, false}};
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.id);
    EXPECT_EQ(RTE::isAccelerationBasedUnit(u8(c.id)), c.acceleration);
    EXPECT_EQ(RTE::isVelocityBasedUnit(u8(c.id)), c.velocity);
  }
  // The filter applies.
  registry.getUnits(QStringLiteral("mm/s")).SetFilter({QStringLiteral("m/s")});
  EXPECT_FALSE(RTE::isVelocityBasedUnit(QStringLiteral("mm/s")));
  registry.clear();
  EXPECT_FALSE(RTE::isAccelerationBasedUnit(QStringLiteral("m/s^2")));
  // Only the named kinds count, not any set holding the id.
  registry.registerUnits(std::make_unique<RTE::ArbitraryUnits>(QStringLiteral("1/s"))); // not "StrainRate"
  EXPECT_FALSE(RTE::isVelocityBasedUnit(QStringLiteral("1/s")));
}
