#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Units/Rpm.h>

#include "UnitsTestHelpers.h"

#include <gtest/gtest.h>

TEST(Rpm, ChecksAndConvertsRevolutions)
{
  EXPECT_EQ(double(RTE::Rpm(RTE::Hertz(20.0))), 1200.0);
  EXPECT_EQ(RTE::Frequency(RTE::Rpm(1200.0)), RTE::Hertz(20.0));
  EXPECT_EQ(RTE::Rpm(RTE::Frequency::Zero()), RTE::Rpm(0.0));
  for (double wrong : {-0.001, std::nan("")})
  {
    SCOPED_TRACE(wrong);
    EXPECT_EQ(MessageOf<RTE::InvalidArgumentError>([&] { RTE::Rpm{wrong}; }), "Invalid RPM value");
  }
}
