// The library's way to run background work: a bounded queue of jobs served by a fixed
// set of worker threads that share one activity control.
//
//   RTE::ActivityControl control;
//   RTE::JobQueue queue(16, 2, control, QStringLiteral("ImageWriter"));
//   for (const auto& image : images)
//     queue.Enqueue([&image] { write(image); });   // blocks while 16 jobs wait
//   queue.WaitUntilFinished();                     // runs what is queued, then ends the workers
//   if (queue.ExceptionOccured())
//     queue.Rethrow();                             // the first job's exception, on this thread
//
// The first job that throws cancels the control: the other workers stop after their
// current job and later jobs are dropped. Jobs run in queue order, but with more than
// one worker they overlap.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>

#include <cstddef>
#include <functional>
#include <limits>
#include <memory>

namespace RTE
{

class I_ActivityControl;

class CORECOMMON_EXPORT JobQueue
{
public:
  using Job = std::function<void()>;

  // A capacity that never blocks producers.
  static constexpr std::size_t Unlimited = std::numeric_limits<std::size_t>::max();

  // Starts max(threadCount, 1) workers at once, each named name (if not empty; the
  // system keeps its first 15 bytes). The control is not owned and must outlive the
  // queue. Throws RTE::InvalidArgumentError for a capacity of 0 (nothing could ever
  // be queued).
  JobQueue(std::size_t capacity, int threadCount, I_ActivityControl& control, const QString& name = QString());
  // WaitUntilFinished(). Must not run on one of the queue's own workers.
  ~JobQueue();

  JobQueue(const JobQueue&) = delete;
  JobQueue& operator=(const JobQueue&) = delete;

  // Appends a job, waiting while the queue holds `capacity` jobs. Returns false, and
  // drops the job, when the queue is cancelled (before or while waiting). Throws
  // RTE::InvalidArgumentError for an empty job and RTE::InvalidRequest once
  // WaitUntilFinished has begun (the job could never run).
  bool Enqueue(Job job);

  // Drops every queued job (running ones finish) and wakes waiting producers.
  void Clear();

  // Cancels the control: workers end after their current job, queued and later jobs
  // are dropped. The queue stays cancelled even if the control is reset.
  void Cancel();

  // Runs the jobs queued so far (unless cancelled), then ends and joins the workers.
  // Called again, or from another thread meanwhile, it waits for the same end. On one
  // of this queue's workers it throws std::system_error (resource_deadlock_would_occur).
  void WaitUntilFinished();

  // Whether a job has thrown.
  bool ExceptionOccured() const;

  // Rethrows the first job's exception; does nothing if no job threw.
  void Rethrow() const;

  // The number of worker threads.
  int ThreadCount() const;

private:
  struct Private;
  std::unique_ptr<Private> d;
};

} // namespace RTE
