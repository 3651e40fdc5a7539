// A thread base class: derive, put the work into Run(), start it with Create().
// Whatever Run() throws goes to the exception handler, never out of the thread.
//
//   class Sampler : public RTE::Thread
//   {
//   public:
//     Sampler() : Thread(RTE::CreateDefaultThreadExeptionHandler(), QStringLiteral("Sampler")) {}
//     ~Sampler() override { Join(); }
//   protected:
//     void Run() override { while (!m_stop) sample(); }
//   };
//
// A derived class whose Run() uses its own members must Join() in its destructor:
// the base destructor runs after those members are gone.
#pragma once

#include <Core/Common/OperatingSystem/I_ThreadExceptionHandler.h>

#include <QString>

#include <memory>
#include <mutex>
#include <thread>

namespace RTE
{

class CORECOMMON_EXPORT Thread
{
public:
  // Throws RTE::InvalidArgumentError for an empty handler.
  explicit Thread(std::shared_ptr<I_ThreadExceptionHandler> handler, const QString& name = QString());
  // Joins the thread if it still runs.
  virtual ~Thread();

  Thread(const Thread&) = delete;
  Thread& operator=(const Thread&) = delete;

  // Starts the thread. Throws RTE::InvalidRequest if it was started before.
  void Create();
  // Waits until Run() has returned; returns at once if the thread never started or
  // was joined. Throws std::system_error (resource_deadlock_would_occur) on the
  // thread itself.
  void Join();
  // Whether the thread was started and not yet joined.
  bool IsStarted() const;

protected:
  // The work, on the new thread.
  virtual void Run() = 0;

private:
  void ThreadMain();

  std::shared_ptr<I_ThreadExceptionHandler> m_handler;
  QString m_name;
  mutable std::mutex m_mutex;
  std::thread m_thread;
  bool m_started = false;
};

} // namespace RTE
