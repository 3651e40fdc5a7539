#include <Core/Common/OperatingSystem/FolderSizeCalculator.h>

#include "TestHelpers.h"

#include <gtest/gtest.h>

#include <QTemporaryDir>

#include <chrono>
#include <condition_variable>
#include <mutex>
#include <thread>
#include <vector>

using RTE::FolderSizeCalculator;

namespace
{

// Records the callback's calls and lets a test wait for them.
struct Results
{
  std::mutex mutex;
  std::condition_variable changed;
  std::vector<std::pair<QString, qint64>> calls;
  std::vector<std::thread::id> threads;

  FolderSizeCalculator::Callback callback()
  {
    return [this](const QString& path, qint64 size)
    {
      std::lock_guard lock(mutex);
      calls.emplace_back(path, size);
      threads.push_back(std::this_thread::get_id());
      changed.notify_all();
    };
  }
  bool waitFor(std::size_t count)
  {
    std::unique_lock lock(mutex);
    return changed.wait_for(lock, std::chrono::seconds(20), [&] { return calls.size() >= count; });
  }
};

// A folder of `files` files of `bytes` bytes each.
QString makeFolder(const QTemporaryDir& root, const QString& name, int files, qsizetype bytes)
{
  const QString folder = root.filePath(name);
  for (int i = 0; i < files; ++i)
    WriteFile(folder + QStringLiteral("/f%1").arg(i), bytes);
  return folder;
}

} // namespace

TEST(FolderSizeCalculator, MeasuresOnAWorkerAndReportsOnce)
{
  QTemporaryDir root;
  const QString folder = makeFolder(root, QStringLiteral("a"), 3, 1000);
  Results results;
  FolderSizeCalculator sizes(results.callback(), 1);
  EXPECT_EQ(sizes.getSize(folder), -1);
  sizes.update(folder);
  ASSERT_TRUE(results.waitFor(1));
  EXPECT_EQ(sizes.getSize(folder), 3000);
  std::lock_guard lock(results.mutex);
  ASSERT_EQ(results.calls.size(), 1u);
  EXPECT_EQ(results.calls[0], std::make_pair(folder, qint64(3000)));
  EXPECT_NE(results.threads[0], std::this_thread::get_id());
  EXPECT_FALSE(sizes.isRemoved(folder));
}

TEST(FolderSizeCalculator, DisabledRemembersAndEnablingQueues)
{
  QTemporaryDir root;
  const QString folder = makeFolder(root, QStringLiteral("a"), 2, 10);
  Results results;
  FolderSizeCalculator sizes(results.callback(), 1);
  sizes.enable(false);
  sizes.update(folder);
  // A tiny folder is measured within milliseconds once queued.
  std::this_thread::sleep_for(std::chrono::milliseconds(100));
  EXPECT_EQ(sizes.getSize(folder), -1);
  sizes.enable(true);
  ASSERT_TRUE(results.waitFor(1));
  EXPECT_EQ(sizes.getSize(folder), 20);
}

TEST(FolderSizeCalculator, RemovedWhileMeasuredIsDiscarded)
{
  QTemporaryDir root;
  // Throttled measuring pauses per entry, so this one takes a while.
  const QString slow = makeFolder(root, QStringLiteral("slow"), 40, 1);
  const QString quick = makeFolder(root, QStringLiteral("quick"), 1, 7);
  Results results;
  FolderSizeCalculator sizes(results.callback(), 1);
  sizes.update(slow);
  std::this_thread::sleep_for(std::chrono::milliseconds(50));
  sizes.remove(slow);
  EXPECT_TRUE(sizes.isRemoved(slow));
  // One worker: the quick folder is measured after the slow one has finished.
  sizes.update(quick);
  ASSERT_TRUE(results.waitFor(1));
  std::lock_guard lock(results.mutex);
  ASSERT_EQ(results.calls.size(), 1u);
  EXPECT_EQ(results.calls[0].first, quick);
  EXPECT_EQ(sizes.getSize(slow), -1);
}

TEST(FolderSizeCalculator, StopEndsEverythingAndNothingIsReported)
{
  QTemporaryDir root;
  const QString slow = makeFolder(root, QStringLiteral("slow"), 200, 1);
  Results results;
  {
    FolderSizeCalculator sizes(results.callback(), 2);
    sizes.update(slow);
    sizes.update(root.path());
    std::this_thread::sleep_for(std::chrono::milliseconds(30));
    sizes.stop();
    EXPECT_TRUE(sizes.isRemoved(slow));
    // The destructor joins the workers: a cancelled walk ends at its next entry.
  }
  std::lock_guard lock(results.mutex);
  EXPECT_TRUE(results.calls.empty());
}
