#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/OperatingSystem/ThreadHandle.h>

#include <gtest/gtest.h>

#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

#include <string>
#include <thread>

using namespace RTE::ThreadHandle;

TEST(ThreadHandle, MainThreadIsKnownOnEveryThread)
{
  EXPECT_TRUE(IsMainThread());
  EXPECT_EQ(GetThreadId(), GetMainThreadId());
  EXPECT_EQ(GetMainThreadId(), GetProcessId());
  EXPECT_EQ(GetProcessId(), static_cast<std::uint64_t>(::getpid()));
  EXPECT_EQ(GetThreadHandle(), static_cast<NativeHandle>(pthread_self()));

  ThreadId workerId = 0;
  ThreadId mainSeenFromWorker = 0;
  bool workerIsMain = true;
  std::thread worker(
      [&]
      {
        workerId = GetThreadId();
        mainSeenFromWorker = GetMainThreadId();
        workerIsMain = IsMainThread();
      });
  worker.join();
  EXPECT_FALSE(workerIsMain);
  EXPECT_NE(workerId, 0u);
  EXPECT_NE(workerId, GetThreadId());
  EXPECT_EQ(mainSeenFromWorker, GetMainThreadId());
}

TEST(ThreadHandle, NamesAreCutToFifteenBytesOnACharacterBoundary)
{
  const struct
  {
    QString given;
    std::string kept;
  } cases[] = {
      {QStringLiteral("Writer"), "Writer"},
      {QStringLiteral("FolderSizeCalculatorThread"), "FolderSizeCalcu"},
      {QStringLiteral("Messdatenprüfer"), "Messdatenprüfe"},
      // "ü" is two bytes here: the 15th byte would split it.
      {QStringLiteral("Abcdefghijklmnü"), "Abcdefghijklmn"},
  };
  for (const auto& c : cases)
  {
    std::string kept;
    bool ok = false;
    std::thread worker(
        [&]
        {
          ok = SetThreadName(c.given);
          char name[16] = {};
          pthread_getname_np(pthread_self(), name, sizeof name);
          kept = name;
        });
    worker.join();
    EXPECT_TRUE(ok) << c.kept;
    EXPECT_EQ(kept, c.kept);
  }
}

TEST(ThreadHandle, PrioritiesMapToTheSchedulerWhereAllowed)
{
  std::thread worker(
      [&]
      {
        const pid_t tid = ::gettid();
        ASSERT_TRUE(SetPriority(E_ThreadPriority::Lowest));
        EXPECT_EQ(::getpriority(PRIO_PROCESS, static_cast<id_t>(tid)), 10);
        ASSERT_TRUE(SetPriority(E_ThreadPriority::Idle, static_cast<ThreadId>(tid)));
        EXPECT_EQ(::sched_getscheduler(tid), SCHED_IDLE);

        // Going back up may need privileges: the answer must match what happened.
        const bool normal = SetPriority(E_ThreadPriority::Normal);
        if (normal)
        {
          EXPECT_EQ(::sched_getscheduler(tid), SCHED_OTHER);
          EXPECT_EQ(::getpriority(PRIO_PROCESS, static_cast<id_t>(tid)), 0);
        }
        const bool critical = SetPriority(E_ThreadPriority::TimeCritical);
        EXPECT_EQ(critical, ::sched_getscheduler(tid) == SCHED_FIFO);
      });
  worker.join();
  EXPECT_EQ(::sched_getscheduler(0), SCHED_OTHER) << "the main thread must be untouched";
}

TEST(ThreadHandle, ProcessAffinityIsSetForEveryThreadAndDumped)
{
  cpu_set_t original;
  ASSERT_EQ(::sched_getaffinity(0, sizeof original, &original), 0);
  if (!CPU_ISSET(0, &original))
    GTEST_SKIP() << "processor 0 is not available to this process";

  std::thread idle([] { std::this_thread::sleep_for(std::chrono::milliseconds(100)); });
  ASSERT_TRUE(SetProcessCoreAffinity(0, 1, 1));
  EXPECT_EQ(dumpCoreAndProcessAffinity(), QStringLiteral("cpu affinity: 0x1 / group affinity: none"));
  cpu_set_t other;
  ASSERT_EQ(::sched_getaffinity(0, sizeof other, &other), 0);
  EXPECT_EQ(CPU_COUNT(&other), 1);
  idle.join();

  EXPECT_TRUE(SetProcessGroupAffinity(0));
  EXPECT_FALSE(SetProcessGroupAffinity(1));
  EXPECT_THROW(SetProcessCoreAffinity(-1, 1, 1), RTE::InvalidArgumentError);
  EXPECT_THROW(SetProcessCoreAffinity(0, 0, 1), RTE::InvalidArgumentError);
  EXPECT_THROW(SetProcessCoreAffinity(0, 2, 0), RTE::InvalidArgumentError);
  EXPECT_THROW(SetProcessCoreAffinity(1000, 2, 100), RTE::InvalidArgumentError);

  ASSERT_EQ(::sched_setaffinity(0, sizeof original, &original), 0);
  ASSERT_EQ(::sched_setaffinity(::getpid(), sizeof original, &original), 0);
}
