#include <Core/Common/OperatingSystem/C_SystemInfo.h>

#include "../OperatingSystemLog_p.h"
#include "OperatingSystemLinux_p.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <atomic>
#include <climits>
#include <condition_variable>
#include <cstring>
#include <optional>
#include <thread>

#include <csignal>
#include <ctime>
#include <pwd.h>
#include <unistd.h>

namespace RTE
{

namespace
{

// "Name:   123456 kB" of a /proc status-like file, in KiB; nullopt if missing.
std::optional<std::uint64_t> kibField(const QByteArray& content, const QByteArray& name)
{
  for (const QByteArray& line : content.split('\n'))
  {
    if (line.startsWith(name) && line.size() > name.size() && line[name.size()] == ':')
    {
      const QList<QByteArray> fields = line.mid(name.size() + 1).simplified().split(' ');
      bool ok = false;
      const std::uint64_t kib = fields.value(0).toULongLong(&ok);
      if (ok)
        return kib;
    }
  }
  return std::nullopt;
}

// Busy and total ticks of all processors, from the "cpu" line of /proc/stat.
struct CpuTimes
{
  std::uint64_t busy = 0;
  std::uint64_t total = 0;
};

std::optional<CpuTimes> readCpuTimes()
{
  const QByteArray stat = detail::readSystemFile(QStringLiteral("/proc/stat"));
  const qsizetype end = stat.indexOf('\n');
  const QByteArray line = stat.left(end < 0 ? stat.size() : end);
  if (!line.startsWith("cpu "))
    return std::nullopt;
  // user nice system idle iowait irq softirq steal (guest times are inside user/nice).
  const QList<QByteArray> fields = line.mid(4).simplified().split(' ');
  if (fields.size() < 4)
    return std::nullopt;
  CpuTimes times;
  for (qsizetype i = 0; i < std::min<qsizetype>(fields.size(), 8); ++i)
  {
    bool ok = false;
    const std::uint64_t value = fields[i].toULongLong(&ok);
    if (!ok)
      return std::nullopt;
    times.total += value;
    if (i != 3 && i != 4) // idle, iowait
      times.busy += value;
  }
  return times;
}

QString readExeLink(const QString& procPath)
{
  QString target = QFile::symLinkTarget(procPath);
  // An executable replaced or removed while it runs.
  if (target.endsWith(QLatin1String(" (deleted)")))
    target.chop(10);
  return target;
}

} // namespace

struct C_SystemInfo::CpuSampler
{
  std::thread thread;
  std::mutex mutex;
  std::condition_variable wake;
  // Atomic although set under the mutex: the timed wait below (pthread_cond_clockwait) is
  // invisible to ThreadSanitizer, which would otherwise see the flag unguarded.
  std::atomic<bool> stop{false};
  std::atomic<double> load{0.0};

  void run(std::chrono::milliseconds period)
  {
    std::optional<CpuTimes> previous = readCpuTimes();
    std::unique_lock lock(mutex);
    while (!wake.wait_for(lock, period, [this] { return stop.load(); }))
    {
      const std::optional<CpuTimes> now = readCpuTimes();
      if (now && previous && now->total > previous->total)
      {
        const double busy = static_cast<double>(now->busy - std::min(now->busy, previous->busy));
        load.store(std::clamp(100.0 * busy / static_cast<double>(now->total - previous->total), 0.0, 100.0));
      }
      previous = now;
    }
  }
};

C_SystemInfo::C_SystemInfo() = default;

C_SystemInfo::~C_SystemInfo()
{
  StopCPUThread();
}

std::uint32_t C_SystemInfo::GetProcessorNumber() const
{
  const long online = ::sysconf(_SC_NPROCESSORS_ONLN);
  return online > 0 ? static_cast<std::uint32_t>(online) : 1;
}

std::uint32_t C_SystemInfo::GetProcessorSpeedMHz() const
{
  bool ok = false;
  const std::uint64_t kHz =
      detail::readSystemFile(QStringLiteral("/sys/devices/system/cpu/cpu0/cpufreq/cpuinfo_max_freq"))
          .trimmed()
          .toULongLong(&ok);
  if (ok && kHz > 0)
    return static_cast<std::uint32_t>(kHz / 1000);
  // Virtual machines often have no cpufreq; /proc/cpuinfo still tells the current speed.
  for (const QByteArray& line : detail::readSystemFile(QStringLiteral("/proc/cpuinfo")).split('\n'))
  {
    if (line.startsWith("cpu MHz"))
    {
      const double mhz = line.mid(line.indexOf(':') + 1).trimmed().toDouble(&ok);
      if (ok && mhz > 0 && mhz < 1e6)
        return static_cast<std::uint32_t>(mhz + 0.5);
    }
  }
  return 0;
}

double C_SystemInfo::GetSystemLoad() const
{
  std::lock_guard lock(m_samplerMutex);
  return m_sampler ? m_sampler->load.load() : 0.0;
}

void C_SystemInfo::StartCPUThread(int periodMs)
{
  std::lock_guard lock(m_samplerMutex);
  if (m_sampler)
    return;
  m_sampler = std::make_unique<CpuSampler>();
  const std::chrono::milliseconds period(std::max(periodMs, 10));
  m_sampler->thread = std::thread(
      [sampler = m_sampler.get(), period]
      {
        ::pthread_setname_np(::pthread_self(), "CPULoadSampler");
        sampler->run(period);
      });
}

void C_SystemInfo::StopCPUThread()
{
  std::unique_ptr<CpuSampler> sampler;
  {
    std::lock_guard lock(m_samplerMutex);
    sampler = std::move(m_sampler);
  }
  if (!sampler)
    return;
  {
    std::lock_guard lock(sampler->mutex);
    sampler->stop.store(true);
  }
  sampler->wake.notify_all();
  sampler->thread.join();
}

std::uint32_t C_SystemInfo::GetMemoryUsage() const
{
  const QByteArray meminfo = detail::readSystemFile(QStringLiteral("/proc/meminfo"));
  const std::optional<std::uint64_t> total = kibField(meminfo, "MemTotal");
  const std::optional<std::uint64_t> avail = kibField(meminfo, "MemAvailable");
  if (!total || !avail || *total == 0)
    return 0;
  const std::uint64_t used = *total - std::min(*avail, *total);
  return static_cast<std::uint32_t>((used * 100 + *total / 2) / *total);
}

std::uint64_t C_SystemInfo::GetMemoryAvail() const
{
  return kibField(detail::readSystemFile(QStringLiteral("/proc/meminfo")), "MemAvailable").value_or(0);
}

std::uint64_t C_SystemInfo::GetMemoryTotal() const
{
  return kibField(detail::readSystemFile(QStringLiteral("/proc/meminfo")), "MemTotal").value_or(0);
}

std::uint64_t C_SystemInfo::GetMemoryProcess() const
{
  return kibField(detail::readSystemFile(QStringLiteral("/proc/self/status")), "VmRSS").value_or(0);
}

std::uint32_t C_SystemInfo::GetGdiObjectCount() const
{
  return 0;
}

bool C_SystemInfo::IsHighResTimeAvail() const
{
  timespec resolution{};
  return ::clock_getres(CLOCK_MONOTONIC, &resolution) == 0 && resolution.tv_sec == 0 && resolution.tv_nsec <= 1000;
}

std::uint32_t C_SystemInfo::GetHighResSystemCounter() const
{
  return static_cast<std::uint32_t>(GetHighResSystemCounter64());
}

std::uint64_t C_SystemInfo::GetHighResSystemCounter64() const
{
  timespec now{};
  ::clock_gettime(CLOCK_MONOTONIC, &now);
  return static_cast<std::uint64_t>(now.tv_sec) * 1000000000ULL + static_cast<std::uint64_t>(now.tv_nsec);
}

std::uint64_t C_SystemInfo::GetHighResSystemFrequency() const
{
  return 1000000000ULL; // the counter counts nanoseconds
}

std::uint64_t C_SystemInfo::GetHighResSystemMicroSec() const
{
  return GetHighResSystemCounter64() / 1000;
}

QString C_SystemInfo::GetHostName() const
{
  char name[HOST_NAME_MAX + 1] = {};
  if (::gethostname(name, sizeof(name) - 1) != 0)
    return {};
  return QString::fromLocal8Bit(name);
}

QString C_SystemInfo::getUserName() const
{
  long size = ::sysconf(_SC_GETPW_R_SIZE_MAX);
  std::vector<char> buffer(static_cast<std::size_t>(size > 0 ? size : 16384));
  passwd entry{};
  passwd* found = nullptr;
  if (::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found) == 0 && found && found->pw_name)
    return QString::fromLocal8Bit(found->pw_name);
  // A container user without an entry in the password file.
  return qEnvironmentVariable("USER");
}

QString C_SystemInfo::GetDomainName() const
{
  char nis[256] = {};
  if (::getdomainname(nis, sizeof(nis) - 1) == 0)
  {
    const QString domain = QString::fromLocal8Bit(nis);
    if (!domain.isEmpty() && domain != QLatin1String("(none)"))
      return domain;
  }
  const QString host = GetHostName();
  const qsizetype dot = host.indexOf(QLatin1Char('.'));
  return dot < 0 ? QString() : host.mid(dot + 1);
}

bool C_SystemInfo::isRemoteDesktop() const
{
  return detail::isRemoteSession();
}

QString C_SystemInfo::GetExecutableFile(std::uint64_t processId) const
{
  if (processId == 0 || processId > static_cast<std::uint64_t>(INT_MAX))
    return {};
  return readExeLink(QStringLiteral("/proc/%1/exe").arg(processId));
}

std::vector<C_SystemInfo::ProcessInfo> C_SystemInfo::GetProcessInfos(const QString& name) const
{
  std::vector<ProcessInfo> found;
  const QStringList entries = QDir(QStringLiteral("/proc")).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
  for (const QString& entry : entries)
  {
    bool ok = false;
    const std::uint64_t pid = entry.toULongLong(&ok);
    if (!ok || pid == 0)
      continue;
    ProcessInfo info;
    info.processId = pid;
    info.executableFile = readExeLink(QStringLiteral("/proc/%1/exe").arg(pid));
    if (!info.executableFile.isEmpty())
      info.name = QFileInfo(info.executableFile).fileName();
    else
      info.name = QString::fromLocal8Bit(detail::readSystemFile(QStringLiteral("/proc/%1/comm").arg(pid)).trimmed());
    // Kernel threads have neither; a process that ended during the walk neither.
    if (info.name.isEmpty())
      continue;
    if (name.isEmpty() || info.name == name)
      found.push_back(std::move(info));
  }
  std::sort(found.begin(), found.end(),
            [](const ProcessInfo& a, const ProcessInfo& b) { return a.processId < b.processId; });
  return found;
}

bool C_SystemInfo::killProcess(std::uint64_t processId) const
{
  // 0 and ids beyond pid_t would name process groups or every process to kill(2).
  if (processId == 0 || processId > static_cast<std::uint64_t>(INT_MAX))
    return false;
  if (::kill(static_cast<pid_t>(processId), SIGKILL) != 0)
  {
    qCInfo(lcOperatingSystem) << "Could not end process" << processId << ":" << ::strerror(errno);
    return false;
  }
  return true;
}

bool C_SystemInfo::IsUniqueProcessOfCurrentExecutable() const
{
  const QString own = readExeLink(QStringLiteral("/proc/self/exe"));
  const std::uint64_t ownId = static_cast<std::uint64_t>(::getpid());
  const std::vector<ProcessInfo> namesakes = GetProcessInfos(QFileInfo(own).fileName());
  return std::none_of(namesakes.begin(), namesakes.end(),
                      [&](const ProcessInfo& process)
                      { return process.processId != ownId && process.executableFile == own; });
}

} // namespace RTE
