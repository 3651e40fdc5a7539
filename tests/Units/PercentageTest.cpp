#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Units/Percentage.h>

#include <gtest/gtest.h>

TEST(Percentage, ValueFractionAndText)
{
  EXPECT_EQ(RTE::Percentage(12.5).ToFraction(), 0.125);
  EXPECT_EQ(RTE::Percentage::FromFraction(1.5).value(), 150.0);
  EXPECT_EQ(RTE::Percentage(-1.0 / 3.0).ToString(2), QStringLiteral("-0.33 %"));
  EXPECT_EQ(RTE::Percentage::FromString(RTE::Percentage(1.0 / 7.0).ToString(17)), RTE::Percentage(1.0 / 7.0));
  EXPECT_THROW(RTE::Percentage{HUGE_VAL}, RTE::InvalidArgumentError);
  EXPECT_THROW(RTE::Percentage::FromString(QStringLiteral("40%")), RTE::PostconditionFailed);
  EXPECT_THROW(RTE::Percentage::FromString(QStringLiteral("x %")), RTE::InvalidArgumentError);
  EXPECT_THROW(RTE::Percentage::FromString(QStringLiteral("40 pct")), RTE::Exception);
}
