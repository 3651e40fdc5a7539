#include <Core/Common/Units/StopWatch.h>

#include <gtest/gtest.h>

#include <thread>

// Only orderings are checked, never durations: the machine's load decides those.
TEST(StopWatch, RunsStopsAndResets)
{
  RTE::StopWatch watch;
  EXPECT_TRUE(watch.IsRunning());
  const RTE::TimeSpan first = watch.Elapsed();
  std::this_thread::sleep_for(std::chrono::milliseconds(2));
  const RTE::TimeSpan second = watch.Elapsed();
  EXPECT_GE(first, RTE::TimeSpan());
  EXPECT_GE(second, RTE::MilliSeconds(2));

  watch.Stop();
  EXPECT_FALSE(watch.IsRunning());
  const RTE::TimeSpan frozen = watch.Elapsed();
  EXPECT_GE(frozen, second);
  std::this_thread::sleep_for(std::chrono::milliseconds(1));
  EXPECT_EQ(watch.Elapsed(), frozen);
  watch.Stop();
  EXPECT_EQ(watch.Elapsed(), frozen);

  watch.Start();
  std::this_thread::sleep_for(std::chrono::milliseconds(1));
  EXPECT_GE(watch.Elapsed(), frozen + RTE::MilliSeconds(1)); // continues, not from zero

  watch.Reset();
  EXPECT_FALSE(watch.IsRunning());
  EXPECT_EQ(watch.Elapsed(), RTE::TimeSpan());
  watch.Restart();
  EXPECT_TRUE(watch.IsRunning());
  EXPECT_LT(watch.Elapsed(), frozen + RTE::Seconds(3600));
}
