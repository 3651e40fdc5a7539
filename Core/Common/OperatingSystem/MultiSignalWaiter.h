// Waits, processing events, until every one of several Qt signals has come.
//
//   Common::MultiSignalWaiter waiter;
//   waiter.addSignal(&camera, &Camera::stopped);
//   waiter.addSignal(&laser, &Laser::stopped);
//   waiter.setWaitAction([] { pollHardware(); });
//   camera.stop();
//   laser.stop();
//   waiter.waitForSignal(QEventLoop::ExcludeUserInputEvents);
//
// Signals may come from any thread: each is caught where it is emitted.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QEventLoop>
#include <QObject>

#include <functional>
#include <mutex>
#include <vector>

namespace Common
{

class CORECOMMON_EXPORT MultiSignalWaiter : public QObject
{
  Q_OBJECT

public:
  explicit MultiSignalWaiter(QObject* parent = nullptr);
  ~MultiSignalWaiter() override;

  // Adds `signal` of `sender` to the signals to wait for (its arguments are ignored).
  template <typename Sender, typename Signal>
  void addSignal(const Sender* sender, Signal signal)
  {
    const std::size_t index = addSlot();
    connect(
        sender, signal, this, [this, index] { markArrived(index); }, Qt::DirectConnection);
  }

  // Runs `action` on the waiting thread after every pass of event processing.
  void setWaitAction(std::function<void()> action);

  // Forgets which signals came and allows waitForSignal again.
  void reset();

  // Processes the calling thread's events with `flags`, yielding the thread between
  // passes, until every added signal came since construction or reset(), or until
  // `timeoutMs` passed (negative: no limit). Returns whether all came. Throws
  // RTE::InvalidRequest "MultiSignalWaiter::waitForSignal must not be called twice on
  // the same object!" when called again without reset().
  bool waitForSignal(QEventLoop::ProcessEventsFlags flags = QEventLoop::AllEvents, int timeoutMs = -1);

  // Whether every added signal came.
  bool allArrived() const;

private:
  std::size_t addSlot();
  void markArrived(std::size_t index);

  mutable std::mutex m_mutex; // guards m_arrived
  std::vector<bool> m_arrived;
  std::function<void()> m_waitAction;
  bool m_waitCalled = false;
};

} // namespace Common
