#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Units/Percentage.h>

#include <gtest/gtest.h>

TEST(Percentage, ValueFractionAndText)
{
  EXPECT_EQ(RTE::Percentage().value(), 0.0);
  EXPECT_EQ(RTE::Percentage(12.5).ToFraction(), 0.125);
  EXPECT_EQ(RTE::Percentage::FromFraction(1.5).value(), 150.0);
  EXPECT_LT(RTE::Percentage(10.0), RTE::Percentage(20.0));
  EXPECT_EQ(RTE::Percentage(12.5).ToString(3), QStringLiteral("12.5 %"));
  EXPECT_EQ(RTE::Percentage(-1.0 / 3.0).ToString(2), QStringLiteral("-0.33 %"));
  EXPECT_EQ(RTE::Percentage::FromString(QStringLiteral("40 %")), RTE::Percentage(40.0));
  EXPECT_EQ(RTE::Percentage::FromString(RTE::Percentage(1.0 / 7.0).ToString(17)), RTE::Percentage(1.0 / 7.0));

  EXPECT_THROW(RTE::Percentage{HUGE_VAL}, RTE::InvalidArgumentError);
  EXPECT_THROW(RTE::Percentage{std::nan("")}, RTE::InvalidArgumentError);
  EXPECT_THROW(RTE::Percentage::FromString(QStringLiteral("40%")), RTE::PostconditionFailed);
  EXPECT_THROW(RTE::Percentage::FromString(QStringLiteral("x %")), RTE::InvalidArgumentError);
  try
  {
    RTE::Percentage::FromString(QStringLiteral("40 pct"));
    ADD_FAILURE() << "accepted";
  }
  catch (const RTE::PostconditionFailed&)
  {
    ADD_FAILURE() << "wrong exception";
  }
  catch (const RTE::Exception& e)
  {
    EXPECT_EQ(e.message(),
              QStringLiteral("Unknown unit - Don't know how to convert the given string '40 pct' into a percentage."));
  }
}
