// Facts about the machine and the running process: processors, load, memory, users,
// processes, high-resolution time, and two small command runners.
//
//   auto& info = RTE::C_SystemInfo::GetInstance();
//   auto kib = info.GetMemoryProcess();
//   info.StartCPUThread();                    // later: info.GetSystemLoad() in percent
//   QStringList lines = info.RunCommandAndReturnOutput("uname", {"-r"}, 2000);
//
// Memory figures are in KiB (1024 bytes), the unit the application log divides by 1024
// to show megabytes; the usage figure is a percentage.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>
#include <QStringList>

#include <cstdint>
#include <memory>
#include <mutex>
#include <vector>

namespace RTE
{

class CORECOMMON_EXPORT C_SystemInfo
{
public:
  // A running process as GetProcessInfos finds it.
  struct ProcessInfo
  {
    std::uint64_t processId = 0;
    // The executable's file name without folder, or the kernel's short process name
    // (at most 15 bytes) when the executable cannot be read (another user's process).
    QString name;
    // The executable's absolute path; empty when it cannot be read.
    QString executableFile;
  };

  // The process-wide instance, made on first use.
  static C_SystemInfo& GetInstance();

  // Logical processors online (at least 1).
  std::uint32_t GetProcessorNumber() const;

  // Nominal speed of the first processor in MHz (its highest frequency where the kernel
  // reports one, else the speed it runs at now); 0 if unknown.
  std::uint32_t GetProcessorSpeedMHz() const;

  // Share of the whole machine's processor time spent busy over the last sampling period,
  // in percent (0 to 100). Needs StartCPUThread(); 0 before the first period has passed
  // and after StopCPUThread().
  double GetSystemLoad() const;

  // Starts the background thread that samples the processor times every periodMs
  // milliseconds (at least 10). Calling it again while it runs changes nothing.
  void StartCPUThread(int periodMs = 1000);
  // Ends the sampling thread and waits for it; harmless when none runs.
  void StopCPUThread();

  // Percentage (0 to 100) of the physical memory in use, that is not available.
  std::uint32_t GetMemoryUsage() const;
  // Physical memory available for new work without swapping, in KiB; 0 if unknown.
  std::uint64_t GetMemoryAvail() const;
  // Physical memory of the machine, in KiB; 0 if unknown.
  std::uint64_t GetMemoryTotal() const;
  // Memory the process holds in RAM (its resident set), in KiB; 0 if it cannot be read.
  std::uint64_t GetMemoryProcess() const;

  // Graphics-device-interface objects the process holds; always 0 where the system
  // has no such count (Linux).
  std::uint32_t GetGdiObjectCount() const;

  // Whether a monotonic counter with a resolution of a microsecond or finer exists.
  bool IsHighResTimeAvail() const;
  // The monotonic counter in ticks of GetHighResSystemFrequency(); the 32-bit form is
  // the low half and wraps.
  std::uint32_t GetHighResSystemCounter() const;
  std::uint64_t GetHighResSystemCounter64() const;
  // Ticks per second of the counter.
  std::uint64_t GetHighResSystemFrequency() const;
  // The counter in microseconds.
  std::uint64_t GetHighResSystemMicroSec() const;

  // The machine's host name; empty if unknown.
  QString GetHostName() const;
  // Login name of the user the process runs as; empty if unknown.
  QString getUserName() const;
  // The machine's domain: its NIS domain where one is set, else what follows the first
  // dot of the host name; empty when there is neither.
  QString GetDomainName() const;
  // Whether the process runs in a remote session (SSH or remote desktop).
  bool isRemoteDesktop() const;

  // Absolute path of the executable that process processId runs; empty if there is no
  // such process or it may not be inspected.
  QString GetExecutableFile(std::uint64_t processId) const;
  // The running processes whose name (see ProcessInfo) equals name; every process when
  // name is empty. Ordered by process id.
  std::vector<ProcessInfo> GetProcessInfos(const QString& name) const;
  // Ends process processId at once (it cannot clean up). False when the id cannot name a
  // single process (0, or beyond the system's range) or the system refused.
  bool killProcess(std::uint64_t processId) const;
  // Whether no other process of the machine runs the same executable as this one (as
  // far as this user may see).
  bool IsUniqueProcessOfCurrentExecutable() const;

  // Runs program with arguments (no shell) and returns its standard output as lines,
  // without line ends. timeoutMs limits the run (negative: no limit); a program that
  // overruns is killed and the lines it wrote until then are returned. A program that
  // cannot be started yields no lines. Failures are logged ("Core.OperatingSystem").
  QStringList RunCommandAndReturnOutput(const QString& program, const QStringList& arguments, int timeoutMs) const;
  // As RunCommandAndReturnOutput, but command is a shell command line ("/bin/sh -c")
  // and arguments are passed to it as its positional parameters, each one quoted.
  QStringList RunCommandInShellAndReturnOutput(const QString& command, const QStringList& arguments,
                                               int timeoutMs) const;

  C_SystemInfo(const C_SystemInfo&) = delete;
  C_SystemInfo& operator=(const C_SystemInfo&) = delete;

private:
  struct CpuSampler;

  C_SystemInfo();
  ~C_SystemInfo();

  mutable std::mutex m_samplerMutex;
  std::unique_ptr<CpuSampler> m_sampler;
};

} // namespace RTE
