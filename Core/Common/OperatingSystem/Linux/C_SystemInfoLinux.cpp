#include <Core/Common/OperatingSystem/C_SystemInfo.h>

#include <QByteArray>
#include <QFile>

#include <unistd.h>

namespace RTE
{

std::uint32_t C_SystemInfo::GetProcessorNumber() const
{
  const long online = ::sysconf(_SC_NPROCESSORS_ONLN);
  return online > 0 ? static_cast<std::uint32_t>(online) : 1;
}

std::uint64_t C_SystemInfo::GetMemoryProcess() const
{
  // "VmRSS:   123456 kB" in the process's status file.
  QFile status(QStringLiteral("/proc/self/status"));
  if (!status.open(QIODevice::ReadOnly | QIODevice::Text))
    return 0;
  // readAll, not atEnd/readLine: files under /proc report a size of 0.
  const QList<QByteArray> lines = status.readAll().split('\n');
  for (const QByteArray& line : lines)
  {
    if (line.startsWith("VmRSS:"))
    {
      const QList<QByteArray> fields = line.mid(6).simplified().split(' ');
      bool ok = false;
      const std::uint64_t kib = fields.value(0).toULongLong(&ok);
      return ok ? kib : 0;
    }
  }
  return 0;
}

std::uint32_t C_SystemInfo::GetGdiObjectCount() const
{
  return 0;
}

} // namespace RTE
