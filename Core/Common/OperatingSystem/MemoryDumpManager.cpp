#include "MemoryDumpManager.h"

#include "Linux/CoreDumpWriter_p.h"
#include "Linux/CrashSignals_p.h"
#include "ThreadsLog_p.h"

#include <Core/Common/OperatingSystem/Locations.h>

#include <QDateTime>
#include <QFile>
#include <QLoggingCategory>

#include <atomic>
#include <cerrno>
#include <climits>
#include <cstring>
#include <exception>
#include <fcntl.h>
#include <sys/syscall.h>
#include <unistd.h>

Q_LOGGING_CATEGORY(lcCrashDumps, "Core.CrashDumps", QtInfoMsg)

namespace RTE
{
namespace
{

using Linux::DumpDetail;

// What the crash path needs, prepared by registerHandlers: it cannot ask Qt or the heap.
char g_crashFolder[PATH_MAX];
std::atomic<bool> g_crashFolderReady{false};
std::atomic<DumpDetail> g_crashDetail{DumpDetail::Minimal};
std::atomic<long> g_utcOffsetSeconds{0};
std::terminate_handler g_previousTerminate = nullptr;

DumpDetail detailOf(MemoryDumpManager::DumpContent content)
{
  const unsigned int flags = MemoryDumpManager::dumpTypeFlags(content);
  if ((flags & MemoryDumpManager::DumpWithFullMemory) != 0)
    return DumpDetail::Full;
  if ((flags & MemoryDumpManager::DumpWithDataSegments) != 0)
    return DumpDetail::Medium;
  return DumpDetail::Minimal;
}

long currentUtcOffset()
{
  return QDateTime::currentDateTime().offsetFromUtc();
}

// folder + the file name of now; false when it does not fit.
bool composePath(char* out, std::size_t capacity, const char* folder, long utcOffset)
{
  timespec now{};
  clock_gettime(CLOCK_REALTIME, &now);
  const std::size_t folderLength = std::strlen(folder);
  if (folderLength + Linux::DumpFileNameSize > capacity)
    return false;
  std::memcpy(out, folder, folderLength);
  Linux::formatDumpFileName(out + folderLength, now.tv_sec, utcOffset);
  return true;
}

constexpr int HelperFailed = -1;

// Creates path, lets the writer fill it, removes it when the dump failed. Returns 0, the
// error of creating the file, or HelperFailed. Async-signal-safe.
int writeDumpFile(const char* path, DumpDetail detail, const Linux::CrashContext* crash)
{
  const int fd = open(path, O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
  if (fd < 0)
    return errno;
  const bool written = Linux::writeCoreDump(fd, detail, crash);
  close(fd);
  if (written)
    return 0;
  unlink(path);
  return HelperFailed;
}

void writeCrashDump(int signalNumber, siginfo_t* info, void* context)
{
  if (!g_crashFolderReady.load())
    return;
  char path[PATH_MAX];
  if (!composePath(path, sizeof path, g_crashFolder, g_utcOffsetSeconds.load()))
    return;
  Linux::CrashContext crash;
  crash.signalNumber = signalNumber;
  crash.info = info;
  crash.context = static_cast<const ucontext_t*>(context);
  crash.threadId = static_cast<pid_t>(syscall(SYS_gettid));
  writeDumpFile(path, g_crashDetail.load(), &crash);
}

// An exception nobody caught: name it in the log, then abort, whose SIGABRT writes the dump.
[[noreturn]] void onTerminate()
{
  if (std::current_exception())
    qCCritical(lcCrashDumps) << "Terminating on an uncaught exception:" << detail::currentExceptionText();
  else
    qCCritical(lcCrashDumps) << "std::terminate called without an exception";
  if (g_previousTerminate != nullptr && g_previousTerminate != &onTerminate)
    g_previousTerminate();
  std::abort();
}

} // namespace

MemoryDumpManager& MemoryDumpManager::getInstance()
{
  static MemoryDumpManager instance;
  return instance;
}

MemoryDumpManager::DumpContent MemoryDumpManager::parseDumpContent(const QString& text)
{
  if (text.compare(QLatin1String("Full"), Qt::CaseInsensitive) == 0)
    return DumpContent::Full;
  if (text.compare(QLatin1String("Medium"), Qt::CaseInsensitive) == 0)
    return DumpContent::Medium;
  return DefaultDumpContent;
}

MemoryDumpManager::DumpContent MemoryDumpManager::getDumpContent()
{
  return parseDumpContent(qEnvironmentVariable(DumpContentEnvVarName));
}

void MemoryDumpManager::registerHandlers()
{
  std::lock_guard lock(m_mutex);
  if (!Linux::prepareCoreDumpWriter())
    qCWarning(lcCrashDumps) << "No memory for the crash-dump helper; crashes will not be dumped";
  const QByteArray folder = QFile::encodeName(Locations::getProgramDataSettingsPath() + QStringLiteral("log/"));
  g_crashFolderReady.store(false);
  if (static_cast<std::size_t>(folder.size()) + Linux::DumpFileNameSize <= sizeof g_crashFolder)
  {
    std::memcpy(g_crashFolder, folder.constData(), static_cast<std::size_t>(folder.size()) + 1);
    g_crashFolderReady.store(true);
  }
  else
    qCWarning(lcCrashDumps) << "The dump folder path is too long; crashes will not be dumped:" << folder;
  g_crashDetail.store(detailOf(getDumpContent()));
  g_utcOffsetSeconds.store(currentUtcOffset());
  Linux::setCrashDumpWriter(&writeCrashDump);
  const std::terminate_handler previous = std::set_terminate(&onTerminate);
  if (previous != &onTerminate)
    g_previousTerminate = previous;
}

QString MemoryDumpManager::createMemoryDump(const ExceptionInformation& info)
{
  return writeDump(&info);
}

QString MemoryDumpManager::createMemoryDump()
{
  return writeDump(nullptr);
}

QString MemoryDumpManager::writeDump(const ExceptionInformation* info)
{
  std::lock_guard lock(m_mutex);
  const QByteArray folder = QFile::encodeName(Locations::getProgramDataSettingsPath() + QStringLiteral("log/"));
  QByteArray path(folder.size() + static_cast<int>(Linux::DumpFileNameSize), '\0');
  composePath(path.data(), static_cast<std::size_t>(path.size()), folder.constData(), currentUtcOffset());
  path.truncate(static_cast<int>(std::strlen(path.constData())));

  const DumpContent content = getDumpContent();
  // Without a crash, this thread's registers from here: the dump then shows it in
  // createMemoryDump rather than deep in the wait for the helper, and the helper has them
  // even where it cannot read them through ptrace.
  ucontext_t here;
  getcontext(&here);
  Linux::CrashContext crash;
  crash.signalNumber = info != nullptr ? info->signalNumber : 0;
  crash.info = info != nullptr ? info->info : nullptr;
  crash.context = info != nullptr ? info->context : &here;
  crash.threadId = static_cast<pid_t>(syscall(SYS_gettid));
  const int error =
      Linux::prepareCoreDumpWriter() ? writeDumpFile(path.constData(), detailOf(content), &crash) : ENOMEM;
  if (error == 0)
    qCInfo(lcCrashDumps) << "Memory dump written to" << path;
  else
    qCWarning(lcCrashDumps) << "No memory dump written to" << path << ":"
                            << (error == HelperFailed ? QStringLiteral("the dump helper failed")
                                                      : qt_error_string(error));
  const QString result = QFile::decodeName(path);
  m_lastPath = result;
  return result;
}

std::optional<QString> MemoryDumpManager::getLastCrashDumpFilePath() const
{
  std::lock_guard lock(m_mutex);
  return m_lastPath;
}

} // namespace RTE
