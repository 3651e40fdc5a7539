#include <Core/Common/OperatingSystem/MultiSignalWaiter.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

#include <algorithm>

namespace Common
{

MultiSignalWaiter::MultiSignalWaiter(QObject* parent) : QObject(parent) {}

MultiSignalWaiter::~MultiSignalWaiter() = default;

std::size_t MultiSignalWaiter::addSlot()
{
  std::lock_guard lock(m_mutex);
  m_arrived.push_back(false);
  return m_arrived.size() - 1;
}

void MultiSignalWaiter::markArrived(std::size_t index)
{
  std::lock_guard lock(m_mutex);
  m_arrived[index] = true;
}

void MultiSignalWaiter::setWaitAction(std::function<void()> action)
{
  m_waitAction = std::move(action);
}

void MultiSignalWaiter::reset()
{
  std::lock_guard lock(m_mutex);
  std::fill(m_arrived.begin(), m_arrived.end(), false);
  m_waitCalled = false;
}

bool MultiSignalWaiter::allArrived() const
{
  std::lock_guard lock(m_mutex);
  return std::all_of(m_arrived.begin(), m_arrived.end(), [](bool arrived) { return arrived; });
}

bool MultiSignalWaiter::waitForSignal(QEventLoop::ProcessEventsFlags flags, int timeoutMs)
{
  if (m_waitCalled)
    RTE::Raise(RTE::InvalidRequest(
        QStringLiteral("MultiSignalWaiter::waitForSignal must not be called twice on the same object!")));
  m_waitCalled = true;

  const QDeadlineTimer deadline(timeoutMs < 0 ? qint64(-1) : qint64(timeoutMs)); // -1: never expires
  while (!allArrived())
  {
    if (deadline.hasExpired())
      return false;
    QCoreApplication::processEvents(flags);
    if (m_waitAction)
      m_waitAction();
    QThread::yieldCurrentThread();
  }
  return true;
}

} // namespace Common
