// Crash dumps. A crash ends the process, so every crash runs in a child: a copy of this
// program in its own program folder (its program data, and so its "log/" folder, lie
// there), running the disabled CrashChild test with the scenario named in its environment.
#include <Core/Common/OperatingSystem/Linux/CoreDumpWriter_p.h>
#include <Core/Common/OperatingSystem/Linux/CrashSignals_p.h>
#include <Core/Common/OperatingSystem/MemoryDumpManager.h>

#include "RteRun.h"

#include <QCoreApplication>
#include <QDateTime>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimeZone>

#include <gtest/gtest.h>

#include <atomic>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <iostream>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <malloc.h>
#include <stdexcept>
#include <sys/prctl.h>
#include <sys/syscall.h>
#include <thread>
#include <unistd.h>

using RTE::MemoryDumpManager;
using Level = MemoryDumpManager::DumpContent;

#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define CRASH_TESTS_UNDER_SANITIZER 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define CRASH_TESTS_UNDER_SANITIZER 1
#endif
#endif

namespace
{

// --- the crashing child ---------------------------------------------------------------

volatile int* volatile g_nowhere = nullptr;

extern "C" __attribute__((noinline)) void crashOnNullPointer()
{
  *g_nowhere = 42;
}

extern "C" __attribute__((noinline)) void abortOnPurpose()
{
  std::abort();
}

volatile int g_depthLimit = 1 << 30; // far beyond any stack

extern "C" __attribute__((noinline)) int overflowTheStack(int depth)
{
  if (depth >= g_depthLimit)
    return 0;
  volatile char frame[512];
  frame[0] = static_cast<char>(depth);
  return overflowTheStack(depth + 1) + frame[0];
}

extern "C" __attribute__((noinline)) void crashOnSecondThread()
{
  *g_nowhere = 7;
}

__attribute__((noinline)) void throwSomething()
{
  throw std::runtime_error("nobody catches this");
}

extern "C" __attribute__((noinline)) void throwThroughNoexcept() noexcept
{
  throwSomething();
}

void print(const char* key, const QString& value)
{
  std::cout << "@" << key << "=" << value.toStdString() << std::endl;
}

// Async-signal-safe: counts the dumps in the log folder and says so on stdout.
char g_logFolder[4096];
void observeCrash(int signalNumber, siginfo_t*, void*)
{
  int dumps = 0;
  const int dir = open(g_logFolder, O_RDONLY | O_DIRECTORY);
  alignas(8) char buffer[4096];
  for (long n; dir >= 0 && (n = syscall(SYS_getdents64, dir, buffer, sizeof buffer)) > 0;)
    for (long at = 0; at < n;)
    {
      const auto* entry = reinterpret_cast<const struct dirent64*>(buffer + at);
      at += entry->d_reclen;
      dumps += std::strstr(entry->d_name, "_crash.dmp") != nullptr ? 1 : 0;
    }
  char line[] = "\n@observed=S D\n";
  line[11] = static_cast<char>('A' + signalNumber);
  line[13] = static_cast<char>('0' + dumps);
  (void)!write(1, line, sizeof line - 1);
  // Lingers, so that a second crashing thread, were it let through, would get here too.
  const timespec pause{0, 300 * 1000 * 1000};
  nanosleep(&pause, nullptr);
}

// The heap's main arena stays locked by a thread blocked inside malloc_stats, which prints
// while holding the lock into a pipe that is full. A second thread then proves the lock
// is held: its mallinfo2, which takes every arena's lock, does not come back. From the
// locking on, this thread must not allocate (it uses the main arena too).
void holdTheHeapLock()
{
  static std::atomic<bool> go{false};
  static std::atomic<bool> infoReturned{false};
  std::thread(
      []
      {
        while (!go)
          usleep(1000);
        (void)mallinfo2();
        infoReturned = true;
      })
      .detach();
  int fds[2];
  if (pipe2(fds, O_NONBLOCK) != 0)
    std::abort();
  char block[4096] = {};
  while (write(fds[1], block, sizeof block) > 0)
  {
  }
  fcntl(fds[1], F_SETFL, 0);
  dup2(fds[1], 2);
  std::thread([] { malloc_stats(); }).detach();
  usleep(200 * 1000);
  go = true;
  usleep(300 * 1000);
  const char* line = infoReturned ? "\n@heapLocked=0\n" : "\n@heapLocked=1\n";
  (void)!write(1, line, std::strlen(line));
}

// As in a container whose system-call filter forbids ptrace: every ptrace call fails with
// EPERM, in this process and in the dump helper it starts.
void refusePtrace()
{
  sock_filter filter[] = {
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, offsetof(seccomp_data, nr)),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, __NR_ptrace, 0, 1),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ERRNO | EPERM),
      BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
  };
  sock_fprog program{static_cast<unsigned short>(std::size(filter)), filter};
  if (prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0 || prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program) != 0)
    std::abort();
}

} // namespace

TEST(DISABLED_CrashChild, Run)
{
  MemoryDumpManager& manager = MemoryDumpManager::getInstance();
  const QString scenario = qEnvironmentVariable("CRASH_CHILD_SCENARIO");
  const QByteArray logFolder = qgetenv("CRASH_CHILD_LOG");
  std::strncpy(g_logFolder, logFolder.constData(), sizeof g_logFolder - 1);
  if (scenario == QLatin1String("request"))
  {
    const QString first = manager.createMemoryDump();
    const QString second = manager.createMemoryDump();
    print("first", first);
    print("second", second);
    print("last", manager.getLastCrashDumpFilePath().value_or(QStringLiteral("none")));
    return;
  }
  manager.registerHandlers();
  if (scenario == QLatin1String("null"))
    crashOnNullPointer();
  else if (scenario == QLatin1String("abort"))
    abortOnPurpose();
  else if (scenario == QLatin1String("overflow"))
    print("depth", QString::number(overflowTheStack(0)));
  else if (scenario == QLatin1String("threads"))
  {
    std::thread(
        []
        {
          for (;;)
            usleep(1000);
        })
        .detach();
    std::thread(crashOnSecondThread).join();
  }
  else if (scenario == QLatin1String("heap"))
  {
    holdTheHeapLock();
    crashOnNullPointer();
  }
  else if (scenario == QLatin1String("observer"))
  {
    // Two threads crash at the same moment: one dump, one run of the observers.
    RTE::Linux::addCrashObserver(&observeCrash);
    static std::atomic<int> ready{0};
    auto crashTogether = []
    {
      ++ready;
      while (ready < 2)
      {
      }
      crashOnSecondThread();
    };
    std::thread first(crashTogether);
    std::thread second(crashTogether);
    first.join();
    second.join();
  }
  else if (scenario == QLatin1String("terminate"))
    throwThroughNoexcept();
  else if (scenario == QLatin1String("noptrace"))
  {
    refusePtrace();
    crashOnNullPointer();
  }
  print("survived", scenario);
}

namespace
{

// --- the parent side ------------------------------------------------------------------

struct ChildRun
{
  bool finished = false;
  bool crashed = false;
  int exitCode = -1; // the signal when crashed
  qint64 milliseconds = 0;
  QString output;
  QMap<QString, QString> report;
  QStringList dumps; // full paths
};

class CrashDumps : public ::testing::Test
{
protected:
  void SetUp() override
  {
#ifdef CRASH_TESTS_UNDER_SANITIZER
    // UndefinedBehaviorSanitizer stops at the null store before any signal, AddressSanitizer
    // reports a fault itself after the dump (so the status is not the signal's) and
    // replaces the heap whose lock a test holds; ThreadSanitizer delays signals.
    GTEST_SKIP() << "crashes under the sanitizers end through the sanitizers' own reports";
#endif
    m_program = m_dir.path() + QStringLiteral("/prog/app");
    m_log = m_dir.path() + QStringLiteral("/prog/ProgramData/log/");
    ASSERT_TRUE(QDir().mkpath(m_log));
    ASSERT_TRUE(QFile::copy(QCoreApplication::applicationFilePath(), m_program));
    QFile::setPermissions(m_program, QFile::permissions(m_program) | QFileDevice::ExeOwner);
  }

  ChildRun run(const QString& scenario, const QString& level = QStringLiteral("minimal"))
  {
    for (const QString& old : QDir(m_log).entryList(QDir::Files))
      QFile::remove(m_log + old);
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.remove(QStringLiteral("PUBLIC"));
    env.insert(QStringLiteral("HOME"), m_dir.path() + QStringLiteral("/home"));
    env.insert(QStringLiteral("CRASH_CHILD_SCENARIO"), scenario);
    env.insert(QStringLiteral("CRASH_CHILD_LOG"), m_log);
    env.insert(QString::fromLatin1(MemoryDumpManager::DumpContentEnvVarName), level);
    QProcess child;
    child.setProcessEnvironment(env);
    QElapsedTimer timer;
    timer.start();
    child.start(m_program, {QStringLiteral("--gtest_also_run_disabled_tests"),
                            QStringLiteral("--gtest_filter=DISABLED_CrashChild.Run")});
    ChildRun result;
    result.finished = child.waitForFinished(30000);
    result.milliseconds = timer.elapsed();
    if (!result.finished)
      child.kill();
    result.crashed = child.exitStatus() == QProcess::CrashExit;
    result.exitCode = child.exitCode();
    result.output = QString::fromUtf8(child.readAllStandardOutput());
    for (const QString& line : result.output.split(QLatin1Char('\n')))
      if (line.startsWith(QLatin1Char('@')))
        result.report.insert(line.mid(1).section(QLatin1Char('='), 0, 0), line.section(QLatin1Char('='), 1));
    for (const QString& name : QDir(m_log).entryList({QStringLiteral("*_crash.dmp")}, QDir::Files))
      result.dumps << m_log + name;
    return result;
  }

  // Exactly one dump, and the child ended by the signal within a few seconds.
  void expectOneDumpAndSignal(const ChildRun& r, int signalNumber)
  {
    ASSERT_TRUE(r.finished) << "the crashed child hung";
    EXPECT_TRUE(r.crashed);
    EXPECT_EQ(r.exitCode, signalNumber);
    EXPECT_LT(r.milliseconds, 10000);
    ASSERT_EQ(r.dumps.size(), 1) << r.dumps.join(QLatin1Char(' ')).toStdString();
    EXPECT_TRUE(
        QFileInfo(r.dumps[0])
            .fileName()
            .contains(QRegularExpression(QStringLiteral("^\\d{4}-\\d\\d-\\d\\d_\\d\\d-\\d\\d-\\d\\d_crash\\.dmp$"))));
  }

  // gdb's "thread apply all bt" of the dump, or an empty text without gdb.
  QString backtraces(const QString& dump)
  {
    const QString gdb = QStandardPaths::findExecutable(QStringLiteral("gdb"));
    if (gdb.isEmpty())
      return {};
    QProcess process;
    process.start(gdb, {QStringLiteral("-batch"), QStringLiteral("-nx"), QStringLiteral("-ex"),
                        QStringLiteral("thread apply all bt 40"), m_program, dump});
    EXPECT_TRUE(process.waitForFinished(120000));
    return QString::fromUtf8(process.readAllStandardOutput());
  }

  // One "Thread N" block per thread, each with at least its innermost frame. The crashing
  // thread comes first in the dump, so gdb calls it thread 1; it must show the crash where
  // it happened, not from inside the signal handler.
  static void expectBacktracePerThread(const QString& text, int minimumThreads, const QString& crashingFunction)
  {
    const QStringList blocks = text.split(QRegularExpression(QStringLiteral("\\nThread (?=\\d+ )")));
    EXPECT_GE(blocks.size() - 1, minimumThreads) << text.toStdString();
    for (int i = 1; i < blocks.size(); ++i)
    {
      EXPECT_TRUE(blocks[i].contains(QStringLiteral("\n#0 "))) << blocks[i].toStdString();
      if (!blocks[i].startsWith(QStringLiteral("1 ")))
        continue;
      EXPECT_TRUE(blocks[i].contains(crashingFunction)) << blocks[i].toStdString();
      EXPECT_FALSE(blocks[i].contains(QStringLiteral("<signal handler called>"))) << blocks[i].toStdString();
    }
  }

  QTemporaryDir m_dir;
  QString m_program;
  QString m_log;
};

qint64 sizeOf(const ChildRun& r)
{
  return r.dumps.size() == 1 ? QFileInfo(r.dumps[0]).size() : -1;
}

} // namespace

TEST(MemoryDumpManager, LevelComesFromTheEnvironmentCaseInsensitivelyAndDefaultsToMinimal)
{
  const struct
  {
    const char* text;
    Level level;
  } cases[] = {{"Full", Level::Full},     {"full", Level::Full},       {"FULL", Level::Full},
               {"Medium", Level::Medium}, {"mEDIUM", Level::Medium},   {"Minimal", Level::Minimal},
               {"", Level::Minimal},      {"fulll", Level::Minimal},   {" full", Level::Minimal},
               {"63", Level::Minimal},    {"Medium ", Level::Minimal}, {"none", Level::Minimal}};
  for (const auto& c : cases)
  {
    SCOPED_TRACE(c.text);
    EXPECT_EQ(MemoryDumpManager::parseDumpContent(QString::fromLatin1(c.text)), c.level);
    qputenv(MemoryDumpManager::DumpContentEnvVarName, c.text);
    EXPECT_EQ(MemoryDumpManager::getDumpContent(), c.level);
  }
  qunsetenv(MemoryDumpManager::DumpContentEnvVarName);
  EXPECT_EQ(MemoryDumpManager::getDumpContent(), Level::Minimal);

  EXPECT_EQ(MemoryDumpManager::dumpTypeFlags(Level::Minimal), 0x1064u);
  EXPECT_EQ(MemoryDumpManager::dumpTypeFlags(Level::Medium), 0x1065u);
  EXPECT_EQ(MemoryDumpManager::dumpTypeFlags(Level::Full), 0x21067u);
}

TEST(MemoryDumpManager, FileNameIsTheLocalTimeOfTheDump)
{
  // The crash path formats the name without the C library's time functions; it must
  // agree with Qt's calendar across leap years, centuries and both signs of offset.
  const qint64 moments[] = {0, 951782400, 951868799, 4107542400, 1709208000, 1735689599, 1234567890};
  for (qint64 utc : moments)
    for (long offset : {0L, 3600L, 7200L, -18000L, 19800L, -43200L, 50400L})
    {
      SCOPED_TRACE(utc);
      SCOPED_TRACE(offset);
      char name[RTE::Linux::DumpFileNameSize];
      RTE::Linux::formatDumpFileName(name, static_cast<std::time_t>(utc), offset);
      const QDateTime local = QDateTime::fromSecsSinceEpoch(utc, QTimeZone(int(offset)));
      EXPECT_EQ(QString::fromLatin1(name), local.toString(QStringLiteral("yyyy-MM-dd_hh-mm-ss")) + "_crash.dmp");
    }
}

TEST_F(CrashDumps, CrashesOfEveryKindWriteOneDumpAndEndWithTheSignal)
{
  const struct
  {
    const char* scenario;
    int signalNumber;
    const char* function; // the crashing function gdb must name, if any
    int threads;
    const char* key; // a report the child must print exactly once, if any, and its value
    const char* value;
  } cases[] = {{"null", SIGSEGV, "crashOnNullPointer", 1, nullptr, nullptr},
               {"abort", SIGABRT, "abortOnPurpose", 1, nullptr, nullptr},
               {"overflow", SIGSEGV, "overflowTheStack", 1, nullptr, nullptr},
               {"threads", SIGSEGV, "crashOnSecondThread", 3, nullptr, nullptr},
               {"terminate", SIGABRT, "throwThroughNoexcept", 1, nullptr, nullptr},
               // Without ptrace only the crashed thread can be written.
               {"noptrace", SIGSEGV, "crashOnNullPointer", 1, nullptr, nullptr},
               // The heap lock is held by another thread when the crash comes.
               {"heap", SIGSEGV, "crashOnNullPointer", 3, "heapLocked", "1"},
               // Two threads crash at once: one dump, then one run of the observers. They
               // print the signal as a letter and the number of dumps in the folder.
               {"observer", SIGSEGV, nullptr, 0, "observed", "L 1"}};
  static_assert('A' + SIGSEGV == 'L');
  for (const auto& c : cases)
  {
    SCOPED_TRACE(c.scenario);
    const ChildRun r = run(QString::fromLatin1(c.scenario));
    if (c.key != nullptr)
    {
      EXPECT_EQ(r.report.value(QString::fromLatin1(c.key)), QString::fromLatin1(c.value));
      EXPECT_EQ(r.output.count(QStringLiteral("@%1=").arg(QString::fromLatin1(c.key))), 1) << r.output.toStdString();
    }
    expectOneDumpAndSignal(r, c.signalNumber);
    EXPECT_FALSE(r.report.contains(QStringLiteral("survived")));
    if (r.dumps.size() != 1 || c.function == nullptr)
      continue;
    const QString text = backtraces(r.dumps[0]);
    if (text.isEmpty())
      continue; // no gdb
    expectBacktracePerThread(text, c.threads, QString::fromLatin1(c.function));
  }
}

TEST_F(CrashDumps, MoreDetailMakesLargerDumps)
{
  const qint64 minimal = sizeOf(run(QStringLiteral("null"), QStringLiteral("Minimal")));
  const qint64 medium = sizeOf(run(QStringLiteral("null"), QStringLiteral("medium")));
  const ChildRun full = run(QStringLiteral("null"), QStringLiteral("FULL"));
  EXPECT_GT(minimal, 0);
  EXPECT_LT(minimal, medium);
  EXPECT_LT(medium, sizeOf(full));
  const QString text = backtraces(full.dumps.value(0));
  if (!text.isEmpty())
    expectBacktracePerThread(text, 1, QStringLiteral("crashOnNullPointer"));
}

TEST_F(CrashDumps, DumpsOnRequestInOneSecondReplaceEachOtherAndAreRecorded)
{
  ChildRun r;
  for (int attempt = 0; attempt < 3; ++attempt)
  {
    r = run(QStringLiteral("request"));
    if (r.report.value(QStringLiteral("first")) == r.report.value(QStringLiteral("second")))
      break; // otherwise the second crossed into the next second; try again
  }
  ASSERT_TRUE(r.finished);
  EXPECT_FALSE(r.crashed);
  EXPECT_EQ(r.report.value(QStringLiteral("first")), r.report.value(QStringLiteral("second")));
  EXPECT_EQ(r.report.value(QStringLiteral("last")), r.report.value(QStringLiteral("second")));
  ASSERT_EQ(r.dumps, QStringList{r.report.value(QStringLiteral("first"))});
  const QString text = backtraces(r.dumps[0]);
  if (!text.isEmpty())
    expectBacktracePerThread(text, 1, QStringLiteral("createMemoryDump"));

  // Without the "log/" folder nothing is written, but the path is still recorded.
  ASSERT_TRUE(QDir(m_log).removeRecursively());
  const ChildRun missing = run(QStringLiteral("request"));
  EXPECT_TRUE(missing.report.value(QStringLiteral("last")).startsWith(m_log));
  EXPECT_FALSE(QFileInfo::exists(m_log));
}

TEST(RteCrashCommand, ReportsTheDumpOfItsCrashedChildAndRefusesUnknownLevels)
{
  SKIP_WITHOUT_RTE();
#ifdef CRASH_TESTS_UNDER_SANITIZER
  GTEST_SKIP() << "the sanitizers own the fault signals";
#endif
  EXPECT_EQ(runRte({QStringLiteral("crash"), QStringLiteral("--level"), QStringLiteral("huge")}).exitCode, 2);
  const RteRun r = runRte({QStringLiteral("crash"), QStringLiteral("--level"), QStringLiteral("medium")});
  EXPECT_EQ(r.exitCode, 0) << r.err.toStdString();
  EXPECT_TRUE(r.out.contains(QStringLiteral("signal 11 (SEGV)"))) << r.out.toStdString();
  const QRegularExpressionMatch dump = QRegularExpression(QStringLiteral("dump: (.*_crash\\.dmp)\\n")).match(r.out);
  ASSERT_TRUE(dump.hasMatch()) << r.out.toStdString();
  const QRegularExpressionMatch size = QRegularExpression(QStringLiteral("size: (\\d+) bytes")).match(r.out);
  EXPECT_EQ(size.captured(1).toLongLong(), QFileInfo(dump.captured(1)).size());
  if (!QStandardPaths::findExecutable(QStringLiteral("gdb")).isEmpty())
  {
    EXPECT_TRUE(r.out.contains(QRegularExpression(QStringLiteral("\\n  #0 .*rteCrashOnPurpose"))))
        << r.out.toStdString();
  }
  QFile::remove(dump.captured(1));
}
