#include <Core/Common/OperatingSystem/C_SystemInfo.h>

#include "OperatingSystemLog_p.h"

#include <QDeadlineTimer>
#include <QProcess>

#ifdef Q_OS_UNIX
#include <csignal>
#include <unistd.h>
#endif

namespace RTE
{

namespace
{

QStringList splitLines(const QByteArray& output)
{
  QStringList lines = QString::fromLocal8Bit(output).split(QLatin1Char('\n'));
  // Output that ends with a line end does not end with an empty line.
  if (!lines.isEmpty() && lines.last().isEmpty())
    lines.removeLast();
  for (QString& line : lines)
  {
    if (line.endsWith(QLatin1Char('\r')))
      line.chop(1);
  }
  return lines;
}

// What QProcess's waits take: -1 for no limit.
int remainingMs(const QDeadlineTimer& deadline)
{
  return deadline.isForever() ? -1 : static_cast<int>(deadline.remainingTime());
}

QStringList runProcess(const QString& program, const QStringList& arguments, int timeoutMs)
{
  QProcess process;
  process.setProgram(program);
  process.setArguments(arguments);
  process.setStandardInputFile(QProcess::nullDevice());
#ifdef Q_OS_UNIX
  // A group of its own, so that a timeout ends what the program started, too.
  process.setChildProcessModifier([] { ::setpgid(0, 0); });
#endif
  // One limit for starting and running together.
  QDeadlineTimer deadline(timeoutMs < 0 ? QDeadlineTimer::Forever : timeoutMs);
  process.start();
  if (!process.waitForStarted(remainingMs(deadline)))
  {
    qCWarning(lcOperatingSystem).noquote() << "Could not start" << program << ":" << process.errorString();
    return {};
  }
  if (!process.waitForFinished(remainingMs(deadline)))
  {
    qCWarning(lcOperatingSystem).noquote() << program << "did not finish within" << timeoutMs << "ms and was killed";
#ifdef Q_OS_UNIX
    ::kill(-static_cast<pid_t>(process.processId()), SIGKILL);
#endif
    process.kill();
    process.waitForFinished(1000);
  }
  else if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
  {
    qCInfo(lcOperatingSystem).noquote() << program << "ended with exit code" << process.exitCode()
                                        << (process.exitStatus() == QProcess::CrashExit ? "(crashed)" : "");
  }
  const QByteArray errors = process.readAllStandardError();
  if (!errors.isEmpty())
    qCDebug(lcOperatingSystem).noquote() << program << "wrote to standard error:" << QString::fromLocal8Bit(errors);
  return splitLines(process.readAllStandardOutput());
}

} // namespace

C_SystemInfo& C_SystemInfo::GetInstance()
{
  static C_SystemInfo instance;
  return instance;
}

QStringList C_SystemInfo::RunCommandAndReturnOutput(const QString& program, const QStringList& arguments,
                                                    int timeoutMs) const
{
  return runProcess(program, arguments, timeoutMs);
}

QStringList C_SystemInfo::RunCommandInShellAndReturnOutput(const QString& command, const QStringList& arguments,
                                                           int timeoutMs) const
{
  // sh -c 'command "$@"' sh a b: the shell interprets the command, while each argument
  // reaches it as one word whatever blanks or quotes it holds.
  QStringList shellArguments{QStringLiteral("-c")};
  shellArguments << (arguments.isEmpty() ? command : command + QStringLiteral(" \"$@\""));
  shellArguments << QStringLiteral("sh") << arguments;
  return runProcess(QStringLiteral("/bin/sh"), shellArguments, timeoutMs);
}

} // namespace RTE
