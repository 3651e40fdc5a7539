// `rte crash`: lets a child of this tool crash on purpose and shows the dump it wrote.
//
//   rte crash --level medium
//   child ended by signal 11 (SEGV)
//   dump: /opt/app/ProgramData/log/2026-11-24_00-12-03_crash.dmp
//   size: 359916 bytes (351.5 KiB)
//   #0  0x000055d1c2a3b1f4 in rteCrashOnPurpose () at .../CrashCommand.cpp:31
//   ...
#include "Command.h"

#include <Core/Common/OperatingSystem/Locations.h>
#include <Core/Common/OperatingSystem/MemoryDumpManager.h>

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <cstring>
#include <thread>
#include <unistd.h>

namespace
{

volatile int* volatile g_nowhere = nullptr;

// The function the backtrace names: a write through a null pointer.
extern "C" __attribute__((noinline)) void rteCrashOnPurpose()
{
  *g_nowhere = 1;
}

[[noreturn]] void crashNow()
{
  RTE::MemoryDumpManager::getInstance().registerHandlers();
  // A second thread, waiting, so that the dump holds more than the crashing one.
  std::thread(
      []
      {
        for (;;)
          pause();
      })
      .detach();
  rteCrashOnPurpose();
  _exit(3); // not reached
}

QString signalText(int signalNumber)
{
  const char* name = sigabbrev_np(signalNumber);
  return QStringLiteral("%1 (%2)").arg(signalNumber).arg(QString::fromLatin1(name != nullptr ? name : "?"));
}

// The newest dump in folder written at or after since (whole seconds: the name has no more).
QString newestDump(const QString& folder, const QDateTime& since)
{
  const QFileInfoList dumps = QDir(folder).entryInfoList({QStringLiteral("*_crash.dmp")}, QDir::Files, QDir::Time);
  if (dumps.isEmpty() || dumps.first().lastModified().toSecsSinceEpoch() < since.toSecsSinceEpoch())
    return {};
  return dumps.first().absoluteFilePath();
}

int runCrash(const QStringList& arguments)
{
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Starts a child of this tool that crashes on purpose (a null pointer in rteCrashOnPurpose),\n"
                     "then prints the path and size of the memory dump it wrote and, when gdb is installed,\n"
                     "the crashed thread's backtrace read from the dump. Dumps go to the program data's\n"
                     "\"log/\" folder, which this command creates when it is missing."));
  parser.addHelpOption();
  const QCommandLineOption level(QStringLiteral("level"),
                                 QStringLiteral("Detail of the dump: minimal (default), medium or full."),
                                 QStringLiteral("LEVEL"), QStringLiteral("minimal"));
  QCommandLineOption child(QStringLiteral("crash-now"));
  child.setFlags(QCommandLineOption::HiddenFromHelp);
  parser.addOptions({level, child});
  if (const std::optional<int> stop = rte::parseCommandLine(parser, arguments))
    return *stop;
  if (parser.isSet(child))
    crashNow();
  const QString levelText = parser.value(level);
  if (!QStringList{QStringLiteral("minimal"), QStringLiteral("medium"), QStringLiteral("full")}.contains(
          levelText, Qt::CaseInsensitive))
  {
    rte::err() << "rte crash: unknown level '" << levelText << "' (minimal, medium or full)\n";
    return 2;
  }
  if (!parser.positionalArguments().isEmpty())
  {
    rte::err() << "Usage: rte crash [--level minimal|medium|full]\n";
    return 2;
  }

  const QString folder = RTE::Locations::getProgramDataSettingsPath() + QStringLiteral("log/");
  if (!QDir().mkpath(folder))
  {
    rte::err() << "rte crash: cannot create the dump folder " << folder << "\n";
    return 1;
  }
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QString::fromLatin1(RTE::MemoryDumpManager::DumpContentEnvVarName), levelText);
  QProcess process;
  process.setProcessEnvironment(environment);
  process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
  const QDateTime started = QDateTime::currentDateTime();
  process.start(QCoreApplication::applicationFilePath(), {QStringLiteral("crash"), QStringLiteral("--crash-now")});
  if (!process.waitForFinished(60000))
  {
    process.kill();
    rte::err() << "rte crash: the child did not end within a minute\n";
    return 1;
  }
  if (process.exitStatus() == QProcess::CrashExit)
    rte::out() << "child ended by signal " << signalText(process.exitCode()) << "\n";
  else
    rte::out() << "child exited with code " << process.exitCode() << "\n";

  const QString dump = newestDump(folder, started);
  if (dump.isEmpty())
  {
    rte::err() << "rte crash: no dump appeared in " << folder << "\n";
    return 1;
  }
  const qint64 size = QFileInfo(dump).size();
  const QString readable = size < 1024 * 1024 ? QStringLiteral("%1 KiB").arg(double(size) / 1024.0, 0, 'f', 1)
                                              : QStringLiteral("%1 MiB").arg(double(size) / 1048576.0, 0, 'f', 1);
  rte::out() << "level: " << levelText.toLower() << "\ndump: " << dump << "\nsize: " << size << " bytes (" << readable
             << ")\n";

  const QString gdb = QStandardPaths::findExecutable(QStringLiteral("gdb"));
  if (gdb.isEmpty())
  {
    rte::out() << "(gdb is not installed: no backtrace)\n";
    return 0;
  }
  QProcess debugger;
  debugger.start(gdb, {QStringLiteral("-batch"), QStringLiteral("-nx"), QStringLiteral("-ex"), QStringLiteral("bt 20"),
                       QCoreApplication::applicationFilePath(), dump});
  if (!debugger.waitForFinished(120000))
  {
    debugger.kill();
    rte::err() << "rte crash: gdb did not finish within two minutes\n";
    return 1;
  }
  // gdb names the crashing frame once when it loads the dump and again in the backtrace.
  const QStringList lines = QString::fromUtf8(debugger.readAllStandardOutput()).split(QLatin1Char('\n'));
  qsizetype backtraceStart = lines.size();
  for (qsizetype i = 0; i < lines.size(); ++i)
    if (lines[i].startsWith(QLatin1String("#0 ")))
      backtraceStart = i;
  rte::out() << "backtrace of the crashed thread (gdb):\n";
  for (const QString& line : lines)
    if (line.startsWith(QLatin1String("Program terminated")))
      rte::out() << "  " << line << "\n";
  for (qsizetype i = backtraceStart; i < lines.size(); ++i)
    if (lines[i].startsWith(QLatin1Char('#')))
      rte::out() << "  " << lines[i] << "\n";
  return 0;
}

const rte::CommandRegistration registration{
    {QStringLiteral("crash"), QStringLiteral("Crash a child on purpose and show its memory dump"), &runCrash}};

} // namespace
