#include <Core/Common/Units/StopWatch.h>

#include <gtest/gtest.h>

#include <thread>

// Only orderings are checked, never durations: the machine's load decides those.
TEST(StopWatch, RunsStopsAndResets)
{
  RTE::StopWatch watch;
  std::this_thread::sleep_for(std::chrono::milliseconds(2));
  EXPECT_GE(watch.Elapsed(), RTE::MilliSeconds(2));
  watch.Stop();
  const RTE::TimeSpan frozen = watch.Elapsed();
  std::this_thread::sleep_for(std::chrono::milliseconds(1));
  EXPECT_EQ(watch.Elapsed(), frozen);
  watch.Start();
  std::this_thread::sleep_for(std::chrono::milliseconds(1));
  EXPECT_GE(watch.Elapsed(), frozen + RTE::MilliSeconds(1)); // continues, not from zero
  watch.Reset();
  EXPECT_FALSE(watch.IsRunning());
  EXPECT_EQ(watch.Elapsed(), RTE::TimeSpan());
}
