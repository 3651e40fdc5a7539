// Receives the session manager's D-Bus notices and the termination signals on the main
// thread and turns them into OperatingSystem callbacks; not installed.
#pragma once

#include <QDBusUnixFileDescriptor>
#include <QObject>

namespace RTE::detail
{

class SystemEventReceiver : public QObject
{
  Q_OBJECT

public:
  // Reads the signal numbers the handler writes into the pipe's read end (none if -1).
  SystemEventReceiver(int signalPipe, QObject* parent);

  // Takes the session manager's delay lock for sleep and shutdown (logged if refused).
  void takeDelayLock();

public Q_SLOTS:
  void onPrepareForShutdown(bool start);
  void onPrepareForSleep(bool start);

private:
  void onSignalPipeReadable();

  int m_signalPipe;
  QDBusUnixFileDescriptor m_delayLock;
};

} // namespace RTE::detail
