#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Units/CrankAngle.h>

#include "UnitsTestHelpers.h"

#include <gtest/gtest.h>

using RTE::CrankAngle;
using RTE::DegreesPerCycle;

TEST(CrankAngle, DegreesPerCycleAndRangeCheck)
{
  EXPECT_EQ(DegreesPerCycle().value(), 360.0);
  EXPECT_EQ(MessageOf<RTE::InvalidArgumentError>([] { DegreesPerCycle(540.0); }), "Value is not 360 or 720: 540");

  const QString outside =
      QStringLiteral("Crank angle %1\u00b0 is not in the allowed range between %2\u00b0 and %3\u00b0.");
  struct Case
  {
    double angle;
    double degrees;
    QString error; // empty when valid
  };
  const Case cases[] = {
      {-360.0, 720.0, {}},
      {359.999, 720.0, {}},
      {360.0, 720.0, outside.arg(QStringLiteral("360"), QStringLiteral("-360"), QStringLiteral("360"))},
      {-360.5, 720.0, outside.arg(QStringLiteral("-360.5"), QStringLiteral("-360"), QStringLiteral("360"))},
      {-180.0, 360.0, {}},
      {180.0, 360.0, outside.arg(QStringLiteral("180"), QStringLiteral("-180"), QStringLiteral("180"))},
      {std::nan(""), 360.0, outside.arg(QStringLiteral("nan"), QStringLiteral("-180"), QStringLiteral("180"))},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.angle);
    const QString error = MessageOf<RTE::InvalidArgumentError>(
        [&] { EXPECT_EQ(double(CrankAngle(c.angle, DegreesPerCycle(c.degrees))), c.angle); });
    EXPECT_EQ(error, c.error.isEmpty() ? "<no exception>" : c.error);
  }
}

TEST(CrankAngle, AssignmentComparisonAndWrapping)
{
  CrankAngle a;
  a = 179.0;
  EXPECT_THROW(a = 180.0, RTE::InvalidArgumentError);
  EXPECT_EQ(double(a), 179.0); // unchanged by the refused assignment
  EXPECT_NE(CrankAngle(10.0, DegreesPerCycle(360.0)), CrankAngle(10.0, DegreesPerCycle(720.0)));

  const DegreesPerCycle four(720.0);
  for (const auto& [in, out] : {std::pair{400.0, -320.0}, std::pair{360.0, -360.0}, std::pair{-361.0, 359.0},
                                std::pair{-10.0, -10.0}, std::pair{1440.5, 0.5}})
  {
    SCOPED_TRACE(in);
    EXPECT_DOUBLE_EQ(double(CrankAngle::wrapped(in, four)), out);
  }
  EXPECT_THROW(CrankAngle::wrapped(HUGE_VAL, four), RTE::InvalidArgumentError);
}
