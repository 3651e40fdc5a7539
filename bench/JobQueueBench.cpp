// RTE::JobQueue against QThreadPool::start and a plain mutex-and-condition-variable
// queue: 1,000,000 tiny jobs (an atomic increment) per iteration, with 1 and 2 worker
// threads. items_per_second is jobs per second. JobQueueProducerBlocking times every
// Enqueue into a queue of capacity 16 and reports how long the producer was held up.
#include <Core/Common/OperatingSystem/ActivityControl.h>
#include <Core/Common/OperatingSystem/JobQueue.h>

#include <QThreadPool>

#include <benchmark/benchmark.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace
{

constexpr int jobCount = 1000000;
constexpr std::size_t boundedCapacity = 16;

// The reference: the textbook queue, unbounded, one lock, one condition variable.
class PlainQueue
{
public:
  explicit PlainQueue(int threads)
  {
    for (int i = 0; i < threads; ++i)
      m_workers.emplace_back([this] { serve(); });
  }

  void push(std::function<void()> job)
  {
    {
      std::lock_guard lock(m_mutex);
      m_jobs.push_back(std::move(job));
    }
    m_ready.notify_one();
  }

  void finish()
  {
    {
      std::lock_guard lock(m_mutex);
      m_done = true;
    }
    m_ready.notify_all();
    for (auto& worker : m_workers)
      worker.join();
  }

private:
  void serve()
  {
    for (;;)
    {
      std::function<void()> job;
      {
        std::unique_lock lock(m_mutex);
        m_ready.wait(lock, [this] { return !m_jobs.empty() || m_done; });
        if (m_jobs.empty())
          return;
        job = std::move(m_jobs.front());
        m_jobs.pop_front();
      }
      job();
    }
  }

  std::mutex m_mutex;
  std::condition_variable m_ready;
  std::deque<std::function<void()>> m_jobs;
  bool m_done = false;
  std::vector<std::thread> m_workers;
};

void checkAllRan(benchmark::State& state, const std::atomic<int>& counter)
{
  if (counter.load() != jobCount)
    state.SkipWithError("not every job ran");
}

void JobQueueJobs(benchmark::State& state)
{
  const int threads = static_cast<int>(state.range(0));
  const std::size_t capacity =
      state.range(1) == 0 ? RTE::JobQueue::Unlimited : static_cast<std::size_t>(state.range(1));
  for (auto _ : state)
  {
    std::atomic<int> counter{0};
    RTE::ActivityControl control;
    RTE::JobQueue queue(capacity, threads, control);
    for (int i = 0; i < jobCount; ++i)
      queue.Enqueue([&counter] { counter.fetch_add(1, std::memory_order_relaxed); });
    queue.WaitUntilFinished();
    checkAllRan(state, counter);
  }
  state.SetItemsProcessed(state.iterations() * jobCount);
}

void QThreadPoolJobs(benchmark::State& state)
{
  const int threads = static_cast<int>(state.range(0));
  for (auto _ : state)
  {
    std::atomic<int> counter{0};
    QThreadPool pool;
    pool.setMaxThreadCount(threads);
    for (int i = 0; i < jobCount; ++i)
      pool.start([&counter] { counter.fetch_add(1, std::memory_order_relaxed); });
    pool.waitForDone();
    checkAllRan(state, counter);
  }
  state.SetItemsProcessed(state.iterations() * jobCount);
}

void PlainQueueJobs(benchmark::State& state)
{
  const int threads = static_cast<int>(state.range(0));
  for (auto _ : state)
  {
    std::atomic<int> counter{0};
    PlainQueue queue(threads);
    for (int i = 0; i < jobCount; ++i)
      queue.push([&counter] { counter.fetch_add(1, std::memory_order_relaxed); });
    queue.finish();
    checkAllRan(state, counter);
  }
  state.SetItemsProcessed(state.iterations() * jobCount);
}

// Every Enqueue timed: "enqueue_ms" is the producer's whole time inside Enqueue per
// million jobs, "blocked_ms" the part spent in calls that took longer than 2 µs (that
// is, waited for room), "blocked_calls" how many such calls there were.
void JobQueueProducerBlocking(benchmark::State& state)
{
  using Clock = std::chrono::steady_clock;
  const int threads = static_cast<int>(state.range(0));
  double enqueueSeconds = 0;
  double blockedSeconds = 0;
  double blockedCalls = 0;
  for (auto _ : state)
  {
    std::atomic<int> counter{0};
    RTE::ActivityControl control;
    RTE::JobQueue queue(boundedCapacity, threads, control);
    for (int i = 0; i < jobCount; ++i)
    {
      const auto start = Clock::now();
      queue.Enqueue([&counter] { counter.fetch_add(1, std::memory_order_relaxed); });
      const std::chrono::duration<double> took = Clock::now() - start;
      enqueueSeconds += took.count();
      if (took > std::chrono::microseconds(2))
      {
        blockedSeconds += took.count();
        ++blockedCalls;
      }
    }
    queue.WaitUntilFinished();
    checkAllRan(state, counter);
  }
  const double iterations = static_cast<double>(state.iterations());
  state.counters["enqueue_ms"] = 1000 * enqueueSeconds / iterations;
  state.counters["blocked_ms"] = 1000 * blockedSeconds / iterations;
  state.counters["blocked_calls"] = blockedCalls / iterations;
  state.SetItemsProcessed(state.iterations() * jobCount);
}

} // namespace

// Arguments: worker threads, capacity (0: unlimited).
BENCHMARK(JobQueueJobs)
    ->ArgsProduct({{1, 2}, {0, static_cast<std::int64_t>(boundedCapacity)}})
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime()
    ->Iterations(3);
BENCHMARK(QThreadPoolJobs)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
BENCHMARK(PlainQueueJobs)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
BENCHMARK(JobQueueProducerBlocking)->Arg(1)->Arg(2)->Unit(benchmark::kMillisecond)->UseRealTime()->Iterations(3);
