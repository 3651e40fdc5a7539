// Waits, processing events, until one Qt signal has come.
//
//   RTE::SignalWaiter finished(&loader, &Loader::finished);
//   loader.start();
//   if (!finished.wait(5000))
//     reportTimeout();
//
// The signal may come from any thread: it is caught where it is emitted.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QObject>

#include <atomic>

namespace RTE
{

class CORECOMMON_EXPORT SignalWaiter : public QObject
{
  Q_OBJECT

public:
  // A waiter to connect by hand to catchSignal.
  explicit SignalWaiter(QObject* parent = nullptr);

  // A waiter for `signal` of `sender` (any signal, its arguments are ignored).
  template <typename Sender, typename Signal>
  SignalWaiter(const Sender* sender, Signal signal) : SignalWaiter()
  {
    connect(sender, signal, this, &SignalWaiter::catchSignal, Qt::DirectConnection);
  }

  ~SignalWaiter() override;

  // Whether the signal came since construction or the last reset().
  bool hasArrived() const;
  void reset();

  // Processes the calling thread's events until the signal has come or `timeoutMs`
  // passed (negative: no limit); returns whether it came.
  bool wait(int timeoutMs = -1);

public slots:
  // Marks the signal arrived.
  void catchSignal();

private:
  std::atomic<bool> m_arrived{false};
};

} // namespace RTE
