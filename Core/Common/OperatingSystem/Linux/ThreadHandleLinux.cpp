#include <Core/Common/OperatingSystem/ThreadHandle.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>

#include <QByteArray>
#include <QObject>

#include <dirent.h>
#include <pthread.h>
#include <sched.h>
#include <sys/resource.h>
#include <sys/sysinfo.h>
#include <sys/types.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <functional>

namespace RTE::ThreadHandle
{

namespace
{

// Linux keeps priority and affinity per thread: a process-wide setting is applied to
// every thread listed under /proc/self/task. Returns false if any of them refused.
bool forEveryThreadOfProcess(const std::function<bool(pid_t)>& apply)
{
  DIR* tasks = ::opendir("/proc/self/task");
  if (!tasks)
    return false;
  bool allApplied = true;
  while (const dirent* entry = ::readdir(tasks))
  {
    if (entry->d_name[0] == '.')
      continue;
    const auto tid = static_cast<pid_t>(std::strtol(entry->d_name, nullptr, 10));
    // A thread that ended since the listing is no failure.
    if (tid > 0 && !apply(tid) && errno != ESRCH)
      allApplied = false;
  }
  ::closedir(tasks);
  return allApplied;
}

pid_t targetThread(ThreadId thread)
{
  return thread == 0 ? ::gettid() : static_cast<pid_t>(thread);
}

bool setPolicy(pid_t tid, int policy, int priority)
{
  sched_param parameter{};
  parameter.sched_priority = priority;
  return ::sched_setscheduler(tid, policy, &parameter) == 0;
}

bool setNice(pid_t tid, int nice)
{
  return ::setpriority(PRIO_PROCESS, static_cast<id_t>(tid), nice) == 0;
}

bool setAffinity(const cpu_set_t& cpus)
{
  return forEveryThreadOfProcess([&cpus](pid_t tid) { return ::sched_setaffinity(tid, sizeof cpus, &cpus) == 0; });
}

} // namespace

ThreadId GetThreadId()
{
  // Cached per thread: gettid is a system call and thread ids never change.
  thread_local const ThreadId id = static_cast<ThreadId>(::gettid());
  return id;
}

ThreadId GetMainThreadId()
{
  // On Linux the first thread's id is the process id.
  return static_cast<ThreadId>(::getpid());
}

bool IsMainThread()
{
  return GetThreadId() == GetMainThreadId();
}

NativeHandle GetThreadHandle()
{
  return static_cast<NativeHandle>(::pthread_self());
}

std::uint64_t GetProcessId()
{
  return static_cast<std::uint64_t>(::getpid());
}

NativeHandle GetProcessHandle()
{
  return static_cast<NativeHandle>(::getpid());
}

bool SetPriority(E_ThreadPriority priority, ThreadId thread)
{
  const pid_t tid = targetThread(thread);
  switch (priority)
  {
  case E_ThreadPriority::Idle:
    return setPolicy(tid, SCHED_IDLE, 0);
  case E_ThreadPriority::TimeCritical:
    // The lowest real-time priority: ahead of every normal thread, yet below any
    // real-time thread the system itself runs.
    return setPolicy(tid, SCHED_FIFO, ::sched_get_priority_min(SCHED_FIFO));
  default:
    break;
  }
  int nice = 0;
  switch (priority)
  {
  case E_ThreadPriority::Lowest:
    nice = 10;
    break;
  case E_ThreadPriority::BelowNormal:
    nice = 5;
    break;
  case E_ThreadPriority::AboveNormal:
    nice = -5;
    break;
  case E_ThreadPriority::Highest:
    nice = -10;
    break;
  default:
    break;
  }
  const int policy = ::sched_getscheduler(tid);
  if (policy < 0)
    return false;
  if (policy != SCHED_OTHER && !setPolicy(tid, SCHED_OTHER, 0))
    return false;
  return setNice(tid, nice);
}

bool SetAppPriorityClass(E_PriorityClass priorityClass)
{
  int nice = 0;
  switch (priorityClass)
  {
  case E_PriorityClass::Idle:
    nice = 19;
    break;
  case E_PriorityClass::BelowNormal:
    nice = 10;
    break;
  case E_PriorityClass::Normal:
    nice = 0;
    break;
  case E_PriorityClass::AboveNormal:
    nice = -5;
    break;
  case E_PriorityClass::High:
    nice = -10;
    break;
  case E_PriorityClass::Realtime:
    nice = -20;
    break;
  }
  return forEveryThreadOfProcess([nice](pid_t tid) { return setNice(tid, nice); });
}

bool SetThreadName(const QString& name)
{
  // The kernel keeps 15 bytes and a terminating zero.
  constexpr qsizetype kernelLimit = 15;
  QByteArray utf8 = name.toUtf8();
  if (utf8.size() > kernelLimit)
  {
    qsizetype cut = kernelLimit;
    // A continuation byte at the cut means the character before it would be split.
    while (cut > 0 && (static_cast<unsigned char>(utf8[cut]) & 0xC0) == 0x80)
      --cut;
    utf8.truncate(cut);
  }
  return ::pthread_setname_np(::pthread_self(), utf8.constData()) == 0;
}

bool SetProcessCoreAffinity(int firstCore, int coreCount, int step)
{
  if (firstCore < 0 || coreCount < 1 || step < 1)
  {
    Raise(InvalidArgumentError(QObject::tr("Invalid processor selection: first %1, count %2, step %3")
                                   .arg(firstCore)
                                   .arg(coreCount)
                                   .arg(step)));
  }
  const long long last = firstCore + static_cast<long long>(coreCount - 1) * step;
  if (last >= CPU_SETSIZE)
  {
    Raise(InvalidArgumentError(
        QObject::tr("Processor %1 is beyond the %2 processors the system can address").arg(last).arg(CPU_SETSIZE)));
  }
  cpu_set_t cpus;
  CPU_ZERO(&cpus);
  for (int i = 0; i < coreCount; ++i)
    CPU_SET(firstCore + i * step, &cpus);
  return setAffinity(cpus);
}

bool SetProcessGroupAffinity(int group)
{
  if (group != 0)
    return false;
  cpu_set_t cpus;
  CPU_ZERO(&cpus);
  const int configured = ::get_nprocs_conf();
  for (int cpu = 0; cpu < configured && cpu < CPU_SETSIZE; ++cpu)
    CPU_SET(cpu, &cpus);
  return setAffinity(cpus);
}

QString dumpCoreAndProcessAffinity()
{
  cpu_set_t cpus;
  CPU_ZERO(&cpus);
  if (::sched_getaffinity(::getpid(), sizeof cpus, &cpus) != 0)
    CPU_ZERO(&cpus);
  int highest = -1;
  for (int cpu = 0; cpu < CPU_SETSIZE; ++cpu)
  {
    if (CPU_ISSET(cpu, &cpus))
      highest = cpu;
  }
  // Four processors per hexadecimal digit, the highest first.
  QString mask = QStringLiteral("0x");
  for (int nibble = highest < 0 ? 0 : highest / 4; nibble >= 0; --nibble)
  {
    int digit = 0;
    for (int bit = 0; bit < 4; ++bit)
    {
      if (CPU_ISSET(nibble * 4 + bit, &cpus))
        digit |= 1 << bit;
    }
    mask += QLatin1Char("0123456789abcdef"[digit]);
  }
  return QStringLiteral("cpu affinity: %1 / group affinity: %2").arg(mask, QStringLiteral("none"));
}

} // namespace RTE::ThreadHandle
