#include <Core/Common/OperatingSystem/Thread.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/OperatingSystem/ThreadHandle.h>

#include "Linux/CrashSignals_p.h"
#include "ThreadsLog_p.h"

#include <QObject>

#include <system_error>

namespace RTE
{

namespace
{

// The RTE::Thread whose work runs on this thread, so that it never joins itself.
thread_local const Thread* t_currentThread = nullptr;

} // namespace

Thread::Thread(std::shared_ptr<I_ThreadExceptionHandler> handler, const QString& name) :
    m_handler(std::move(handler)),
    m_name(name)
{
  if (!m_handler)
    Raise(InvalidArgumentError(QObject::tr("A thread needs an exception handler")));
}

Thread::~Thread()
{
  std::lock_guard lock(m_mutex);
  if (!m_thread.joinable())
    return;
  if (t_currentThread == this)
    m_thread.detach(); // destroyed by its own work: nothing left to wait for
  else
    m_thread.join();
}

void Thread::Create()
{
  std::lock_guard lock(m_mutex);
  if (m_started)
    Raise(InvalidRequest(QObject::tr("The thread '%1' was started before").arg(m_name)));
  m_thread = std::thread([this] { ThreadMain(); });
  m_started = true;
}

void Thread::Join()
{
  if (t_currentThread == this)
    throw std::system_error(std::make_error_code(std::errc::resource_deadlock_would_occur),
                            "RTE::Thread::Join called on the thread itself");
  std::lock_guard lock(m_mutex);
  if (m_thread.joinable())
    m_thread.join();
}

bool Thread::IsStarted() const
{
  std::lock_guard lock(m_mutex);
  return m_thread.joinable();
}

void Thread::ThreadMain()
{
  // A stack overflow on this thread still reaches the crash handler.
  const Linux::AlternateSignalStack signalStack;
  t_currentThread = this;
  if (!m_name.isEmpty())
    ThreadHandle::SetThreadName(m_name);
  try
  {
    Run();
  }
  catch (...)
  {
    m_handler->HandleException(std::current_exception(), detail::currentExceptionText());
  }
}

} // namespace RTE
