// Receives the session manager's D-Bus notices and the termination signals on the main
// thread and turns them into OperatingSystem callbacks; not installed.
#pragma once

#include <QObject>

namespace RTE::detail
{

class SystemEventReceiver : public QObject
{
  Q_OBJECT

public:
  // Reads the signal numbers the handler writes into the pipe's read end (none if -1).
  SystemEventReceiver(int signalPipe, QObject* parent);

public Q_SLOTS:
  void onPrepareForShutdown(bool start);
  void onPrepareForSleep(bool start);

private:
  void onSignalPipeReadable();

  int m_signalPipe;
};

} // namespace RTE::detail
