// Crash signal handling shared by the dump manager and the operating-system callbacks.
// The handler runs on an alternate stack and uses only async-signal-safe calls.
#include "CrashSignals_p.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>

#include <QObject>

#include <atomic>
#include <mutex>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace RTE::Linux
{
namespace
{

constexpr int CrashSignals[] = {SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT};
constexpr int MaxObservers = 16;
constexpr unsigned long AlternateStackSize = 64 * 1024;

std::once_flag g_installOnce;
struct sigaction g_previous[NSIG];
std::atomic<CrashDumpWriter> g_writer{nullptr};
std::atomic<CrashObserver> g_observers[MaxObservers];
std::atomic<int> g_observerCount{0};
std::mutex g_observerMutex; // only between adders, never in the handler
// The kernel id of the thread that handles the crash; 0 before any.
std::atomic<pid_t> g_crashingThread{0};

pid_t currentThreadId()
{
  return static_cast<pid_t>(syscall(SYS_gettid));
}

// Puts the previous disposition back and lets it act. A signal that was sent (abort,
// raise, kill) is sent again and arrives when the handler returns; a fault recurs when
// the faulting instruction runs again.
void handOn(int signalNumber, const siginfo_t* info)
{
  sigaction(signalNumber, &g_previous[signalNumber], nullptr);
  if (info == nullptr || info->si_code <= 0 || signalNumber == SIGABRT)
    syscall(SYS_tgkill, getpid(), currentThreadId(), signalNumber);
}

void onCrashSignal(int signalNumber, siginfo_t* info, void* context)
{
  const int savedErrno = errno;
  const pid_t self = currentThreadId();
  pid_t expected = 0;
  if (!g_crashingThread.compare_exchange_strong(expected, self))
  {
    if (expected == self)
    {
      // A crash inside the crash path: end with the default action at once.
      signal(signalNumber, SIG_DFL);
      syscall(SYS_tgkill, getpid(), self, signalNumber);
      return;
    }
    // Another thread writes the dump and then ends the process; wait for that.
    for (;;)
      pause();
  }
  if (CrashDumpWriter writer = g_writer.load())
    writer(signalNumber, info, context);
  const int count = g_observerCount.load();
  for (int i = 0; i < count; ++i)
    if (CrashObserver observer = g_observers[i].load())
      observer(signalNumber, info, context);
  handOn(signalNumber, info);
  errno = savedErrno;
}

void installOnce()
{
  std::call_once(g_installOnce,
                 []
                 {
                   struct sigaction action = {};
                   action.sa_sigaction = &onCrashSignal;
                   action.sa_flags = SA_SIGINFO | SA_ONSTACK;
                   sigemptyset(&action.sa_mask);
                   for (int signalNumber : CrashSignals)
                     sigaddset(&action.sa_mask, signalNumber);
                   for (int signalNumber : CrashSignals)
                     sigaction(signalNumber, &action, &g_previous[signalNumber]);
                 });
}

} // namespace

void installCrashHandlers()
{
  // Every thread that installs (normally the main thread) keeps a stack for its life.
  thread_local const AlternateSignalStack stack;
  installOnce();
}

void addCrashObserver(CrashObserver observer)
{
  installCrashHandlers();
  if (observer == nullptr)
    return;
  std::lock_guard lock(g_observerMutex);
  const int count = g_observerCount.load();
  if (count >= MaxObservers)
    Raise(VerificationFailed(QObject::tr("At most %1 crash observers can be added.").arg(MaxObservers)));
  g_observers[count].store(observer);
  g_observerCount.store(count + 1);
}

void setCrashDumpWriter(CrashDumpWriter writer)
{
  installCrashHandlers();
  g_writer.store(writer);
}

AlternateSignalStack::AlternateSignalStack()
{
  stack_t current{};
  if (sigaltstack(nullptr, &current) != 0 || (current.ss_flags & SS_DISABLE) == 0)
    return;
  const long pageSize = sysconf(_SC_PAGESIZE);
  const long minimum = sysconf(_SC_SIGSTKSZ);
  m_size = AlternateStackSize > static_cast<unsigned long>(minimum) ? AlternateStackSize
                                                                    : static_cast<unsigned long>(minimum);
  // One guard page below, so that an overflow of the handler itself faults instead of
  // writing into whatever lies there.
  void* memory = mmap(nullptr, m_size + static_cast<unsigned long>(pageSize), PROT_READ | PROT_WRITE,
                      MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
  if (memory == MAP_FAILED)
    return;
  mprotect(memory, static_cast<size_t>(pageSize), PROT_NONE);
  stack_t stack{};
  stack.ss_sp = static_cast<char*>(memory) + pageSize;
  stack.ss_size = m_size;
  if (sigaltstack(&stack, nullptr) != 0)
  {
    munmap(memory, m_size + static_cast<unsigned long>(pageSize));
    return;
  }
  m_memory = memory;
}

AlternateSignalStack::~AlternateSignalStack()
{
  if (m_memory == nullptr)
    return;
  stack_t disable{};
  disable.ss_flags = SS_DISABLE;
  sigaltstack(&disable, nullptr);
  munmap(m_memory, m_size + static_cast<unsigned long>(sysconf(_SC_PAGESIZE)));
}

} // namespace RTE::Linux
