#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/OperatingSystem/ActivityControl.h>
#include <Core/Common/OperatingSystem/JobQueue.h>

#include "TestHelpers.h"

#include <gtest/gtest.h>

#include <pthread.h>

#include <atomic>
#include <chrono>
#include <future>
#include <stdexcept>
#include <string>
#include <system_error>
#include <thread>

using namespace std::chrono_literals;

namespace
{

// A job that reports when it started and then holds its worker until released.
struct Gate
{
  std::promise<void> started;
  std::promise<void> release;
  std::shared_future<void> released = release.get_future().share();

  RTE::JobQueue::Job job()
  {
    return [this]
    {
      started.set_value();
      released.wait();
    };
  }
};

std::string currentThreadName()
{
  char name[16] = {};
  pthread_getname_np(pthread_self(), name, sizeof name);
  return name;
}

} // namespace

TEST(JobQueue, RunsEveryQueuedJobOnNamedWorkersBeforeEnding)
{
  RTE::ActivityControl control;
  std::atomic<int> done{0};
  std::atomic<int> misnamed{0};
  {
    RTE::JobQueue queue(RTE::JobQueue::Unlimited, 2, control, QStringLiteral("DeviceDataWriterThread"));
    EXPECT_EQ(queue.ThreadCount(), 2);
    for (int i = 0; i < 1000; ++i)
    {
      EXPECT_TRUE(queue.Enqueue(
          [&]
          {
            if (currentThreadName() != "DeviceDataWrite")
              ++misnamed;
            ++done;
          }));
    }
    // The end markers go behind the queued jobs: every one of them still runs.
    queue.WaitUntilFinished();
    EXPECT_EQ(done.load(), 1000);
    queue.WaitUntilFinished();
    EXPECT_THROW(queue.Enqueue([] {}), RTE::InvalidRequest);
  }
  EXPECT_EQ(misnamed.load(), 0);
  EXPECT_FALSE(control.isCanceled());

  RTE::JobQueue single(4, 0, control);
  EXPECT_EQ(single.ThreadCount(), 1);
  EXPECT_THROW(single.Enqueue(RTE::JobQueue::Job()), RTE::InvalidArgumentError);
  EXPECT_THROW(RTE::JobQueue(0, 1, control), RTE::InvalidArgumentError);
}

TEST(JobQueue, FullQueueBlocksTheProducerUntilAJobIsTaken)
{
  RTE::ActivityControl control;
  RTE::JobQueue queue(2, 1, control);
  Gate gate;
  std::atomic<int> done{0};
  ASSERT_TRUE(queue.Enqueue(gate.job()));
  gate.started.get_future().wait(); // the worker holds the gate; the queue is empty
  ASSERT_TRUE(queue.Enqueue([&] { ++done; }));
  ASSERT_TRUE(queue.Enqueue([&] { ++done; }));

  auto third = std::async(std::launch::async, [&] { return queue.Enqueue([&] { ++done; }); });
  EXPECT_EQ(third.wait_for(100ms), std::future_status::timeout);
  gate.release.set_value();
  EXPECT_TRUE(third.get());
  queue.WaitUntilFinished();
  EXPECT_EQ(done.load(), 3);
}

TEST(JobQueue, FirstFailureCancelsTheQueueAndIsRethrown)
{
  RTE::ActivityControl control;
  RTE::JobQueue queue(RTE::JobQueue::Unlimited, 1, control);
  Gate gate;
  std::atomic<int> ranAfterFailure{0};
  ASSERT_TRUE(queue.Enqueue(gate.job()));
  ASSERT_TRUE(queue.Enqueue([] { RTE::Raise(RTE::InvalidArgumentError(QStringLiteral("first"))); }));
  ASSERT_TRUE(queue.Enqueue([] { throw std::runtime_error("second"); }));
  ASSERT_TRUE(queue.Enqueue([&] { ++ranAfterFailure; }));
  EXPECT_FALSE(queue.ExceptionOccured());
  EXPECT_NO_THROW(queue.Rethrow());

  gate.release.set_value();
  while (!control.isCanceled())
    std::this_thread::sleep_for(1ms);
  EXPECT_TRUE(queue.ExceptionOccured());
  EXPECT_FALSE(queue.Enqueue([&] { ++ranAfterFailure; }));
  queue.WaitUntilFinished();
  EXPECT_EQ(ranAfterFailure.load(), 0);

  EXPECT_EQ(MessageOf<RTE::InvalidArgumentError>([&] { queue.Rethrow(); }), QStringLiteral("first"));

  // Exceptions of any type are kept as they were thrown.
  control.reset();
  RTE::JobQueue other(RTE::JobQueue::Unlimited, 1, control);
  other.Enqueue([] { throw 42; });
  other.WaitUntilFinished();
  EXPECT_THROW(other.Rethrow(), int);
}

TEST(JobQueue, WaitingOnTheOwnQueueFromAWorkerIsADeadlockError)
{
  RTE::ActivityControl control;
  RTE::JobQueue queue(RTE::JobQueue::Unlimited, 2, control);
  std::error_code error;
  queue.Enqueue(
      [&]
      {
        try
        {
          queue.WaitUntilFinished();
        }
        catch (const std::system_error& e)
        {
          error = e.code();
        }
      });
  queue.WaitUntilFinished();
  EXPECT_EQ(error, std::errc::resource_deadlock_would_occur);
  EXPECT_FALSE(queue.ExceptionOccured());
}

TEST(JobQueue, CancelFromOutsideReleasesBlockedProducersAndDropsQueuedJobs)
{
  RTE::ActivityControl control;
  RTE::JobQueue queue(1, 1, control);
  Gate gate;
  std::atomic<int> done{0};
  ASSERT_TRUE(queue.Enqueue(gate.job()));
  gate.started.get_future().wait();
  ASSERT_TRUE(queue.Enqueue([&] { ++done; }));
  auto blocked = std::async(std::launch::async, [&] { return queue.Enqueue([&] { ++done; }); });
  EXPECT_EQ(blocked.wait_for(50ms), std::future_status::timeout);

  control.cancel(); // not through the queue: its signal must wake the producer
  EXPECT_FALSE(blocked.get());
  gate.release.set_value();
  queue.WaitUntilFinished();
  EXPECT_EQ(done.load(), 0);

  // Once cancelled the queue stays so, even when the owner resets the control.
  control.reset();
  EXPECT_FALSE(queue.Enqueue([&] { ++done; }));
  RTE::JobQueue cancelledBeforeWait(RTE::JobQueue::Unlimited, 2, control);
  cancelledBeforeWait.Cancel();
  control.reset();
  EXPECT_FALSE(cancelledBeforeWait.Enqueue([&] { ++done; }));
  EXPECT_EQ(done.load(), 0);
}

TEST(JobQueue, ClearDropsQueuedJobsButTheRunningOneFinishes)
{
  RTE::ActivityControl control;
  RTE::JobQueue queue(3, 1, control);
  Gate gate;
  std::atomic<int> cleared{0};
  std::atomic<int> later{0};
  ASSERT_TRUE(queue.Enqueue(gate.job()));
  gate.started.get_future().wait();
  for (int i = 0; i < 3; ++i)
    ASSERT_TRUE(queue.Enqueue([&] { ++cleared; }));
  auto blocked = std::async(std::launch::async, [&] { return queue.Enqueue([&] { ++later; }); });
  EXPECT_EQ(blocked.wait_for(50ms), std::future_status::timeout);

  queue.Clear(); // makes room: the blocked producer gets in
  EXPECT_TRUE(blocked.get());
  gate.release.set_value();
  queue.WaitUntilFinished();
  EXPECT_EQ(cleared.load(), 0);
  EXPECT_EQ(later.load(), 1);
  EXPECT_FALSE(control.isCanceled());
}
