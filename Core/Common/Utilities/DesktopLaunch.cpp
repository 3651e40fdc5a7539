#include <Core/Common/Utilities/DesktopLaunch_p.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

Q_LOGGING_CATEGORY(lcDesktopLaunch, "Core.Utilities.Launch", QtInfoMsg)

namespace RTE::DesktopLaunch
{

qint64 startDetached(const QString& program, const QStringList& arguments, const QString& purpose)
{
  // Resolved here rather than left to QProcess: the error can then say which program is
  // missing, and nothing waits on a program that is not there.
  const QString path = program.contains(QLatin1Char('/')) ? QFileInfo(program).absoluteFilePath()
                                                          : QStandardPaths::findExecutable(program);
  const QFileInfo info(path);
  if (path.isEmpty() || !info.isFile() || !info.isExecutable())
  {
    Raise(InvalidRequest(QCoreApplication::translate("RTE::DesktopLaunch",
                                                     "Cannot open %1: the program '%2' was not found or is not "
                                                     "executable.")
                             .arg(purpose, program)));
  }
  qint64 pid = 0;
  if (!QProcess::startDetached(path, arguments, QString(), &pid))
  {
    Raise(InvalidRequest(QCoreApplication::translate("RTE::DesktopLaunch", "Cannot open %1: the program '%2' did not "
                                                                           "start.")
                             .arg(purpose, path)));
  }
  // One multi-argument arg(): a path holding "%2" must not be read as a placeholder.
  qCInfo(lcDesktopLaunch).noquote() << QStringLiteral("Started %1 for %2 (process %3): %4")
                                           .arg(path, purpose, QString::number(pid), arguments.join(QLatin1Char(' ')));
  return pid;
}

} // namespace RTE::DesktopLaunch
