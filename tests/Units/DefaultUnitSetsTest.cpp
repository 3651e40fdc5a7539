// Every predefined unit set against an independent copy of its table: type, base unit,
// targets in order with exact labels, factors and offsets. Ids and labels are written in
// UTF-8 here, as a user types them.
#include <Core/Common/Units/AccelerationUnits.h>
#include <Core/Common/Units/AngleUnits.h>
#include <Core/Common/Units/ConcentrationUnits.h>
#include <Core/Common/Units/DimensionlessUnits.h>
#include <Core/Common/Units/DiopterUnits.h>
#include <Core/Common/Units/EmptyUnits.h>
#include <Core/Common/Units/ForceUnits.h>
#include <Core/Common/Units/FrequencyUnits.h>
#include <Core/Common/Units/LengthUnits.h>
#include <Core/Common/Units/PartsPerUnit.h>
#include <Core/Common/Units/PressureUnits.h>
#include <Core/Common/Units/RamanShiftUnits.h>
#include <Core/Common/Units/StrainAccelerationUnits.h>
#include <Core/Common/Units/StrainRate2Units.h>
#include <Core/Common/Units/StrainRateUnits.h>
#include <Core/Common/Units/StrainUnits.h>
#include <Core/Common/Units/SwirlingStrengthDimensionfulUnits.h>
#include <Core/Common/Units/SwirlingStrengthDimensionlessUnits.h>
#include <Core/Common/Units/TemperaturePrecisionUnits.h>
#include <Core/Common/Units/TemperatureUnits.h>
#include <Core/Common/Units/TimeUnits.h>
#include <Core/Common/Units/VelocityUnits.h>

#include "UnitsTestHelpers.h"

#include <gtest/gtest.h>

#include <functional>
#include <vector>

namespace
{

struct Expected
{
  const char* id;
  const char* label;
  double factor;
  double offset;
};

struct SetCase
{
  std::function<std::unique_ptr<RTE::Units>()> make;
  const char* type;
  Expected base;
  std::vector<Expected> targets;
};

template <typename T>
std::function<std::unique_ptr<RTE::Units>()> maker()
{
  return [] { return std::make_unique<T>(); };
}

const std::vector<SetCase>& allSets()
{
  static const std::vector<SetCase> sets{
      {maker<RTE::AccelerationUnits>(),
       "Acceleration",
       {"m/s^2", "m/s²", 1, 0},
       {{"mm/s^2", "mm/s²", 0.001, 0}, {"µm/s^2", "µm/s²", 1e-6, 0}}},
      {maker<RTE::AngleUnits>(), "Angle", {"rad", "rad", 1, 0}, {{"°", "°", 3.14159265358979323846 / 180.0, 0}}},
      {maker<RTE::ConcentrationUnits>(), "Concentration", {"pH", "pH", 1, 0}, {}},
      {maker<RTE::DimensionlessUnits>(), "Dimensionless", {"", "", 1, 0}, {}},
      {maker<RTE::DiopterUnits>(), "Diopter", {"dpt", "dpt", 1, 0}, {{"mdpt", "mdpt", 0.001, 0}}},
      {maker<RTE::EmptyUnits>(), "EmptyUnits", {"None", "Off", 1, 0}, {}},
      {maker<RTE::ForceUnits>(),
       "Force",
       {"N", "N", 1, 0},
       {{"mN", "mN", 0.001, 0}, {"kN", "kN", 1000, 0}, {"MN", "MN", 1e6, 0}, {"GN", "GN", 1e9, 0}}},
      {maker<RTE::FrequencyUnits>(),
       "Frequency",
       {"Hz", "Hz", 1, 0},
       {{"kHz", "kHz", 1000, 0}, {"MHz", "MHz", 1e6, 0}, {"GHz", "GHz", 1e9, 0}}},
      {maker<RTE::LengthUnits>(),
       "Length",
       {"m", "m", 1, 0},
       {{"mm", "mm", 0.001, 0},
        {"µm", "µm", 1e-6, 0},
        {"cm", "cm", 0.01, 0},
        {"in", "in", 0.0254, 0},
        {"ft", "ft", 0.3048, 0}}},
      {maker<RTE::PartsPerUnit>(),
       "Parts-per",
       {"ppm", "ppm", 1, 0},
       {{"ppb", "ppb", 0.001, 0}, {"ppt", "ppt", 1e-6, 0}, {"ppq", "ppq", 1e-9, 0}}},
      {maker<RTE::PressureUnits>(),
       "Pressure",
       {"Pa", "Pa", 1, 0},
       {{"mPa", "mPa", 0.001, 0},
        {"kPa", "kPa", 1000, 0},
        {"MPa", "MPa", 1e6, 0},
        {"GPa", "GPa", 1e9, 0},
        {"mbar", "mbar", 100, 0},
        {"bar", "bar", 100000, 0},
        {"kbar", "kbar", 1e8, 0},
        {"psi", "psi", 6894.65, 0}}},
      {maker<RTE::RamanShiftUnits>(), "Raman Shift", {"1/cm", "1/cm", 1, 0}, {}},
      {maker<RTE::StrainAccelerationUnits>(), "StrainAcceleration", {"1/s^2", "1/s²", 1, 0}, {}},
      {maker<RTE::StrainRateUnits>(), "StrainRate", {"1/s", "1/s", 1, 0}, {}},
      {maker<RTE::StrainRate2Units>(), "StrainRate2", {"S^2", "S²", 1, 0}, {{"%_StrainRate", "%", 0.01, 0}}},
      {maker<RTE::StrainUnits>(),
       "Strain",
       {"S", "S", 1, 0},
       {{"µS", "µS", 1e-6, 0}, {"mS", "mS", 0.001, 0}, {"%_Strain", "%", 0.01, 0}}},
      {maker<RTE::SwirlingStrengthDimensionlessUnits>(),
       "SwirlingStrengthDimensionless",
       {"S^4", "S⁴", 1, 0},
       {{"%_SwirlingStrength", "%", 0.01, 0}}},
      {maker<RTE::SwirlingStrengthDimensionfulUnits>(), "SwirlingStrengthDimensionful", {"1/s^4", "1/s⁴", 1, 0}, {}},
      {maker<RTE::TemperatureUnits>(), "Temperature", {"K", "K", 1, 0}, {{"°C", "°C", 1, 273.15}}},
      {maker<RTE::TemperaturePrecisionUnits>(),
       "TemperaturePrecision",
       {"KPrecision", "K", 1, 0},
       {{"CPrecision", "°C", 1, 0}}},
      {maker<RTE::TimeUnits>(),
       "Time",
       {"s", "s", 1, 0},
       {{"ms", "ms", 0.001, 0},
        {"µs", "µs", 1e-6, 0},
        {"ns", "ns", 1e-9, 0},
        {"ps", "ps", 1e-12, 0},
        {"min", "min", 60, 0},
        {"h", "h", 3600, 0}}},
      {maker<RTE::VelocityUnits>(),
       "Velocity",
       {"m/s", "m/s", 1, 0},
       {{"mm/s", "mm/s", 0.001, 0}, {"µm/s", "µm/s", 1e-6, 0}}},
  };
  return sets;
}

} // namespace

TEST(DefaultUnitSets, EveryUnitWithItsLabelFactorOffsetAndPosition)
{
  for (const SetCase& c : allSets())
  {
    SCOPED_TRACE(c.type);
    const std::unique_ptr<RTE::Units> units = c.make();
    EXPECT_EQ(units->GetTypeIdentifier(), u8(c.type));
    EXPECT_EQ(units->GetBaseUnit(), RTE::Unit(u8(c.base.id), u8(c.base.label), 1.0, 0.0, 0.0));

    const QList<RTE::Unit> all = units->GetAllUnits();
    ASSERT_EQ(all.size(), static_cast<qsizetype>(c.targets.size() + 1));
    EXPECT_EQ(units->GetUnitCount(), c.targets.size() + 1);
    for (size_t i = 0; i < c.targets.size(); ++i)
    {
      const Expected& e = c.targets[i];
      SCOPED_TRACE(e.id);
      // Exact: a wrong digit in any factor or offset must show.
      EXPECT_EQ(all[static_cast<qsizetype>(i + 1)],
                RTE::Unit(u8(e.id), u8(e.label), e.factor, e.offset, static_cast<double>(i + 1)));
    }
    EXPECT_TRUE(units->GetFilter().isEmpty());

    const std::unique_ptr<RTE::Units> clone = units->Clone();
    EXPECT_EQ(clone->GetTypeIdentifier(), units->GetTypeIdentifier());
    EXPECT_EQ(clone->GetAllUnits(true), all);
  }
}

namespace
{

// The static members are written apart from the sets' own tables: the type member must
// name the set and the id members its units in order (whose texts are checked above).
template <typename T>
void expectMembers(const QStringList& ids)
{
  const T units;
  SCOPED_TRACE(units.GetTypeIdentifier().toStdString());
  EXPECT_EQ(T::TypeIdentifier, units.GetTypeIdentifier());
  if (!ids.isEmpty())
  {
    EXPECT_EQ(ids, units.GetAllUnitIds());
  }
}

} // namespace

TEST(DefaultUnitSets, StaticMembersNameTheSetsAndTheirUnits)
{
  using namespace RTE;
  expectMembers<AccelerationUnits>({AccelerationUnits::MeterPerSecond2, AccelerationUnits::MillimeterPerSecond2,
                                    AccelerationUnits::MicrometerPerSecond2});
  expectMembers<AngleUnits>({AngleUnits::Radian, AngleUnits::Degree});
  expectMembers<ConcentrationUnits>({ConcentrationUnits::pH});
  expectMembers<DimensionlessUnits>({DimensionlessUnits::Dimensionless});
  expectMembers<DiopterUnits>({DiopterUnits::Diopter, DiopterUnits::MilliDiopter});
  expectMembers<EmptyUnits>({});
  expectMembers<ForceUnits>({ForceUnits::Newton, ForceUnits::MilliNewton, ForceUnits::KiloNewton,
                             ForceUnits::MegaNewton, ForceUnits::GigaNewton});
  expectMembers<FrequencyUnits>(
      {FrequencyUnits::Hertz, FrequencyUnits::Kilohertz, FrequencyUnits::Megahertz, FrequencyUnits::Gigahertz});
  expectMembers<LengthUnits>({LengthUnits::Meter, LengthUnits::Millimeter, LengthUnits::Micrometer,
                              LengthUnits::Centimeter, LengthUnits::Inch, LengthUnits::Foot});
  expectMembers<PartsPerUnit>({PartsPerUnit::PartsPerMillion, PartsPerUnit::PartsPerBillion,
                               PartsPerUnit::PartsPerTrillion, PartsPerUnit::PartsPerQuadrillion});
  expectMembers<PressureUnits>({PressureUnits::Pascal, PressureUnits::Millipascal, PressureUnits::Kilopascal,
                                PressureUnits::Megapascal, PressureUnits::Gigapascal, PressureUnits::Millibar,
                                PressureUnits::Bar, PressureUnits::Kilobar, PressureUnits::PSI});
  expectMembers<RamanShiftUnits>({RamanShiftUnits::RamanShift});
  expectMembers<StrainAccelerationUnits>({StrainAccelerationUnits::OnePerSecond2});
  expectMembers<StrainRateUnits>({StrainRateUnits::OnePerSecond});
  expectMembers<StrainRate2Units>({StrainRate2Units::StrainSquared, StrainRate2Units::Percent});
  expectMembers<StrainUnits>(
      {StrainUnits::Strain, StrainUnits::MicroStrain, StrainUnits::MilliStrain, StrainUnits::PercentStrain});
  expectMembers<SwirlingStrengthDimensionlessUnits>(
      {SwirlingStrengthDimensionlessUnits::StrainFourthPower, SwirlingStrengthDimensionlessUnits::Percent});
  expectMembers<SwirlingStrengthDimensionfulUnits>({SwirlingStrengthDimensionfulUnits::OnePerSecond4});
  expectMembers<TemperatureUnits>({TemperatureUnits::Kelvin, TemperatureUnits::Celsius});
  expectMembers<TemperaturePrecisionUnits>(
      {TemperaturePrecisionUnits::KelvinPrecisionId, TemperaturePrecisionUnits::CelsiusPrecisionId});
  expectMembers<TimeUnits>({TimeUnits::Second, TimeUnits::Millisecond, TimeUnits::Microsecond, TimeUnits::Nanosecond,
                            TimeUnits::Picosecond, TimeUnits::Minute, TimeUnits::Hour});
  expectMembers<VelocityUnits>(
      {VelocityUnits::MeterPerSecond, VelocityUnits::MillimeterPerSecond, VelocityUnits::MicrometerPerSecond});

  // Declared for other parts of the system, but not units of their sets.
  EXPECT_EQ(AccelerationUnits::CentimeterPerSecond2, u8("cm/s^2"));
  EXPECT_EQ((QStringList{LengthUnits::Pixel, LengthUnits::Voxel, LengthUnits::Point}),
            (QStringList{"pixel", "voxel", "pt"}));
  EXPECT_FALSE(AccelerationUnits().ContainsUnitId(AccelerationUnits::CentimeterPerSecond2, true));
  for (const QString& id : {LengthUnits::Pixel, LengthUnits::Voxel, LengthUnits::Point})
    EXPECT_FALSE(LengthUnits().ContainsUnitId(id, true));
}
