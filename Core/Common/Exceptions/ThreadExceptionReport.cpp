#include <Core/Common/Exceptions/ThreadExceptionReport.h>
#include <Core/Common/OperatingSystem/ThreadHandle.h>

#include <map>
#include <mutex>

namespace RTE::ThreadExceptionReport
{

namespace
{

// Key 0 is the main thread; other threads are keyed by their id.
using Table = std::map<ThreadHandle::ThreadId, QString>;

std::mutex& tableMutex()
{
  static std::mutex mutex;
  return mutex;
}

Table& table()
{
  static Table entries;
  return entries;
}

ThreadHandle::ThreadId currentKey()
{
  return ThreadHandle::IsMainThread() ? 0 : ThreadHandle::GetThreadId();
}

} // namespace

void Add(const QString& text)
{
  const auto key = currentKey();
  std::lock_guard lock(tableMutex());
  table()[key] = text;
}

void UnregisterThread()
{
  const auto key = currentKey();
  std::lock_guard lock(tableMutex());
  table().erase(key);
}

void Clean()
{
  std::lock_guard lock(tableMutex());
  table().clear();
}

QString Dump()
{
  std::lock_guard lock(tableMutex());
  Table& entries = table();
  QString report = QStringLiteral("Main thread: ") + entries[0] + QLatin1Char('\n');
  for (const auto& [id, text] : entries)
  {
    if (id != 0)
      report += QStringLiteral("Thread id=%1: %2\n").arg(QString::number(id), text);
  }
  return report;
}

} // namespace RTE::ThreadExceptionReport
