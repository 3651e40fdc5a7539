#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/OperatingSystem/Linux/OperatingSystemLinux_p.h>
#include <Core/Common/OperatingSystem/OperatingSystem.h>

#include "TestHelpers.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QDBusVirtualObject>
#include <QElapsedTimer>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>
#include <QTimer>

#include <gtest/gtest.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <thread>

#include <sys/utsname.h>
#include <unistd.h>

namespace
{

using RTE::OperatingSystem;

// Scenarios that need a process of their own: without an application object, or one
// that a signal ends. The test program starts itself with OS_TEST_CHILD set; the
// scenario runs before main and ends the process.
constexpr const char* childVariable = "OS_TEST_CHILD";

// The application object of a scenario (argv must outlive it).
struct ChildApp
{
  int argc = 1;
  char name[6] = "child";
  char* argv[2] = {name, nullptr};
  QCoreApplication app{argc, argv};
};

void childNoDispatcher()
{
  try
  {
    OperatingSystem::GetInstance().registerSystemEvents();
  }
  catch (const RTE::VerificationFailed& e)
  {
    std::printf("VerificationFailed: %s\n", qPrintable(e.message()));
  }
  catch (const RTE::Exception& e)
  {
    std::printf("Exception: %s\n", qPrintable(e.message()));
  }
}

void childSigterm()
{
  ChildApp child;
  OperatingSystem& os = OperatingSystem::GetInstance();
  const auto mainThread = std::this_thread::get_id();
  os.registerForShutdownSignal(
      [mainThread]
      {
        std::printf("shutdown callback on main thread: %s\n", std::this_thread::get_id() == mainThread ? "yes" : "no");
        std::fflush(stdout);
      });
  os.registerSystemEvents();
  // Sent from another thread: the handler may run there, the callback must not.
  QTimer::singleShot(0, [] { std::thread([] { ::kill(::getpid(), SIGTERM); }).join(); });
  QTimer::singleShot(10000, [] { ::_exit(4); });
  child.app.exec();
  std::printf("event loop ended without the signal ending the process\n");
}

// The crash callback runs in the signal handler: only async-signal-safe output.
void childCrash()
{
  ChildApp child;
  OperatingSystem& os = OperatingSystem::GetInstance();
  os.registerForApplicationCrash(
      [](int signalNumber, siginfo_t* info, ucontext_t* context)
      {
        char text[] = "crash callback: signal ?? info ? context ?\n";
        text[23] = static_cast<char>('0' + signalNumber / 10);
        text[24] = static_cast<char>('0' + signalNumber % 10);
        text[31] = info != nullptr && info->si_signo == signalNumber ? 'y' : 'n';
        text[41] = context != nullptr ? 'y' : 'n';
        (void)!::write(STDOUT_FILENO, text, sizeof text - 1);
      });
  os.registerSystemEvents();
  std::abort();
}

// A stand-in session manager on a private bus: prints each call it gets, hands out
// pipe ends as locks and, once the first delay lock is taken (the client listens by
// then), announces a suspend, a resume and a shutdown.
class FakeSessionManager : public QDBusVirtualObject
{
public:
  QString introspect(const QString&) const override { return {}; }

  bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override
  {
    QStringList arguments;
    for (const QVariant& argument : message.arguments())
      arguments << argument.toString();
    std::printf("%s %s\n", qPrintable(message.member()), qPrintable(arguments.join(QLatin1Char(' '))));
    std::fflush(stdout);
    QDBusMessage reply = message.createReply();
    if (message.member() == QLatin1String("Inhibit"))
    {
      int lock[2];
      if (::pipe(lock) != 0)
        return false;
      reply = message.createReply(QVariant::fromValue(QDBusUnixFileDescriptor(lock[1])));
      ::close(lock[1]);
      if (arguments.value(3) == QLatin1String("delay") && !m_announced)
      {
        m_announced = true;
        QTimer::singleShot(
            50,
            [connection]
            {
              for (const auto& [name, start] : {std::pair{"PrepareForSleep", true}, std::pair{"PrepareForSleep", false},
                                                std::pair{"PrepareForShutdown", true}})
              {
                QDBusMessage notice = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/login1"),
                                                                 QStringLiteral("org.freedesktop.login1.Manager"),
                                                                 QString::fromLatin1(name));
                notice << start;
                QDBusConnection(connection).send(notice);
              }
            });
      }
    }
    QDBusConnection(connection).send(reply);
    return true;
  }

private:
  bool m_announced = false;
};

void childFakeSessionManager()
{
  ChildApp child;
  QDBusConnection bus = QDBusConnection::systemBus();
  FakeSessionManager manager;
  if (!bus.registerVirtualObject(QStringLiteral("/org/freedesktop/login1"), &manager) ||
      !bus.registerService(QStringLiteral("org.freedesktop.login1")))
    ::_exit(3);
  std::printf("ready\n");
  std::fflush(stdout);
  child.app.exec();
}

void childSessionClient()
{
  ChildApp child;
  OperatingSystem& os = OperatingSystem::GetInstance();
  QStringList events;
  os.registerForSuspendSignal([&] { events << QStringLiteral("suspend"); });
  os.registerForResumeSignal([&] { events << QStringLiteral("resume"); });
  os.registerForShutdownSignal(
      [&]
      {
        events << QStringLiteral("shutdown");
        QCoreApplication::quit();
      });
  os.registerSystemEvents(); // without a bus, this only logs so
  // Notices come only from a session manager; without a bus there is nothing to wait for.
  QTimer::singleShot(QDBusConnection::systemBus().isConnected() ? 5000 : 0, [] { QCoreApplication::quit(); });
  child.app.exec();
  const bool prevent = os.PreventSystemSleepTimer(true);
  const bool prevented = os.IsSystemSleepTimerPrevented();
  const bool release = os.PreventSystemSleepTimer(false);
  const bool released = !os.IsSystemSleepTimerPrevented();
  const bool poweroff = os.Shutdown(false);
  const bool reboot = os.Shutdown(true);
  std::printf("events=%s prevent=%d prevented=%d release=%d prevented=%d poweroff=%d reboot=%d\n",
              qPrintable(events.join(QLatin1Char(','))), prevent, prevented, release, !released, poweroff, reboot);
}

[[maybe_unused]] const bool childRan = []
{
  const QByteArray scenario = qgetenv(childVariable);
  if (scenario.isEmpty())
    return false;
  if (scenario == "no-dispatcher")
    childNoDispatcher();
  else if (scenario == "sigterm")
    childSigterm();
  else if (scenario == "crash")
    childCrash();
  else if (scenario == "fake-logind")
    childFakeSessionManager();
  else if (scenario == "session-client")
    childSessionClient();
  std::fflush(stdout);
  ::_exit(0);
}();

struct ChildRun
{
  QProcess::ExitStatus status = QProcess::NormalExit;
  int exitCode = -1;
  QString out;
  qint64 elapsedMs = 0;
};

void startChild(QProcess& process, const char* scenario, const QProcessEnvironment& extra)
{
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QString::fromLatin1(childVariable), QString::fromLatin1(scenario));
  for (const QString& key : extra.keys())
    environment.insert(key, extra.value(key));
  process.setProcessEnvironment(environment);
  process.start(QCoreApplication::applicationFilePath(), {});
}

ChildRun runChild(const char* scenario, const QProcessEnvironment& extra = {})
{
  QElapsedTimer timer;
  timer.start();
  QProcess process;
  startChild(process, scenario, extra);
  EXPECT_TRUE(process.waitForFinished(20000)) << scenario;
  return ChildRun{process.exitStatus(), process.exitCode(), QString::fromLocal8Bit(process.readAllStandardOutput()),
                  timer.elapsed()};
}

// Removes every callback again, so that each test starts from none.
void clearCallbacks()
{
  OperatingSystem& os = OperatingSystem::GetInstance();
  os.registerForApplicationCrash({});
  os.registerForShutdownSignal({});
  os.registerForSuspendSignal({});
  os.registerForResumeSignal({});
}

template <typename Register>
void expectSecondRegistrationRefused(Register reg, const char* message)
{
  SCOPED_TRACE(message);
  reg(false); // an empty callback first: does not count
  reg(true);
  EXPECT_EQ(MessageOf<RTE::VerificationFailed>([&] { reg(true); }), QString::fromLatin1(message));
  reg(false); // removes the callback
  EXPECT_NO_THROW(reg(true));
}

TEST(OperatingSystem, SecondRegistrationOfAnEventIsRefusedWithItsOwnText)
{
  OperatingSystem& os = OperatingSystem::GetInstance();
  clearCallbacks();
  expectSecondRegistrationRefused(
      [&](bool set)
      {
        os.registerForApplicationCrash(set ? OperatingSystem::CrashCallback([](int, siginfo_t*, ucontext_t*) {})
                                           : OperatingSystem::CrashCallback());
      },
      "Don't register for SignalApplicationCrash twice.");
  expectSecondRegistrationRefused([&](bool set)
                                  { os.registerForShutdownSignal(set ? [] {} : OperatingSystem::EventCallback()); },
                                  "Don't register for SignalShutdown twice.");
  expectSecondRegistrationRefused([&](bool set)
                                  { os.registerForSuspendSignal(set ? [] {} : OperatingSystem::EventCallback()); },
                                  "Don't register for SignalSuspend twice.");
  expectSecondRegistrationRefused([&](bool set)
                                  { os.registerForResumeSignal(set ? [] {} : OperatingSystem::EventCallback()); },
                                  "Don't register for SignalResume twice.");
  clearCallbacks();
}

TEST(OperatingSystem, CallsReachOnlyTheStoredCallbackOfTheirEvent)
{
  OperatingSystem& os = OperatingSystem::GetInstance();
  clearCallbacks();
  os.callSignalShutdown(); // nothing stored: nothing happens
  os.callSignalApplicationCrash(SIGSEGV, nullptr, nullptr);

  QString calls;
  siginfo_t info{};
  ucontext_t context{};
  os.registerForShutdownSignal([&] { calls += QLatin1Char('D'); });
  os.registerForSuspendSignal([&] { calls += QLatin1Char('S'); });
  os.registerForResumeSignal([&] { calls += QLatin1Char('R'); });
  os.registerForApplicationCrash([&](int signalNumber, siginfo_t* i, ucontext_t* c)
                                 { calls += signalNumber == SIGBUS && i == &info && c == &context ? 'C' : '?'; });
  os.callSignalSuspend();
  os.callSignalResume();
  os.callSignalShutdown();
  os.callSignalApplicationCrash(SIGBUS, &info, &context);
  EXPECT_EQ(calls, QStringLiteral("SRDC"));

  // A callback may register another one without dead-locking.
  clearCallbacks();
  os.registerForShutdownSignal([&] { os.registerForSuspendSignal([&] { calls += QLatin1Char('s'); }); });
  os.callSignalShutdown();
  os.callSignalSuspend();
  EXPECT_EQ(calls, QStringLiteral("SRDCs"));
  clearCallbacks();
}

TEST(OperatingSystem, RegisterSystemEventsRefusesOtherThreadsAndAMissingEventLoop)
{
  QString message;
  std::thread(
      [&]
      { message = MessageOf<RTE::VerificationFailed>([] { OperatingSystem::GetInstance().registerSystemEvents(); }); })
      .join();
  EXPECT_EQ(message, QStringLiteral("Must be called from main thread."));

  const ChildRun child = runChild("no-dispatcher");
  EXPECT_EQ(child.out.trimmed(), QStringLiteral("Exception: Qt event loop not running."));
}

TEST(OperatingSystem, TerminationSignalRunsTheShutdownCallbackOnTheMainThreadAndEndsTheProcess)
{
#if defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "ThreadSanitizer delays signals";
#endif
  const ChildRun child = runChild("sigterm");
  EXPECT_EQ(child.out.trimmed(), QStringLiteral("shutdown callback on main thread: yes"));
  // Not consumed: the signal's default action still ends the process.
  EXPECT_EQ(child.status, QProcess::CrashExit);
  EXPECT_EQ(child.exitCode, SIGTERM);
}

TEST(OperatingSystem, CrashRunsTheCrashCallbackAndEndsWithTheSignal)
{
#if defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "ThreadSanitizer delays signals";
#endif
  const ChildRun child = runChild("crash");
  EXPECT_EQ(child.out, QStringLiteral("crash callback: signal 06 info y context y\n"));
  EXPECT_EQ(child.status, QProcess::CrashExit);
  EXPECT_EQ(child.exitCode, SIGABRT);
}

TEST(OperatingSystem, WithoutASystemBusPowerRequestsFailQuickly)
{
  QProcessEnvironment noBus;
  noBus.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), QStringLiteral("unix:path=/nonexistent/system_bus_socket"));
  const ChildRun child = runChild("session-client", noBus);
  EXPECT_EQ(child.status, QProcess::NormalExit);
  EXPECT_EQ(child.out.trimmed(),
            QStringLiteral("events= prevent=0 prevented=0 release=1 prevented=0 poweroff=0 reboot=0"));
  EXPECT_LT(child.elapsedMs, 5000);
}

TEST(OperatingSystem, SessionManagerNoticesAndRequestsTravelOverTheSystemBus)
{
#if defined(__SANITIZE_THREAD__)
  GTEST_SKIP() << "Qt D-Bus hands messages between its threads through locks ThreadSanitizer cannot see";
#endif
  const QString daemon = QStandardPaths::findExecutable(QStringLiteral("dbus-daemon"));
  if (daemon.isEmpty())
    GTEST_SKIP() << "dbus-daemon not installed";
  QProcess bus;
  bus.start(daemon, {QStringLiteral("--session"), QStringLiteral("--nofork"), QStringLiteral("--print-address")});
  ASSERT_TRUE(bus.waitForReadyRead(5000));
  QProcessEnvironment privateBus;
  privateBus.insert(QStringLiteral("DBUS_SYSTEM_BUS_ADDRESS"), QString::fromLatin1(bus.readLine().trimmed()));

  QProcess manager;
  startChild(manager, "fake-logind", privateBus);
  ASSERT_TRUE(manager.waitForReadyRead(5000));
  ASSERT_EQ(manager.readLine().trimmed(), "ready");

  const ChildRun client = runChild("session-client", privateBus);
  EXPECT_EQ(client.out.trimmed(), QStringLiteral("events=suspend,resume,shutdown prevent=1 prevented=1 release=1 "
                                                 "prevented=0 poweroff=1 reboot=1"));
  manager.kill();
  manager.waitForFinished();
  bus.kill();
  bus.waitForFinished();
  const QStringList calls = QString::fromLocal8Bit(manager.readAllStandardOutput()).split(QLatin1Char('\n'));
  // Delay locks at the start and again after the resume, a block lock, then the requests
  // without interaction.
  ASSERT_EQ(calls.size(), 6) << qPrintable(calls.join(QLatin1Char('|')));
  for (int i : {0, 1})
    EXPECT_TRUE(calls[i].startsWith(QLatin1String("Inhibit sleep:shutdown child")) && calls[i].endsWith("delay"));
  EXPECT_TRUE(calls[2].startsWith(QLatin1String("Inhibit sleep:idle child")) && calls[2].endsWith("block"));
  EXPECT_EQ(calls[3], QStringLiteral("PowerOff false"));
  EXPECT_EQ(calls[4], QStringLiteral("Reboot false"));
}

TEST(OperatingSystem, IdentifiesLinuxAndItsSession)
{
  const OperatingSystem& os = OperatingSystem::GetInstance();
  EXPECT_TRUE(os.IsLinux());
  EXPECT_FALSE(os.IsWindows10() || os.IsUnknown());
  EXPECT_TRUE(os.IsWin64bit() || !os.Is64bitExecutable());
  utsname kernel{};
  ASSERT_EQ(::uname(&kernel), 0);
  EXPECT_TRUE(os.GetOperatingSystemName().contains(QString::fromLocal8Bit(kernel.release)))
      << qPrintable(os.GetOperatingSystemName());

  const QByteArray saved = qgetenv("SSH_CONNECTION");
  qputenv("SSH_CONNECTION", "10.0.0.1 50000 10.0.0.2 22");
  EXPECT_TRUE(os.IsTerminalServer());
  qunsetenv("SSH_CONNECTION");
  if (qEnvironmentVariableIsEmpty("SSH_CLIENT") && qEnvironmentVariableIsEmpty("XDG_SESSION_TYPE"))
  {
    EXPECT_FALSE(os.IsTerminalServer());
  }
  qputenv("SSH_CONNECTION", saved);

  errno = ENOENT;
  const QString text = OperatingSystem::GetLastErrorText();
  EXPECT_EQ(text, QString::fromLocal8Bit(std::strerror(ENOENT)));
  EXPECT_FALSE(text.endsWith(QLatin1Char('\n')));
}

TEST(OperatingSystem, DetectionRules)
{
  using namespace RTE::detail;
  const QMap<QString, QString> release = parseOsRelease("# comment\n"
                                                        "NAME=\"Debian GNU/Linux\"\n"
                                                        "VERSION_ID='12'\n"
                                                        "PRETTY_NAME=\"Say \\\"hi\\\" \\\\ \\$HOME\"\n"
                                                        "broken line\n");
  EXPECT_EQ(release.value("NAME"), "Debian GNU/Linux");
  EXPECT_EQ(release.value("VERSION_ID"), "12");
  EXPECT_EQ(release.value("PRETTY_NAME"), "Say \"hi\" \\ $HOME");
  EXPECT_EQ(release.size(), 3);

  EXPECT_EQ(languageIdFromLocaleName("de_DE.UTF-8"), 0x0407);
  EXPECT_EQ(languageIdFromLocaleName("de_AT@euro"), 0x0C07);
  EXPECT_EQ(languageIdFromLocaleName("en_GB.UTF-8"), 0x0809);
  EXPECT_EQ(languageIdFromLocaleName("fr"), 0x040C);
  EXPECT_EQ(languageIdFromLocaleName("C.UTF-8"), 0x0409);
  EXPECT_EQ(languageIdFromLocaleName("xx_YY.UTF-8"), 0);

  EXPECT_TRUE(isVirtualMachineFrom("VirtualBox", "innotek GmbH", {}));
  EXPECT_TRUE(isVirtualMachineFrom("Virtual Machine", "Microsoft Corporation", {}));
  EXPECT_TRUE(isVirtualMachineFrom({}, {}, "flags\t\t: fpu vme hypervisor lahf_lm"));
  EXPECT_FALSE(isVirtualMachineFrom("Surface Laptop 5", "Microsoft Corporation", {}));
  EXPECT_FALSE(isVirtualMachineFrom("OptiPlex 7090", "Dell Inc.", "flags\t\t: fpu vme hypervisorx lahf_lm"));
}

} // namespace
