// `rte sysinfo`: what the library knows about the operating system, the machine and
// this process.
//
//   rte sysinfo
//   rte sysinfo --processes bash     (also the running processes of that name)
#include "Command.h"

#include <Core/Common/OperatingSystem/C_SystemInfo.h>
#include <Core/Common/OperatingSystem/OperatingSystem.h>
#include <Core/Common/Utilities/InstructionSets.h>

#include <QCommandLineParser>

#include <thread>

namespace
{

void row(const char* label, const QString& value)
{
  rte::out() << QStringLiteral("%1 %2\n").arg(QString::fromLatin1(label) + QLatin1Char(':'), -26).arg(value);
}

QString yesNo(bool value)
{
  return value ? QStringLiteral("yes") : QStringLiteral("no");
}

QString kib(std::uint64_t value)
{
  return QStringLiteral("%1 KiB (%2 MiB)").arg(value).arg(value >> 10);
}

int runSysinfo(const QStringList& arguments)
{
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Shows the operating system, processors, memory, session and process facts the library "
                     "reports, and the processor's instruction sets."));
  parser.addHelpOption();
  const QCommandLineOption processes(QStringLiteral("processes"),
                                     QStringLiteral("Also list the running processes named NAME."),
                                     QStringLiteral("NAME"));
  const QCommandLineOption loadMs(QStringLiteral("load-ms"),
                                  QStringLiteral("Sample the processor load for MS milliseconds (default 500)."),
                                  QStringLiteral("MS"), QStringLiteral("500"));
  parser.addOption(processes);
  parser.addOption(loadMs);
  if (const std::optional<int> stop = rte::parseCommandLine(parser, arguments))
    return *stop;
  bool ok = false;
  const int sampleMs = parser.value(loadMs).toInt(&ok);
  if (!parser.positionalArguments().isEmpty() || !ok || sampleMs < 10 || sampleMs > 60000)
  {
    rte::err() << "rte sysinfo: "
               << (ok ? (parser.positionalArguments().isEmpty()
                             ? QStringLiteral("--load-ms must be 10 to 60000")
                             : "unexpected argument '" + parser.positionalArguments().first() + "'")
                      : "--load-ms expects a number, not '" + parser.value(loadMs) + "'")
               << "\n";
    return 2;
  }

  RTE::C_SystemInfo& info = RTE::C_SystemInfo::GetInstance();
  info.StartCPUThread(sampleMs / 2);

  const RTE::OperatingSystem& os = RTE::OperatingSystem::GetInstance();
  row("Operating system", os.GetOperatingSystemName());
  row("Linux", yesNo(os.IsLinux()));
  row("64-bit system", yesNo(os.IsWin64bit()));
  row("64-bit executable", yesNo(os.Is64bitExecutable()));
  row("Virtual machine", yesNo(os.IsVirtualMachine()));
  row("Remote session", yesNo(os.IsTerminalServer()));
  row("Language id", QStringLiteral("0x%1%2")
                         .arg(os.GetLanguageID(), 4, 16, QLatin1Char('0'))
                         .arg(os.IsLanguageEnglish()  ? QStringLiteral(" (English)")
                              : os.IsLanguageGerman() ? QStringLiteral(" (German)")
                              : os.IsLanguageFrench() ? QStringLiteral(" (French)")
                                                      : QString()));

  row("Processors", QString::number(info.GetProcessorNumber()));
  const std::uint32_t mhz = info.GetProcessorSpeedMHz();
  row("Processor speed", mhz ? QStringLiteral("%1 MHz").arg(mhz) : QStringLiteral("unknown"));
  row("Instruction sets", RTE::InstructionSets::host().toString());
  row("Memory total", kib(info.GetMemoryTotal()));
  row("Memory available", kib(info.GetMemoryAvail()));
  row("Memory in use", QStringLiteral("%1 %").arg(info.GetMemoryUsage()));
  row("Memory of this process", kib(info.GetMemoryProcess()));
  row("High-resolution counter", info.IsHighResTimeAvail() ? QStringLiteral("%1 ticks at %2 Hz (%3 µs)")
                                                                 .arg(info.GetHighResSystemCounter64())
                                                                 .arg(info.GetHighResSystemFrequency())
                                                                 .arg(info.GetHighResSystemMicroSec())
                                                           : QStringLiteral("not available"));
  row("Host", info.GetHostName());
  row("Domain", info.GetDomainName().isEmpty() ? QStringLiteral("(none)") : info.GetDomainName());
  row("User", info.getUserName());
  row("Remote desktop", yesNo(info.isRemoteDesktop()));
  row("Executable", info.GetExecutableFile(static_cast<std::uint64_t>(QCoreApplication::applicationPid())));
  row("Only instance", yesNo(info.IsUniqueProcessOfCurrentExecutable()));

  std::this_thread::sleep_for(std::chrono::milliseconds(sampleMs + 20));
  row("Processor load", QStringLiteral("%1 % over %2 ms").arg(info.GetSystemLoad(), 0, 'f', 1).arg(sampleMs / 2));
  info.StopCPUThread();

  if (parser.isSet(processes))
  {
    const auto found = info.GetProcessInfos(parser.value(processes));
    rte::out() << "\nProcesses named \"" << parser.value(processes) << "\": " << found.size() << "\n";
    for (const RTE::C_SystemInfo::ProcessInfo& process : found)
      rte::out() << "  " << process.processId << "  "
                 << (process.executableFile.isEmpty() ? QStringLiteral("(executable not readable)")
                                                      : process.executableFile)
                 << "\n";
  }
  return 0;
}

const rte::CommandRegistration reg{
    {QStringLiteral("sysinfo"), QStringLiteral("Operating system, machine and process facts"), &runSysinfo}};

} // namespace
