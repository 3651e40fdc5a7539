#include <Zn/Utils/Algorithm.h>
#include <Zn/Utils/Constrained.h>
#include <Zn/Utils/Interval.h>
#include <Zn/Utils/LinearScale.h>
#include <Zn/Utils/NamedParm.h>
#include <Zn/Utils/Unicode.h>

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

TEST(LinearScale, ScalesAndCopies)
{
  const Zn::LinearScale identity;
  EXPECT_EQ(identity.getFactor(), 1.0);
  EXPECT_EQ(identity.getOffset(), 0.0);
  EXPECT_TRUE(identity.getUnit().isEmpty());
  EXPECT_EQ(identity.getScaled(12.5), 12.5);

  const Zn::LinearScale celsiusToKelvin(1.0, 273.15, QStringLiteral("K"), QStringLiteral("to kelvin"));
  EXPECT_DOUBLE_EQ(celsiusToKelvin.getScaled(20.0), 293.15);
  const Zn::LinearScale mmToM(0.001, 0.0, QStringLiteral("m"), QString());
  EXPECT_DOUBLE_EQ(mmToM.getScaled(1500.0), 1.5);

  Zn::LinearScale target;
  target.set(celsiusToKelvin);
  EXPECT_EQ(target, celsiusToKelvin);
  EXPECT_EQ(target.getDescription(), QStringLiteral("to kelvin"));
  EXPECT_NE(target, mmToM);
}

TEST(Unicode, SuperscriptsBuildUnitLabels)
{
  EXPECT_EQ(QStringLiteral("m/s%1").arg(Zn::Unicode::square()), QString::fromUtf8("m/s\u00B2"));
  EXPECT_EQ(QStringLiteral("S%1").arg(Zn::Unicode::superscriptFour()), QString::fromUtf8("S\u2074"));
}

TEST(ValueTemplates, ConstrainedNamedParmIntervalAndSorting)
{
  using Count = Zn::Constrained<std::uint32_t, Zn::NotZero>;
  EXPECT_EQ(Count(3600).get(), 3600u);
  EXPECT_THROW(Count(0), std::invalid_argument);

  struct ExposureTag
  {
  };
  using Exposure = Zn::NamedParm<std::uint64_t, ExposureTag>;
  EXPECT_LT(Exposure(3), Exposure(4));
  EXPECT_EQ(Exposure(9).get(), 9u);

  const Zn::Interval<double> closed(1.0, 2.0);
  EXPECT_TRUE(closed.contains(1.0));
  EXPECT_TRUE(closed.contains(2.0));
  EXPECT_FALSE(closed.contains(2.0000001));
  const Zn::Interval<double> from(1.0, std::nullopt);
  EXPECT_TRUE(from.contains(1e300));
  EXPECT_FALSE(from.contains(0.5));
  const Zn::Interval<double> upTo(std::nullopt, 1.0);
  EXPECT_TRUE(upTo.contains(-1e300));
  EXPECT_FALSE(upTo.contains(1.5));
  EXPECT_TRUE(Zn::Interval<double>().contains(0.0));

  EXPECT_TRUE(Zn::isSorted(std::vector<int>{1, 1, 2, 5}));
  EXPECT_FALSE(Zn::isSorted(std::vector<int>{1, 3, 2}));
  EXPECT_TRUE(Zn::isSorted(std::vector<int>{}));
}
