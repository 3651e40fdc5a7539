// Demo step: a memory dump of the running process, written on request.
#include "Command.h"

#include <Core/Common/OperatingSystem/Locations.h>
#include <Core/Common/OperatingSystem/MemoryDumpManager.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace
{

const char* levelName(RTE::MemoryDumpManager::DumpContent content)
{
  switch (content)
  {
  case RTE::MemoryDumpManager::DumpContent::Full:
    return "full";
  case RTE::MemoryDumpManager::DumpContent::Medium:
    return "medium";
  case RTE::MemoryDumpManager::DumpContent::Minimal:
    break;
  }
  return "minimal";
}

void demoCrashDump(QTextStream& out)
{
  RTE::MemoryDumpManager& manager = RTE::MemoryDumpManager::getInstance();
  const QString folder = RTE::Locations::getProgramDataSettingsPath() + QStringLiteral("log/");
  out << "Dumps go to " << folder << " as yyyy-MM-dd_hh-mm-ss_crash.dmp, with the detail named by "
      << RTE::MemoryDumpManager::DumpContentEnvVarName
      << " (now: " << levelName(RTE::MemoryDumpManager::getDumpContent()) << ").\n";
  const bool created = !QFileInfo::exists(folder) && QDir().mkpath(folder);
  const QString path = manager.createMemoryDump();
  const QFileInfo dump(path);
  if (dump.exists())
    out << "A dump of this process on request: " << dump.fileName() << ", " << dump.size()
        << " bytes; an ELF core file that \"gdb rte " << dump.fileName() << "\" opens.\n";
  else
    out << "No dump could be written to " << path << "\n";
  out << "getLastCrashDumpFilePath() = " << manager.getLastCrashDumpFilePath().value_or(QStringLiteral("none"))
      << "\nThe demo removes its dump again; `rte crash` shows one of a real crash.\n";
  QFile::remove(path);
  if (created)
    QDir().rmdir(folder);
}

const rte::DemoStepRegistration step{{96, QStringLiteral("Memory dumps"), &demoCrashDump}};

} // namespace
