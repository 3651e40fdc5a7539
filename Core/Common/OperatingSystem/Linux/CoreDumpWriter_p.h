// The Linux crash-dump writer: an ELF core file of the running process that a debugger
// opens with the program ("gdb PROGRAM DUMP"). Everything here after
// prepareCoreDumpWriter() is async-signal-safe: no allocation, no locks, no stdio.
// See OperatingSystem/DESIGN.md for how the file is made.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <csignal>
#include <cstddef>
#include <ctime>
#include <sys/types.h>
#include <ucontext.h>

namespace RTE::Linux
{

enum class DumpDetail
{
  Minimal, // registers, thread stacks, list of mapped files, the loader's module list
  Medium,  // plus the writable data of every loaded module
  Full     // all readable memory
};

// What the crashing thread met; threadId is the kernel id of that thread.
struct CrashContext
{
  int signalNumber = 0;
  const siginfo_t* info = nullptr;
  const ucontext_t* context = nullptr;
  pid_t threadId = 0;
};

// Sets up what the crash path cannot allocate later (the helper's stack, the addresses of
// the loader's data). Not async-signal-safe; idempotent; false when memory is short.
bool prepareCoreDumpWriter();

// Writes the core file of this process into the open, empty file fd (ownership stays with
// the caller). crash may be null: a dump on request. False when the helper could not be
// started, could not attach to the threads, or the file could not be written; the caller
// then removes the file.
bool writeCoreDump(int fd, DumpDetail detail, const CrashContext* crash);

// The file name "yyyy-MM-dd_hh-mm-ss_crash.dmp" of the local time utcSeconds +
// utcOffsetSeconds, NUL-terminated, into out (at least DumpFileNameSize bytes).
inline constexpr std::size_t DumpFileNameSize = 30;
CORECOMMON_EXPORT void formatDumpFileName(char* out, std::time_t utcSeconds, long utcOffsetSeconds);

} // namespace RTE::Linux
