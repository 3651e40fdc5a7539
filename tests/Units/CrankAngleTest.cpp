#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Units/CrankAngle.h>

#include <gtest/gtest.h>

using RTE::CrankAngle;
using RTE::DegreesPerCycle;

namespace
{

QString rangeMessage(const char* angle, const char* low, const char* high)
{
  return QStringLiteral("Crank angle %1\u00b0 is not in the allowed range between %2\u00b0 and %3\u00b0.")
      .arg(QLatin1String(angle), QLatin1String(low), QLatin1String(high));
}

} // namespace

TEST(DegreesPerCycle, AcceptsOnlyTwoAndFourStroke)
{
  EXPECT_EQ(DegreesPerCycle().value(), 360.0);
  EXPECT_EQ(DegreesPerCycle(720.0).value(), 720.0);
  for (double wrong : {540.0, 0.0, 359.999, -360.0})
  {
    SCOPED_TRACE(wrong);
    try
    {
      DegreesPerCycle d(wrong);
      ADD_FAILURE() << "accepted " << d.value();
    }
    catch (const RTE::InvalidArgumentError& e)
    {
      EXPECT_EQ(e.message(), QStringLiteral("Value is not 360 or 720: %1").arg(QString::number(wrong, 'g')));
    }
  }
}

TEST(CrankAngle, RangeCheckExcludesUpperEnd)
{
  const DegreesPerCycle four(720.0);
  const DegreesPerCycle two(360.0);
  struct Case
  {
    double angle;
    DegreesPerCycle d;
    QString error; // empty when valid
  };
  const Case cases[] = {
      {-360.0, four, {}},
      {359.999, four, {}},
      {360.0, four, rangeMessage("360", "-360", "360")},
      {-360.5, four, rangeMessage("-360.5", "-360", "360")},
      {-180.0, two, {}},
      {180.0, two, rangeMessage("180", "-180", "180")},
      {std::nan(""), two, rangeMessage("nan", "-180", "180")},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.angle);
    try
    {
      const CrankAngle a(c.angle, c.d);
      EXPECT_TRUE(c.error.isEmpty());
      EXPECT_EQ(double(a), c.angle);
      EXPECT_EQ(a.degreesPerCycle(), c.d);
    }
    catch (const RTE::InvalidArgumentError& e)
    {
      EXPECT_EQ(e.message(), c.error);
    }
  }
}

TEST(CrankAngle, AssignmentComparisonAndWrapping)
{
  CrankAngle a;
  EXPECT_EQ(double(a), 0.0);
  EXPECT_EQ(a.degreesPerCycle().value(), 360.0);

  a = 179.0;
  EXPECT_EQ(double(a), 179.0);
  EXPECT_THROW(a = 180.0, RTE::InvalidArgumentError);
  EXPECT_EQ(double(a), 179.0); // unchanged by the rejected assignment

  EXPECT_EQ(CrankAngle(10.0, DegreesPerCycle(360.0)), CrankAngle(10.0, DegreesPerCycle(360.0)));
  EXPECT_NE(CrankAngle(10.0, DegreesPerCycle(360.0)), CrankAngle(10.0, DegreesPerCycle(720.0)));
  EXPECT_NE(CrankAngle(10.0, DegreesPerCycle(360.0)), CrankAngle(11.0, DegreesPerCycle(360.0)));

  const DegreesPerCycle four(720.0);
  struct Case
  {
    double in;
    double out;
  };
  for (const Case& c : {Case{400.0, -320.0}, Case{360.0, -360.0}, Case{-361.0, 359.0}, Case{1800.0, 360.0 - 720.0},
                        Case{-10.0, -10.0}, Case{1440.5, 0.5}})
  {
    SCOPED_TRACE(c.in);
    EXPECT_DOUBLE_EQ(double(CrankAngle::wrapped(c.in, four)), c.out);
  }
  EXPECT_THROW(CrankAngle::wrapped(HUGE_VAL, four), RTE::InvalidArgumentError);
}
