// Demo step: the operating system services and the system information.
#include "Command.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/OperatingSystem/C_SystemInfo.h>
#include <Core/Common/OperatingSystem/OperatingSystem.h>

namespace
{

void demoSystem(QTextStream& out)
{
  RTE::OperatingSystem& os = RTE::OperatingSystem::GetInstance();
  const RTE::C_SystemInfo& info = RTE::C_SystemInfo::GetInstance();
  out << "Running on " << os.GetOperatingSystemName() << "\n"
      << "  IsLinux " << os.IsLinux() << ", IsWindows10 " << os.IsWindows10() << ", 64-bit " << os.IsWin64bit()
      << ", virtual machine " << os.IsVirtualMachine() << ", language id 0x" << QString::number(os.GetLanguageID(), 16)
      << "\n"
      << "  " << info.GetProcessorNumber() << " processors, " << (info.GetMemoryTotal() >> 10) << " MiB memory, "
      << info.GetMemoryUsage() << " % in use; this process holds " << (info.GetMemoryProcess() >> 10) << " MiB\n";

  out << "\nOne callback per event; a second registration is refused:\n";
  int shutdowns = 0;
  os.registerForShutdownSignal([&] { ++shutdowns; });
  try
  {
    os.registerForShutdownSignal([] {});
  }
  catch (const RTE::VerificationFailed& e)
  {
    out << "  VerificationFailed: " << e.message() << "\n";
  }
  os.callSignalShutdown();
  out << "  callSignalShutdown() ran the stored callback " << shutdowns << " time(s)\n";
  os.registerForShutdownSignal({}); // an empty callback removes it again

  out << "\nCommands run without a shell, and with one:\n";
  for (const QString& line : info.RunCommandAndReturnOutput(QStringLiteral("uname"), {QStringLiteral("-sr")}, 2000))
    out << "  uname -sr: " << line << "\n";
  for (const QString& line : info.RunCommandInShellAndReturnOutput(QStringLiteral("printf '%s|'"),
                                                                   {QStringLiteral("a b"), QStringLiteral("c")}, 2000))
    out << "  sh: " << line << "  (each argument one word)\n";
}

const rte::DemoStepRegistration step{{94, QStringLiteral("Operating system and system information"), &demoSystem}};

} // namespace
