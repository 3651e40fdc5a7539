// Identity, naming, priority and processor binding of threads and of the process.
//
//   if (!RTE::ThreadHandle::IsMainThread())
//     qCDebug(lc) << "worker" << RTE::ThreadHandle::GetThreadId();
//   RTE::ThreadHandle::SetThreadName(QStringLiteral("ImageWriter"));
//   RTE::ThreadHandle::SetPriority(RTE::ThreadHandle::E_ThreadPriority::BelowNormal);
//
// What each call does on Linux is written down in OperatingSystem/DESIGN.md.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>

#include <cstdint>

namespace RTE::ThreadHandle
{

// The system's numeric thread id (the kernel thread id on Linux).
using ThreadId = std::uint64_t;
// The system's handle of a thread or a process (on Linux: the pthread_t of a thread,
// the process id of a process).
using NativeHandle = std::uintptr_t;

// Thread priorities, from lowest to highest.
enum class E_ThreadPriority
{
  Idle,
  Lowest,
  BelowNormal,
  Normal,
  AboveNormal,
  Highest,
  TimeCritical
};

// Priority classes of the whole process, from lowest to highest.
enum class E_PriorityClass
{
  Idle,
  BelowNormal,
  Normal,
  AboveNormal,
  High,
  Realtime
};

// Id of the calling thread.
CORECOMMON_EXPORT ThreadId GetThreadId();

// Id of the process's main (first) thread.
CORECOMMON_EXPORT ThreadId GetMainThreadId();

// Whether the caller runs on the process's main thread.
CORECOMMON_EXPORT bool IsMainThread();

// Handle of the calling thread.
CORECOMMON_EXPORT NativeHandle GetThreadHandle();

// Id of the process.
CORECOMMON_EXPORT std::uint64_t GetProcessId();

// Handle of the process.
CORECOMMON_EXPORT NativeHandle GetProcessHandle();

// Sets the priority of the thread with the given id (0: the calling thread). Returns
// false if the system refused, typically because raising a priority needs privileges
// the process does not have.
CORECOMMON_EXPORT bool SetPriority(E_ThreadPriority priority, ThreadId thread = 0);

// Sets the priority class of the whole process (every thread it has now; threads
// started later inherit it from their creator). Returns false if the system refused
// for any thread.
CORECOMMON_EXPORT bool SetAppPriorityClass(E_PriorityClass priorityClass);

// Names the calling thread for debuggers and system tools. The system keeps the first
// 15 bytes of the UTF-8 text (cut before a partial character). Returns false if the
// system refused.
CORECOMMON_EXPORT bool SetThreadName(const QString& name);

// Binds the process (every thread it has now) to `coreCount` processors, starting at
// processor `firstCore` and taking every `step`-th one: (2, 3, 2) gives 2, 4 and 6.
// Returns false if the system refused (no such processor online). Throws
// RTE::InvalidArgumentError for a negative first core, a count or step below 1, or a
// processor number beyond what the system can address.
CORECOMMON_EXPORT bool SetProcessCoreAffinity(int firstCore, int coreCount, int step);

// Binds the process to every processor of a processor group. Linux has one group,
// 0: binding to it allows every configured processor; other groups return false.
CORECOMMON_EXPORT bool SetProcessGroupAffinity(int group);

// "cpu affinity: <mask> / group affinity: <group>": the process's processor mask in
// hexadecimal ("0x" followed by digits, processor 0 the lowest bit) and its processor
// group, "none" where the system has no groups.
CORECOMMON_EXPORT QString dumpCoreAndProcessAffinity();

} // namespace RTE::ThreadHandle
