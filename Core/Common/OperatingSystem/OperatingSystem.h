// Which operating system the application runs on, and the system's crash, shutdown,
// suspend and resume events turned into callbacks.
//
//   auto& os = RTE::OperatingSystem::GetInstance();
//   os.registerForShutdownSignal([] { saveEverything(); });
//   os.registerSystemEvents();          // on the main thread, QCoreApplication made
//   os.PreventSystemSleepTimer(true);   // during a recording
//
// On Linux every Windows version query answers false and IsLinux true.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>

#include <atomic>
#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <vector>

#include <signal.h>
#include <ucontext.h>

namespace RTE
{

class CORECOMMON_EXPORT OperatingSystem
{
public:
  // Called on the crashing thread, inside the crash signal handler: only
  // async-signal-safe work is allowed there.
  using CrashCallback = std::function<void(int signalNumber, siginfo_t* info, ucontext_t* context)>;
  using EventCallback = std::function<void()>;

  // The process-wide instance, made on first use (thread-safe).
  static OperatingSystem& GetInstance();

  // Windows versions; all false on Linux.
  bool IsWin98() const { return false; }
  bool IsWinNT() const { return false; }
  bool IsWin2000() const { return false; }
  bool IsWinXP() const { return false; }
  bool IsWin2003Server() const { return false; }
  bool IsWinVista() const { return false; }
  bool IsWin2008Server() const { return false; }
  bool IsWindows7() const { return false; }
  bool IsWindows8() const { return false; }
  bool IsWindows8_1() const { return false; }
  bool IsWindows10() const { return false; }
  bool IsWindows11() const { return false; }
  // Whether the system could not be identified; false on Linux.
  bool IsUnknown() const;
  bool IsLinux() const;
  // On Linux: whether the kernel is a 64-bit one (whatever this program is).
  bool IsWin64bit() const;
  // On Linux: whether this program is built for 64 bits.
  bool Is64bitExecutable() const;
  // Whether the process runs in a remote session (SSH or a remote desktop).
  bool IsTerminalServer() const;
  // Whether the machine is a virtual one (firmware names or the processor's hypervisor flag).
  bool IsVirtualMachine() const;
  // Distribution name and version with kernel and architecture, such as
  // "Debian GNU/Linux 12 (bookworm), Linux 6.1.0-18-amd64 x86_64".
  QString GetOperatingSystemName() const;

  // The user-interface language as a 16-bit language id: the primary language in the low
  // 10 bits (English 0x09, German 0x07, French 0x0C, ...), the sub-language (country) in
  // the upper 6, as ids are numbered on Windows; taken from LC_ALL, LC_MESSAGES or LANG
  // when the instance is made. 0 if unknown.
  std::uint16_t GetLanguageID() const;
  bool IsLanguageEnglish() const;
  bool IsLanguageGerman() const;
  bool IsLanguageFrench() const;

  // Store the callback of an event. A second non-empty callback for the same event
  // throws VerificationFailed ("Don't register for SignalShutdown twice.", ...); an empty
  // callback removes the stored one and never counts as a registration.
  void registerForApplicationCrash(CrashCallback callback);
  void registerForShutdownSignal(EventCallback callback);
  void registerForSuspendSignal(EventCallback callback);
  void registerForResumeSignal(EventCallback callback);

  // Call the stored callback, if there is one. callSignalApplicationCrash takes no lock
  // and may be called from a signal handler.
  void callSignalApplicationCrash(int signalNumber, siginfo_t* info, ucontext_t* context);
  void callSignalShutdown();
  void callSignalSuspend();
  void callSignalResume();

  // Turns the system's events into the callbacks: SIGTERM and SIGHUP and the session
  // manager's shutdown notice call the shutdown callback, its sleep notices the suspend
  // and resume callbacks, all on the main thread. After the shutdown callback of a signal
  // the signal takes its previous course (by default the process ends). Must run on
  // the main thread ("Must be called from main thread.", VerificationFailed) once the
  // QCoreApplication exists ("Qt event loop not running.", Exception). Later calls do
  // nothing. Without a system bus only the signals are handled (logged).
  void registerSystemEvents();

  // Asks the system not to sleep or idle-suspend (true) or gives that request up
  // (false). Returns whether the system granted it; false, logged, where no session
  // manager can be reached.
  bool PreventSystemSleepTimer(bool prevent);
  // The last successful request of PreventSystemSleepTimer.
  bool IsSystemSleepTimerPrevented() const;
  // Asks the system to power off (reboot false) or restart (reboot true) without
  // asking the user. Returns whether the request was accepted; false, logged, where no
  // session manager can be reached or the user may not do so.
  bool Shutdown(bool reboot);

  // The system's text for the calling thread's last error (errno), without a trailing
  // line end, at most 1024 characters.
  static QString GetLastErrorText();

  OperatingSystem(const OperatingSystem&) = delete;
  OperatingSystem& operator=(const OperatingSystem&) = delete;

private:
  struct Events;

  OperatingSystem();
  ~OperatingSystem();
  // The platform's part of registerSystemEvents, after its checks.
  void installSystemEvents();

  bool m_64bitSystem = false;
  bool m_virtualMachine = false;
  QString m_name;
  std::uint16_t m_languageId = 0;

  // Read without a lock from the crash path. Every callback ever stored stays in
  // m_crashCallbacks until the object goes, as a crashing thread may still be calling a
  // replaced one.
  std::atomic<CrashCallback*> m_crashCallback{nullptr};
  std::vector<std::unique_ptr<CrashCallback>> m_crashCallbacks;
  mutable std::mutex m_mutex;
  EventCallback m_shutdownCallback;
  EventCallback m_suspendCallback;
  EventCallback m_resumeCallback;
  bool m_sleepPrevented = false;
  std::unique_ptr<Events> m_events;
};

} // namespace RTE
