#include <Core/Common/OperatingSystem/C_SystemInfo.h>
#include <Core/Common/OperatingSystem/ThreadHandle.h>

#include <gtest/gtest.h>

#include <thread>
#include <vector>

TEST(ThreadHandle, MainThreadIsKnownOnEveryThread)
{
  EXPECT_TRUE(RTE::ThreadHandle::IsMainThread());
  EXPECT_EQ(RTE::ThreadHandle::GetThreadId(), RTE::ThreadHandle::GetMainThreadId());

  RTE::ThreadHandle::ThreadId workerId = 0;
  RTE::ThreadHandle::ThreadId mainSeenFromWorker = 0;
  bool workerIsMain = true;
  std::thread worker(
      [&]
      {
        workerId = RTE::ThreadHandle::GetThreadId();
        mainSeenFromWorker = RTE::ThreadHandle::GetMainThreadId();
        workerIsMain = RTE::ThreadHandle::IsMainThread();
      });
  worker.join();
  EXPECT_FALSE(workerIsMain);
  EXPECT_NE(workerId, 0u);
  EXPECT_NE(workerId, RTE::ThreadHandle::GetThreadId());
  EXPECT_EQ(mainSeenFromWorker, RTE::ThreadHandle::GetMainThreadId());
}

TEST(C_SystemInfo, ProcessMemoryGrowsWithTouchedMemory)
{
  const auto before = RTE::C_SystemInfo::GetInstance().GetMemoryProcess();
  EXPECT_GT(before, 0u);
  // 64 MiB written page by page must show in the resident set.
  std::vector<char> block(64 << 20);
  for (std::size_t i = 0; i < block.size(); i += 4096)
    block[i] = static_cast<char>(i);
  const auto after = RTE::C_SystemInfo::GetInstance().GetMemoryProcess();
  EXPECT_GE(after, before + (48u << 10)) << "before " << before << " KiB, after " << after << " KiB";
  EXPECT_EQ(RTE::C_SystemInfo::GetInstance().GetGdiObjectCount(), 0u);
}
