#include <Core/Common/OperatingSystem/Condition.h>
#include <Core/Common/OperatingSystem/ThreadLimit.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>
#include <vector>

using namespace std::chrono_literals;

TEST(Condition, StaysSignalledUntilReset)
{
  RTE::Condition condition;
  EXPECT_FALSE(condition.IsSignaled());

  const auto start = std::chrono::steady_clock::now();
  EXPECT_FALSE(condition.TimedWait(0));
  EXPECT_FALSE(condition.TimedWait(-5));
  EXPECT_LT(std::chrono::steady_clock::now() - start, 50ms);

  EXPECT_FALSE(condition.TimedWait(30));
  EXPECT_GE(std::chrono::steady_clock::now() - start, 30ms);

  condition.Signal();
  EXPECT_TRUE(condition.IsSignaled());
  EXPECT_TRUE(condition.TimedWait(0));
  condition.Wait(); // returns at once
  EXPECT_TRUE(condition.IsSignaled());

  condition.Reset();
  EXPECT_FALSE(condition.IsSignaled());
  EXPECT_FALSE(condition.TimedWait(0));
}

TEST(Condition, BroadcastReleasesEveryWaiterAndSignalAtLeastOne)
{
  RTE::Condition condition;
  std::atomic<int> released{0};
  std::vector<std::thread> waiters;
  for (int i = 0; i < 4; ++i)
  {
    waiters.emplace_back(
        [&]
        {
          condition.Wait();
          ++released;
        });
  }
  std::this_thread::sleep_for(20ms);
  EXPECT_EQ(released.load(), 0);
  condition.Broadcast();
  for (auto& waiter : waiters)
    waiter.join();
  EXPECT_EQ(released.load(), 4);

  condition.Reset();
  std::thread one([&] { EXPECT_TRUE(condition.TimedWait(10000)); });
  std::this_thread::sleep_for(10ms);
  condition.Signal();
  one.join();
}

TEST(ThreadLimit, AlwaysAnswersOneWorker)
{
  RTE::setMaxThreadCount(16);
  EXPECT_EQ(RTE::getMaxThreadCount(8, false), 1);
  EXPECT_EQ(RTE::getMaxThreadCount(8, true), 1);
  EXPECT_EQ(RTE::getMaxThreadCount(true), 1);
  RTE::setMaxThreadCount(-3);
  EXPECT_EQ(RTE::getMaxThreadCount(0, false), 1);
  EXPECT_EQ(RTE::getMaxThreadCount(false), 1);
  RTE::setMaxThreadCount(1);

  EXPECT_GE(RTE::getProcessorCount(), 1);
  EXPECT_EQ(RTE::getProcessorCount(), static_cast<int>(std::thread::hardware_concurrency()));
}
