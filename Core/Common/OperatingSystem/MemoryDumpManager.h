// Memory dumps of the process, written when it crashes or on request into the program
// data's "log/" folder, with a level of detail chosen by VELMO_CRASH_DUMP_LEVEL.
//
//   RTE::MemoryDumpManager::getInstance().registerHandlers();   // early in main()
//   ...
//   const QString path = RTE::MemoryDumpManager::getInstance().createMemoryDump();
//
// On Linux a dump is an ELF core file: "gdb PROGRAM DUMP" shows every thread's backtrace.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>

#include <csignal>
#include <mutex>
#include <optional>
#include <ucontext.h>

namespace RTE
{

class CORECOMMON_EXPORT MemoryDumpManager
{
public:
  enum class DumpContent
  {
    Minimal = 27, // registers and stacks of every thread, the list of mapped files
    Medium = 31,  // the minimal content plus the writable data of every loaded module
    Full = 63     // all readable memory
  };

  static constexpr const char* DumpContentEnvVarName = "VELMO_CRASH_DUMP_LEVEL";
  static constexpr DumpContent DefaultDumpContent = DumpContent::Minimal;

  // What a crash handler receives: the signal, its information and the interrupted
  // thread's context (ucontext_t).
  struct ExceptionInformation
  {
    int signalNumber = 0;
    siginfo_t* info = nullptr;
    ucontext_t* context = nullptr;
  };

  static MemoryDumpManager& getInstance();

  // "Minimal", "Medium" or "Full" in any case; any other text (and none) is the default.
  static DumpContent parseDumpContent(const QString& text);
  // The level the next dump on request is written with: VELMO_CRASH_DUMP_LEVEL as it is
  // now. A crash uses the level read by the last registerHandlers().
  static DumpContent getDumpContent();

  // The dump-type flags a level stands for: ((v & 4) | 0x4190) >> 2, plus 0x20002 when
  // bit 0x20 of the level's value v is set (0x1064, 0x1065, 0x21067). The ELF writer
  // takes its content from two of them: data segments (0x1) and full memory (0x2).
  static constexpr unsigned int dumpTypeFlags(DumpContent content)
  {
    const auto v = static_cast<unsigned int>(content);
    return (((v & 4u) | 0x4190u) >> 2) | ((v & 0x20u) != 0 ? 0x20002u : 0u);
  }
  static constexpr unsigned int DumpWithDataSegments = 0x1;
  static constexpr unsigned int DumpWithFullMemory = 0x2;

  // Installs the handlers of SIGSEGV, SIGBUS, SIGILL, SIGFPE and SIGABRT (on an alternate
  // signal stack for the calling thread) and a std::terminate handler. The first crashing
  // thread writes one dump; then the handler installed before runs, or the default
  // action ends the process with the signal's status. Reads the dump folder, the level
  // and the local time's offset from UTC now; call it again after changing them.
  void registerHandlers();

  // Writes a dump of the running process (info: the crashed thread's registers, for the
  // caller's own handler) and returns its path, recorded also when the "log/" folder is
  // missing and nothing could be written. Not for use inside a signal handler.
  QString createMemoryDump(const ExceptionInformation& info);
  QString createMemoryDump();

  // The path of the last dump written on request, or nothing.
  std::optional<QString> getLastCrashDumpFilePath() const;

private:
  MemoryDumpManager() = default;
  QString writeDump(const ExceptionInformation* info);

  mutable std::mutex m_mutex;
  std::optional<QString> m_lastPath;
};

} // namespace RTE
