#include <Core/Common/OperatingSystem/JobQueue.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/OperatingSystem/I_ActivityControl.h>
#include <Core/Common/OperatingSystem/ThreadHandle.h>

#include "ThreadsLog_p.h"

#include <QObject>

#include <algorithm>
#include <condition_variable>
#include <deque>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

namespace RTE
{

namespace
{

// The queue whose worker runs on this thread, so that WaitUntilFinished can refuse to
// join the thread it is called from.
thread_local const void* t_servedQueue = nullptr;

} // namespace

struct JobQueue::Private
{
  Private(std::size_t capacity, I_ActivityControl& control, const QString& name) :
      control(control),
      name(name),
      capacity(capacity)
  {
  }

  void workerLoop();
  void storeException(std::exception_ptr exception, const QString& text);
  // Makes the cancellation sticky and wakes every waiting producer and worker.
  void onCanceled();
  bool canceled() const { return stopped || control.isCanceled(); }

  I_ActivityControl& control;
  const QString name;

  std::mutex mutex; // guards everything down to `finishing`
  std::condition_variable jobAvailable;
  std::condition_variable roomAvailable;
  std::deque<Job> jobs;
  std::size_t capacity;
  bool stopped = false;   // once cancelled, cancelled for good
  bool finishing = false; // WaitUntilFinished has queued the end markers

  std::vector<std::thread> workers;
  std::mutex joinMutex; // one joiner at a time

  // Never taken while `mutex` is held.
  mutable std::mutex exceptionMutex;
  std::exception_ptr firstException;

  QMetaObject::Connection cancelConnection;
};

void JobQueue::Private::onCanceled()
{
  {
    std::lock_guard lock(mutex);
    stopped = true;
  }
  jobAvailable.notify_all();
  roomAvailable.notify_all();
}

void JobQueue::Private::storeException(std::exception_ptr exception, const QString& text)
{
  bool first = false;
  {
    std::lock_guard lock(exceptionMutex);
    if (!firstException)
    {
      firstException = std::move(exception);
      first = true;
    }
  }
  if (first)
  {
    qCWarning(lcThreads).noquote()
        << QStringLiteral("A job of the queue '%1' failed, the queue is cancelled: %2").arg(name, text);
    control.cancel();
  }
}

void JobQueue::Private::workerLoop()
{
  t_servedQueue = this;
  if (!name.isEmpty())
    ThreadHandle::SetThreadName(name);

  for (;;)
  {
    Job job;
    {
      std::unique_lock lock(mutex);
      jobAvailable.wait(lock, [this] { return !jobs.empty() || canceled(); });
      if (canceled())
      {
        stopped = true;
        lock.unlock();
        // Producers waiting for room must not wait for workers that are gone.
        roomAvailable.notify_all();
        return;
      }
      job = std::move(jobs.front());
      jobs.pop_front();
    }
    roomAvailable.notify_one();
    // An empty job is an end marker.
    if (!job || control.isCanceled())
      return;

    try
    {
      job();
    }
    catch (...)
    {
      storeException(std::current_exception(), detail::currentExceptionText());
    }
  }
}

JobQueue::JobQueue(std::size_t capacity, int threadCount, I_ActivityControl& control, const QString& name) :
    d(std::make_unique<Private>(capacity, control, name))
{
  if (capacity == 0)
    Raise(InvalidArgumentError(QObject::tr("A job queue needs a capacity of at least 1")));

  // Also a control cancelled by someone else must wake producers waiting for room.
  Private* p = d.get();
  d->cancelConnection = QObject::connect(&control, &I_ActivityControl::canceled, [p] { p->onCanceled(); });

  const int count = std::max(threadCount, 1);
  d->workers.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i)
    d->workers.emplace_back([p] { p->workerLoop(); });
}

JobQueue::~JobQueue()
{
  WaitUntilFinished();
  QObject::disconnect(d->cancelConnection);
}

bool JobQueue::Enqueue(Job job)
{
  if (!job)
    Raise(InvalidArgumentError(QObject::tr("An empty job cannot be queued")));
  {
    std::unique_lock lock(d->mutex);
    d->roomAvailable.wait(lock, [this] { return d->jobs.size() < d->capacity || d->finishing || d->canceled(); });
    if (d->canceled())
      return false;
    if (d->finishing)
    {
      lock.unlock();
      Raise(InvalidRequest(QObject::tr("The job queue '%1' is finishing and takes no more jobs").arg(d->name)));
    }
    d->jobs.push_back(std::move(job));
  }
  d->jobAvailable.notify_one();
  return true;
}

void JobQueue::Clear()
{
  std::deque<Job> dropped;
  {
    std::lock_guard lock(d->mutex);
    // The end markers stay: without them the workers would never end.
    auto markers = std::count_if(d->jobs.begin(), d->jobs.end(), [](const Job& job) { return !job; });
    dropped.swap(d->jobs);
    d->jobs.resize(static_cast<std::size_t>(markers));
  }
  d->roomAvailable.notify_all();
  // The dropped jobs (and what they hold) are destroyed here, outside the lock.
}

void JobQueue::Cancel()
{
  d->control.cancel();
  // For a control that does not signal its cancellation.
  d->onCanceled();
}

void JobQueue::WaitUntilFinished()
{
  if (t_servedQueue == d.get())
    throw std::system_error(std::make_error_code(std::errc::resource_deadlock_would_occur),
                            "JobQueue::WaitUntilFinished called on one of the queue's own workers");

  std::lock_guard joinLock(d->joinMutex);
  {
    std::lock_guard lock(d->mutex);
    if (!d->finishing)
    {
      d->finishing = true;
      d->capacity = Unlimited;
      d->jobs.resize(d->jobs.size() + d->workers.size());
    }
  }
  d->jobAvailable.notify_all();
  d->roomAvailable.notify_all();
  for (std::thread& worker : d->workers)
  {
    if (worker.joinable())
      worker.join();
  }
  // Jobs left behind by a cancellation go now, not with the queue.
  std::deque<Job> left;
  {
    std::lock_guard lock(d->mutex);
    left.swap(d->jobs);
  }
}

bool JobQueue::ExceptionOccured() const
{
  std::lock_guard lock(d->exceptionMutex);
  return d->firstException != nullptr;
}

void JobQueue::Rethrow() const
{
  std::exception_ptr exception;
  {
    std::lock_guard lock(d->exceptionMutex);
    exception = d->firstException;
  }
  if (exception)
    std::rethrow_exception(exception);
}

int JobQueue::ThreadCount() const
{
  return static_cast<int>(d->workers.size());
}

} // namespace RTE
