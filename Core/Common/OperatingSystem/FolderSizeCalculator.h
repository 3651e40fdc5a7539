// Measures folder sizes in the background and reports each to a callback.
//
//   RTE::FolderSizeCalculator sizes([](const QString& path, qint64 bytes) { post(path, bytes); }, 1);
//   sizes.update("/data/run1");        // measured on a worker thread, then the callback runs
//   sizes.getSize("/data/run1");       // -1 until the size is known
//
// Measuring walks the folder with RTE::FileSystem::DirSize, throttled so that background
// measuring does not saturate the disk. The callback runs on a worker thread (named
// "FolderSizeCalculatorThread"), outside the calculator's lock, and must be thread-safe.
// Every member may be called from any thread.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/OperatingSystem/ActivityControl.h>

#include <QHash>
#include <QString>

#include <functional>
#include <memory>
#include <mutex>

namespace RTE
{

class JobQueue;

class CORECOMMON_EXPORT FolderSizeCalculator
{
public:
  using Callback = std::function<void(const QString& path, qint64 size)>;

  // The states of an entry, as numbered in diagnostics.
  enum class State
  {
    Waiting = 0, // known, but not queued because the calculator was disabled
    Queued = 1,
    InProgress = 2,
    Known = 3,
    Removed = 4
  };

  // Starts max(threadCount, 1) worker threads.
  FolderSizeCalculator(Callback callback, int threadCount);
  // stop(), then waits for the workers to end.
  ~FolderSizeCalculator();
  FolderSizeCalculator(const FolderSizeCalculator&) = delete;
  FolderSizeCalculator& operator=(const FolderSizeCalculator&) = delete;

  // Asks for the size of path: queued unless it is already queued or being measured;
  // only remembered (Waiting) while the calculator is disabled.
  void update(const QString& path);
  // The size stored for path in bytes, or -1 if none is.
  qint64 getSize(const QString& path) const;
  // Stores a size known from elsewhere (state Known); the callback is not called.
  void setSize(const QString& path, qint64 size);
  // Marks path removed: a running measurement of it is discarded.
  void remove(const QString& path);
  bool isRemoved(const QString& path) const;
  // Turning the calculator on queues every waiting entry.
  void enable(bool on);
  // Marks every entry removed and cancels the workers; nothing is measured afterwards.
  void stop();

private:
  struct Entry
  {
    qint64 size = -1;
    State state = State::Waiting;
  };

  void queue(const QString& path);
  void measure(const QString& path);

  Callback m_callback;
  ActivityControl m_control;
  mutable std::mutex m_mutex; // guards m_entries and m_enabled
  QHash<QString, Entry> m_entries;
  bool m_enabled = true;
  std::unique_ptr<JobQueue> m_queue; // last: its workers end before the rest goes
};

} // namespace RTE
