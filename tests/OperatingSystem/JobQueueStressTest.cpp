#include <Core/Common/OperatingSystem/ActivityControl.h>
#include <Core/Common/OperatingSystem/JobQueue.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cstdint>
#include <memory>
#include <random>
#include <thread>
#include <vector>

// Many producers against few workers and a tiny capacity, while another thread clears
// the queue at random and cancels it at a random moment. Every job must run at most
// once, every producer must come back, the queue must end, and every job (run or
// dropped) must be destroyed. Run under ThreadSanitizer and AddressSanitizer in CI.
TEST(JobQueueStress, ProducersWorkersClearAndCancel)
{
  constexpr int producerCount = 8;
  constexpr int workerCount = 4;
  constexpr std::size_t capacity = 4;
  constexpr int jobCount = 200000;

  const unsigned seed = std::random_device{}();
  SCOPED_TRACE(::testing::Message() << "seed " << seed);
  std::mt19937 random(seed);
  // Cancel after a random share of the jobs ran; sometimes (threshold beyond the job
  // count) never, so that the queue also ends by WaitUntilFinished alone.
  const int cancelAfter = std::uniform_int_distribution<int>(jobCount / 10, jobCount + jobCount / 4)(random);

  std::vector<std::atomic<std::uint8_t>> runs(jobCount);
  std::atomic<int> ran{0};
  std::atomic<int> accepted{0};
  auto token = std::make_shared<int>(0); // every job holds a copy: none may leak
  std::atomic<bool> producersDone{false};
  bool cancelled = false;

  RTE::ActivityControl control;
  {
    RTE::JobQueue queue(capacity, workerCount, control, QStringLiteral("StressWorker"));

    std::vector<std::thread> producers;
    for (int p = 0; p < producerCount; ++p)
    {
      producers.emplace_back(
          [&, p]
          {
            for (int job = p; job < jobCount; job += producerCount)
            {
              const bool queued = queue.Enqueue(
                  [&runs, &ran, job, token]
                  {
                    runs[static_cast<std::size_t>(job)].fetch_add(1, std::memory_order_relaxed);
                    ran.fetch_add(1, std::memory_order_relaxed);
                  });
              if (queued)
                accepted.fetch_add(1, std::memory_order_relaxed);
            }
          });
    }

    std::thread disturber(
        [&, seed]
        {
          std::mt19937 local(seed + 1);
          std::uniform_int_distribution<int> pause(0, 300);
          while (!producersDone.load())
          {
            std::this_thread::sleep_for(std::chrono::microseconds(pause(local)));
            queue.Clear();
            if (!cancelled && ran.load() >= cancelAfter)
            {
              queue.Cancel();
              cancelled = true;
            }
          }
        });

    for (auto& producer : producers)
      producer.join();
    producersDone = true;
    disturber.join();
    queue.WaitUntilFinished();

    EXPECT_EQ(control.isCanceled(), cancelled);
    EXPECT_FALSE(queue.ExceptionOccured());
  }

  EXPECT_EQ(token.use_count(), 1) << "jobs left alive after the queue ended";
  int total = 0;
  for (const auto& count : runs)
  {
    ASSERT_LE(count.load(), 1) << "a job ran twice";
    total += count.load();
  }
  EXPECT_EQ(total, ran.load());
  EXPECT_LE(total, accepted.load());
  EXPECT_GT(total, 0);
  if (!cancelled)
  {
    EXPECT_EQ(accepted.load(), jobCount) << "without a cancellation every job is accepted";
  }
}
