#include <Core/Common/OperatingSystem/OperatingSystem.h>

#include "../OperatingSystemLog_p.h"
#include "../ThreadsLog_p.h"
#include "CrashSignals_p.h"
#include "OperatingSystemLinux_p.h"
#include "SystemEventsLinux_p.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusError>
#include <QDBusMessage>
#include <QDBusUnixFileDescriptor>
#include <QFile>
#include <QPointer>
#include <QRegularExpression>
#include <QSocketNotifier>

#include <array>
#include <cerrno>
#include <cstring>

#include <fcntl.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace RTE
{

namespace
{

const QString login1Service = QStringLiteral("org.freedesktop.login1");
const QString login1Path = QStringLiteral("/org/freedesktop/login1");
const QString login1Manager = QStringLiteral("org.freedesktop.login1.Manager");
// A session manager that does not answer within this time is taken as absent.
constexpr int dbusTimeoutMs = 2000;

// The signals that ask the process to end, and what was installed for them before.
constexpr std::array<int, 2> terminationSignals{SIGTERM, SIGHUP};
int s_signalPipe[2] = {-1, -1};
struct sigaction s_previousAction[NSIG];
struct sigaction s_ownAction;

// Async-signal-safe: only write(2); the work happens on the main thread.
void onTerminationSignal(int signalNumber)
{
  const int savedErrno = errno;
  const unsigned char byte = static_cast<unsigned char>(signalNumber);
  [[maybe_unused]] const ssize_t written = ::write(s_signalPipe[1], &byte, 1);
  errno = savedErrno;
}

utsname kernel()
{
  utsname name{};
  ::uname(&name);
  return name;
}

QString cpuFlagsLine()
{
  for (const QByteArray& line : detail::readSystemFile(QStringLiteral("/proc/cpuinfo")).split('\n'))
  {
    if (line.startsWith("flags"))
      return QString::fromLatin1(line);
  }
  return {};
}

QString dmiField(const char* name)
{
  return QString::fromLocal8Bit(
      detail::readSystemFile(QStringLiteral("/sys/class/dmi/id/") + QLatin1String(name)).trimmed());
}

QString operatingSystemName()
{
  QByteArray content = detail::readSystemFile(QStringLiteral("/etc/os-release"));
  if (content.isEmpty())
    content = detail::readSystemFile(QStringLiteral("/usr/lib/os-release"));
  const QMap<QString, QString> release = detail::parseOsRelease(content);
  QString name = release.value(QStringLiteral("PRETTY_NAME"));
  if (name.isEmpty())
    name = (release.value(QStringLiteral("NAME"), QStringLiteral("Linux")) + QLatin1Char(' ') +
            release.value(QStringLiteral("VERSION")))
               .trimmed();
  const utsname k = kernel();
  return QStringLiteral("%1, %2 %3 %4")
      .arg(name, QString::fromLocal8Bit(k.sysname), QString::fromLocal8Bit(k.release),
           QString::fromLocal8Bit(k.machine));
}

QDBusMessage login1Call(const QString& method, const QVariantList& arguments)
{
  QDBusConnection bus = QDBusConnection::systemBus();
  if (!bus.isConnected())
    return QDBusMessage::createError(QStringLiteral("org.freedesktop.DBus.Error.NoServer"),
                                     QStringLiteral("no system bus (%1)").arg(bus.lastError().message()));
  QDBusMessage call = QDBusMessage::createMethodCall(login1Service, login1Path, login1Manager, method);
  call.setArguments(arguments);
  return bus.call(call, QDBus::Block, dbusTimeoutMs);
}

QString applicationTitle()
{
  const QString name = QCoreApplication::applicationName();
  return name.isEmpty() ? QStringLiteral("Core.Common") : name;
}

// An exception must not cross the event loop, nor keep a signal from taking its course.
template <typename Call>
void runCallback(Call call)
{
  try
  {
    call();
  }
  catch (...)
  {
    qCWarning(lcOperatingSystem).noquote() << "A system event callback failed:" << detail::currentExceptionText();
  }
}

} // namespace

namespace detail
{

QByteArray readSystemFile(const QString& path)
{
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly))
    return {};
  // read, not atEnd/readLine: files under /proc and /sys report a size of 0.
  return file.read(1 << 20);
}

bool isRemoteSession()
{
  for (const char* name : {"SSH_CONNECTION", "SSH_CLIENT", "SSH_TTY", "XRDP_SESSION"})
  {
    if (!qEnvironmentVariableIsEmpty(name))
      return true;
  }
  const QString type = qEnvironmentVariable("XDG_SESSION_TYPE").toLower();
  return type == QLatin1String("xrdp") || type == QLatin1String("vnc");
}

QMap<QString, QString> parseOsRelease(const QByteArray& content)
{
  QMap<QString, QString> values;
  for (const QByteArray& rawLine : content.split('\n'))
  {
    const QString line = QString::fromUtf8(rawLine).trimmed();
    const qsizetype equals = line.indexOf(QLatin1Char('='));
    if (line.startsWith(QLatin1Char('#')) || equals <= 0)
      continue;
    QString value = line.mid(equals + 1);
    if (value.size() >= 2 && (value.front() == QLatin1Char('"') || value.front() == QLatin1Char('\'')) &&
        value.back() == value.front())
    {
      const QChar quote = value.front();
      value = value.mid(1, value.size() - 2);
      if (quote == QLatin1Char('"'))
      {
        // Shell escapes inside double quotes: \" \\ \$ \`.
        QString unescaped;
        for (qsizetype i = 0; i < value.size(); ++i)
        {
          if (value[i] == QLatin1Char('\\') && i + 1 < value.size() && QStringLiteral("\"\\$`").contains(value[i + 1]))
            ++i;
          unescaped += value[i];
        }
        value = unescaped;
      }
    }
    values.insert(line.left(equals), value);
  }
  return values;
}

std::uint16_t languageIdFromLocaleName(const QString& localeName)
{
  if (localeName == QLatin1String("C") || localeName.startsWith(QLatin1String("C.")) ||
      localeName == QLatin1String("POSIX"))
    return 0x0409;
  // language[_COUNTRY][.codeset][@modifier]
  const qsizetype end = localeName.indexOf(QRegularExpression(QStringLiteral("[.@]")));
  const QString base = localeName.left(end < 0 ? localeName.size() : end);
  const QString language = base.section(QLatin1Char('_'), 0, 0).toLower();
  const QString country = base.section(QLatin1Char('_'), 1, 1).toUpper();

  struct Entry
  {
    const char* language;
    std::uint16_t primary;
  };
  static constexpr Entry primaries[] = {{"en", 0x09}, {"de", 0x07}, {"fr", 0x0C}, {"it", 0x10}, {"es", 0x0A},
                                        {"pt", 0x16}, {"nl", 0x13}, {"da", 0x06}, {"sv", 0x1D}, {"nb", 0x14},
                                        {"no", 0x14}, {"fi", 0x0B}, {"pl", 0x15}, {"cs", 0x05}, {"hu", 0x0E},
                                        {"ru", 0x19}, {"tr", 0x1F}, {"ja", 0x11}, {"ko", 0x12}, {"zh", 0x04}};
  std::uint16_t primary = 0;
  for (const Entry& entry : primaries)
  {
    if (language == QLatin1String(entry.language))
      primary = entry.primary;
  }
  if (primary == 0)
    return 0;

  // The sub-language of the countries with an id of their own; 1 is the language's
  // main country (United States, Germany, France, ...).
  struct Variant
  {
    std::uint16_t primary;
    const char* country;
    std::uint16_t sub;
  };
  static constexpr Variant variants[] = {{0x09, "GB", 2}, {0x09, "AU", 3}, {0x09, "CA", 4}, {0x09, "NZ", 5},
                                         {0x09, "IE", 6}, {0x07, "CH", 2}, {0x07, "AT", 3}, {0x07, "LU", 4},
                                         {0x07, "LI", 5}, {0x0C, "BE", 2}, {0x0C, "CA", 3}, {0x0C, "CH", 4},
                                         {0x0C, "LU", 5}, {0x10, "CH", 2}, {0x16, "PT", 2}, {0x13, "BE", 2},
                                         {0x04, "CN", 2}, {0x04, "HK", 3}, {0x04, "SG", 4}, {0x0A, "MX", 2}};
  std::uint16_t sub = 1;
  for (const Variant& variant : variants)
  {
    if (variant.primary == primary && country == QLatin1String(variant.country))
      sub = variant.sub;
  }
  return static_cast<std::uint16_t>(sub << 10 | primary);
}

bool isVirtualMachineFrom(const QString& productName, const QString& sysVendor, const QByteArray& cpuFlags)
{
  const QString product = productName.toLower();
  const QString vendor = sysVendor.toLower();
  for (const char* name : {"virtualbox", "vmware", "kvm", "qemu", "bochs", "hvm domu", "bhyve", "parallels",
                           "openstack", "google compute engine", "cloud hypervisor"})
  {
    if (product.contains(QLatin1String(name)))
      return true;
  }
  for (const char* name : {"qemu", "vmware", "innotek", "xen", "bochs", "parallels", "amazon ec2", "bhyve"})
  {
    if (vendor.contains(QLatin1String(name)))
      return true;
  }
  if (vendor.startsWith(QLatin1String("microsoft")) && product.contains(QLatin1String("virtual machine")))
    return true;
  // The flag a hypervisor sets for its guests, a word of the "flags" line.
  const qsizetype colon = cpuFlags.indexOf(':');
  return cpuFlags.mid(colon + 1).simplified().split(' ').contains("hypervisor");
}

SystemEventReceiver::SystemEventReceiver(int signalPipe, QObject* parent) : QObject(parent), m_signalPipe(signalPipe)
{
  if (signalPipe < 0)
    return;
  auto* notifier = new QSocketNotifier(signalPipe, QSocketNotifier::Read, this);
  connect(notifier, &QSocketNotifier::activated, this, &SystemEventReceiver::onSignalPipeReadable);
}

void SystemEventReceiver::takeDelayLock()
{
  // A delay lock makes the session manager wait (up to its InhibitDelayMaxSec) until
  // we let go, so that the callbacks run before the machine sleeps or powers off.
  const QDBusMessage reply = login1Call(QStringLiteral("Inhibit"),
                                        {QStringLiteral("sleep:shutdown"), applicationTitle(),
                                         QStringLiteral("Let the application react first"), QStringLiteral("delay")});
  if (reply.type() == QDBusMessage::ReplyMessage && !reply.arguments().isEmpty())
    m_delayLock = qvariant_cast<QDBusUnixFileDescriptor>(reply.arguments().constFirst());
  else
    qCInfo(lcOperatingSystem).noquote() << "No delay lock of the session manager:" << reply.errorMessage();
}

void SystemEventReceiver::onPrepareForShutdown(bool start)
{
  qCInfo(lcOperatingSystem) << "The system prepares to shut down:" << start;
  if (!start)
    return;
  runCallback([] { OperatingSystem::GetInstance().callSignalShutdown(); });
  m_delayLock = QDBusUnixFileDescriptor();
}

void SystemEventReceiver::onPrepareForSleep(bool start)
{
  qCInfo(lcOperatingSystem) << (start ? "The system is suspending" : "The system resumed");
  if (start)
  {
    runCallback([] { OperatingSystem::GetInstance().callSignalSuspend(); });
    m_delayLock = QDBusUnixFileDescriptor();
  }
  else
  {
    takeDelayLock();
    runCallback([] { OperatingSystem::GetInstance().callSignalResume(); });
  }
}

void SystemEventReceiver::onSignalPipeReadable()
{
  unsigned char numbers[16];
  ssize_t count = 0;
  while ((count = ::read(m_signalPipe, numbers, sizeof(numbers))) > 0)
  {
    for (ssize_t i = 0; i < count; ++i)
    {
      const int signalNumber = numbers[i];
      qCInfo(lcOperatingSystem) << "Signal" << signalNumber << "asks the process to end";
      runCallback([] { OperatingSystem::GetInstance().callSignalShutdown(); });
      // Not consumed: the signal takes the course it had before (the default ends the
      // process with the signal's status). Delivered at once, as raise() targets this thread.
      ::sigaction(signalNumber, &s_previousAction[signalNumber], nullptr);
      ::raise(signalNumber);
      ::sigaction(signalNumber, &s_ownAction, nullptr);
    }
  }
}

} // namespace detail

struct OperatingSystem::Events
{
  bool installed = false;
  QPointer<detail::SystemEventReceiver> receiver;
  // Held while sleep is prevented: the session manager drops the lock when it closes.
  QDBusUnixFileDescriptor sleepLock;
};

OperatingSystem::OperatingSystem() : m_events(std::make_unique<Events>())
{
  // Made on first use, perhaps by GetLastErrorText(): keep the caller's errno.
  const int savedErrno = errno;
  const utsname k = kernel();
  const QByteArray machine(k.machine);
  m_64bitSystem = machine.contains("64") || machine == "s390x";
  m_virtualMachine =
      detail::isVirtualMachineFrom(dmiField("product_name"), dmiField("sys_vendor"), cpuFlagsLine().toLatin1());
  m_name = operatingSystemName();
  QString locale;
  for (const char* name : {"LC_ALL", "LC_MESSAGES", "LANG"})
  {
    locale = qEnvironmentVariable(name);
    if (!locale.isEmpty())
      break;
  }
  m_languageId = detail::languageIdFromLocaleName(locale.isEmpty() ? QStringLiteral("C") : locale);
  errno = savedErrno;
}

OperatingSystem::~OperatingSystem() = default;

bool OperatingSystem::IsUnknown() const
{
  return false;
}

bool OperatingSystem::IsLinux() const
{
  return true;
}

bool OperatingSystem::IsWin64bit() const
{
  return m_64bitSystem;
}

bool OperatingSystem::Is64bitExecutable() const
{
  return sizeof(void*) == 8;
}

bool OperatingSystem::IsTerminalServer() const
{
  return detail::isRemoteSession();
}

bool OperatingSystem::IsVirtualMachine() const
{
  return m_virtualMachine;
}

QString OperatingSystem::GetOperatingSystemName() const
{
  return m_name;
}

void OperatingSystem::installSystemEvents()
{
  if (m_events->installed)
    return;
  m_events->installed = true;

  // The host's crash callback runs from the crash signal handler, after any dump.
  Linux::addCrashObserver(
      [](int signalNumber, siginfo_t* info, void* context)
      { GetInstance().callSignalApplicationCrash(signalNumber, info, static_cast<ucontext_t*>(context)); });

  if (::pipe2(s_signalPipe, O_CLOEXEC | O_NONBLOCK) != 0)
  {
    qCWarning(lcOperatingSystem) << "No pipe for the termination signals:" << GetLastErrorText();
  }
  else
  {
    // Owned by the application object, so it goes before the event dispatcher does.
    m_events->receiver = new detail::SystemEventReceiver(s_signalPipe[0], QCoreApplication::instance());
    s_ownAction = {};
    s_ownAction.sa_handler = &onTerminationSignal;
    sigemptyset(&s_ownAction.sa_mask);
    s_ownAction.sa_flags = SA_RESTART;
    for (const int signalNumber : terminationSignals)
    {
      ::sigaction(signalNumber, nullptr, &s_previousAction[signalNumber]);
      // A signal the process was told to ignore (nohup) stays ignored.
      if (s_previousAction[signalNumber].sa_handler == SIG_IGN)
        continue;
      ::sigaction(signalNumber, &s_ownAction, nullptr);
    }
  }

  QDBusConnection bus = QDBusConnection::systemBus();
  if (!bus.isConnected())
  {
    qCInfo(lcOperatingSystem).noquote() << "No system bus (" + bus.lastError().message() +
                                               "): shutdown, suspend and resume notices are not received";
    return;
  }
  if (!m_events->receiver)
    m_events->receiver = new detail::SystemEventReceiver(-1, QCoreApplication::instance());
  detail::SystemEventReceiver* receiver = m_events->receiver;
  const bool shutdown = bus.connect(login1Service, login1Path, login1Manager, QStringLiteral("PrepareForShutdown"),
                                    receiver, SLOT(onPrepareForShutdown(bool)));
  const bool sleeping = bus.connect(login1Service, login1Path, login1Manager, QStringLiteral("PrepareForSleep"),
                                    receiver, SLOT(onPrepareForSleep(bool)));
  if (!shutdown || !sleeping)
  {
    qCWarning(lcOperatingSystem).noquote() << "Could not listen to the session manager:" << bus.lastError().message();
    return;
  }
  receiver->takeDelayLock();
}

bool OperatingSystem::PreventSystemSleepTimer(bool prevent)
{
  std::lock_guard lock(m_mutex);
  if (!prevent)
  {
    // Closing the descriptor ends the inhibition.
    m_events->sleepLock = QDBusUnixFileDescriptor();
    m_sleepPrevented = false;
    return true;
  }
  if (m_sleepPrevented)
    return true;
  const QDBusMessage reply =
      login1Call(QStringLiteral("Inhibit"),
                 {QStringLiteral("sleep:idle"), applicationTitle(),
                  QStringLiteral("The application asked the system to stay awake"), QStringLiteral("block")});
  if (reply.type() != QDBusMessage::ReplyMessage || reply.arguments().isEmpty())
  {
    qCWarning(lcOperatingSystem).noquote() << "Could not prevent system sleep:" << reply.errorMessage();
    return false;
  }
  m_events->sleepLock = qvariant_cast<QDBusUnixFileDescriptor>(reply.arguments().constFirst());
  if (!m_events->sleepLock.isValid())
  {
    qCWarning(lcOperatingSystem) << "Could not prevent system sleep: the session manager sent no lock";
    return false;
  }
  m_sleepPrevented = true;
  return true;
}

bool OperatingSystem::Shutdown(bool reboot)
{
  // interactive = false: never wait for a password prompt the user cannot see.
  const QDBusMessage reply = login1Call(reboot ? QStringLiteral("Reboot") : QStringLiteral("PowerOff"), {false});
  if (reply.type() != QDBusMessage::ReplyMessage)
  {
    qCWarning(lcOperatingSystem).noquote()
        << (reboot ? "Could not restart the system:" : "Could not shut down:") << reply.errorMessage();
    return false;
  }
  return true;
}

QString OperatingSystem::GetLastErrorText()
{
  const int error = errno;
  char buffer[1024];
  // The GNU form: returns the text, in buffer or a static string.
  QString text = QString::fromLocal8Bit(::strerror_r(error, buffer, sizeof(buffer))).left(1024);
  while (text.endsWith(QLatin1Char('\n')) || text.endsWith(QLatin1Char('\r')))
    text.chop(1);
  return text;
}

} // namespace RTE
