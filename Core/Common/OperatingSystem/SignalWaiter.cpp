#include <Core/Common/OperatingSystem/SignalWaiter.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QThread>

namespace RTE
{

SignalWaiter::SignalWaiter(QObject* parent) : QObject(parent) {}

SignalWaiter::~SignalWaiter() = default;

bool SignalWaiter::hasArrived() const
{
  return m_arrived.load(std::memory_order_acquire);
}

void SignalWaiter::reset()
{
  m_arrived.store(false, std::memory_order_release);
}

void SignalWaiter::catchSignal()
{
  m_arrived.store(true, std::memory_order_release);
}

bool SignalWaiter::wait(int timeoutMs)
{
  const QDeadlineTimer deadline(timeoutMs < 0 ? qint64(-1) : qint64(timeoutMs)); // -1: never expires
  while (!hasArrived())
  {
    if (deadline.hasExpired())
      return false;
    QCoreApplication::processEvents(QEventLoop::AllEvents);
    QThread::yieldCurrentThread();
  }
  return true;
}

} // namespace RTE
