// The process's crash signals (SIGSEGV, SIGBUS, SIGILL, SIGFPE, SIGABRT) and what runs when
// one arrives: first the dump writer, then every crash observer, once, on the first
// crashing thread; then the handler that was installed before, or the default action, so
// that the process ends with the signal's status. Not installed.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <csignal>

namespace RTE::Linux
{

using CrashObserver = void (*)(int signalNumber, siginfo_t* info, void* context);
using CrashDumpWriter = void (*)(int signalNumber, siginfo_t* info, void* context);

// Installs the crash handlers (once per process) and adds observer to those that run after
// the dump. Observers run in the signal handler: they must be async-signal-safe. At most
// 16 observers; more throw RTE::VerificationFailed.
CORECOMMON_EXPORT void addCrashObserver(CrashObserver observer);

// Installs the crash handlers (once per process) and makes writer the dump writer that
// runs before the observers; a later call replaces it.
void setCrashDumpWriter(CrashDumpWriter writer);

// Installs the crash handlers once per process; later calls only give the calling thread
// an alternate signal stack for its life, as the first does.
void installCrashHandlers();

// An alternate signal stack for the calling thread while the object lives, so that a
// stack overflow still reaches the crash handler. Does nothing when the thread already
// has one. The main thread gets one from installCrashHandlers, threads started by
// RTE::Thread from their thread function.
class AlternateSignalStack
{
public:
  AlternateSignalStack();
  ~AlternateSignalStack();
  AlternateSignalStack(const AlternateSignalStack&) = delete;
  AlternateSignalStack& operator=(const AlternateSignalStack&) = delete;

private:
  void* m_memory = nullptr;
  unsigned long m_size = 0;
};

} // namespace RTE::Linux
