#include "RteRun.h"

#include <Core/Common/OperatingSystem/C_SystemInfo.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QProcess>
#include <QProcessEnvironment>
#include <QStandardPaths>

#include <gtest/gtest.h>

#include <chrono>
#include <thread>
#include <vector>

namespace
{

using RTE::C_SystemInfo;

// The test program started again only to sleep: a second process of the same executable.
[[maybe_unused]] const bool sleeperRan = []
{
  if (qEnvironmentVariable("SYSINFO_TEST_SLEEPER") != QLatin1String("1"))
    return false;
  std::this_thread::sleep_for(std::chrono::seconds(30));
  ::_exit(0);
}();

bool containsProcess(const std::vector<C_SystemInfo::ProcessInfo>& processes, qint64 pid)
{
  for (const C_SystemInfo::ProcessInfo& process : processes)
  {
    if (process.processId == static_cast<std::uint64_t>(pid))
      return true;
  }
  return false;
}

TEST(SystemInfo, MemoryAndTimeFiguresAreConsistent)
{
  const C_SystemInfo& info = C_SystemInfo::GetInstance();
  const std::uint64_t total = info.GetMemoryTotal();
  const std::uint64_t avail = info.GetMemoryAvail();
  ASSERT_GT(total, 0u);
  EXPECT_LE(avail, total);
  EXPECT_NEAR(info.GetMemoryUsage(), 100.0 * static_cast<double>(total - avail) / static_cast<double>(total), 5.0);
  EXPECT_FALSE(info.getUserName().isEmpty());
  EXPECT_EQ(info.GetGdiObjectCount(), 0u);
  EXPECT_GE(info.GetProcessorNumber(), 1u);
  // 64 MiB written page by page must show in the resident set.
  const std::uint64_t resident = info.GetMemoryProcess();
  std::vector<char> block(64 << 20);
  for (std::size_t i = 0; i < block.size(); i += 4096)
    block[i] = static_cast<char>(i);
  EXPECT_GE(info.GetMemoryProcess(), resident + (48u << 10)) << "before " << resident << " KiB";
  EXPECT_LT(info.GetMemoryProcess(), total);

  ASSERT_TRUE(info.IsHighResTimeAvail());
  EXPECT_EQ(info.GetHighResSystemFrequency(), 1000000000u);
  const std::uint64_t before = info.GetHighResSystemCounter64();
  const std::uint64_t beforeMicro = info.GetHighResSystemMicroSec();
  std::this_thread::sleep_for(std::chrono::milliseconds(20));
  const std::uint64_t after = info.GetHighResSystemCounter64();
  EXPECT_GE(after - before, 20000000u);
  EXPECT_LT(after - before, 10000000000u);
  EXPECT_GE(info.GetHighResSystemMicroSec() - beforeMicro, 20000u);
  // The 32-bit counter is the low half of the same clock (the difference wraps).
  EXPECT_LT(static_cast<std::uint32_t>(info.GetHighResSystemCounter() - static_cast<std::uint32_t>(after)),
            1000000000u);
}

TEST(SystemInfo, LoadSamplerSeesABusyThreadAndStops)
{
  C_SystemInfo& info = C_SystemInfo::GetInstance();
  EXPECT_EQ(info.GetSystemLoad(), 0.0);
  info.StartCPUThread(20);
  info.StartCPUThread(20); // a second start changes nothing
  QElapsedTimer timer;
  timer.start();
  volatile std::uint64_t spin = 0;
  while (timer.elapsed() < 300)
    spin = spin + 1;
  const double load = info.GetSystemLoad();
  EXPECT_GT(load, 0.0);
  EXPECT_LE(load, 100.0);
  info.StopCPUThread();
  EXPECT_EQ(info.GetSystemLoad(), 0.0);
  info.StopCPUThread();
}

TEST(SystemInfo, FindsAndKillsAChildProcessByName)
{
  const C_SystemInfo& info = C_SystemInfo::GetInstance();
  const QString sleepProgram = QStandardPaths::findExecutable(QStringLiteral("sleep"));
  ASSERT_FALSE(sleepProgram.isEmpty());
  QProcess child;
  child.start(sleepProgram, {QStringLiteral("30")});
  ASSERT_TRUE(child.waitForStarted());
  const qint64 pid = child.processId();

  const QString executable = info.GetExecutableFile(static_cast<std::uint64_t>(pid));
  EXPECT_EQ(executable, QFileInfo(sleepProgram).canonicalFilePath());
  const std::vector<C_SystemInfo::ProcessInfo> found = info.GetProcessInfos(QFileInfo(executable).fileName());
  EXPECT_TRUE(containsProcess(found, pid));
  EXPECT_FALSE(containsProcess(info.GetProcessInfos(QStringLiteral("no-such-program-here")), pid));

  EXPECT_TRUE(info.killProcess(static_cast<std::uint64_t>(pid)));
  ASSERT_TRUE(child.waitForFinished(5000));
  EXPECT_EQ(child.exitStatus(), QProcess::CrashExit);
  EXPECT_FALSE(containsProcess(info.GetProcessInfos(QFileInfo(executable).fileName()), pid));

  // Ids that would reach process groups or every process through kill(2).
  EXPECT_FALSE(info.killProcess(0));
  EXPECT_FALSE(info.killProcess(std::uint64_t{1} << 32));
  EXPECT_FALSE(info.killProcess(static_cast<std::uint64_t>(-1)));
  EXPECT_TRUE(info.GetExecutableFile(0).isEmpty());
}

TEST(SystemInfo, SecondProcessOfTheSameExecutableIsSeen)
{
  const C_SystemInfo& info = C_SystemInfo::GetInstance();
  QProcess twin;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("SYSINFO_TEST_SLEEPER"), QStringLiteral("1"));
  twin.setProcessEnvironment(environment);
  twin.start(QCoreApplication::applicationFilePath(), {});
  ASSERT_TRUE(twin.waitForStarted());
  EXPECT_FALSE(info.IsUniqueProcessOfCurrentExecutable());
  twin.kill();
  twin.waitForFinished();
}

TEST(SystemInfo, CommandRunnersReturnLinesAndStopAtTheTimeout)
{
  const C_SystemInfo& info = C_SystemInfo::GetInstance();
  EXPECT_EQ(info.RunCommandAndReturnOutput(QStringLiteral("printf"), {QStringLiteral("a\\nb c\\r\\n\\nd\\n")}, 5000),
            QStringList({"a", "b c", "", "d"}));
  EXPECT_EQ(info.RunCommandAndReturnOutput(QStringLiteral("printf"), {QStringLiteral("last")}, 5000),
            QStringList({"last"}));
  EXPECT_TRUE(info.RunCommandAndReturnOutput(QStringLiteral("/no/such/program"), {}, 5000).isEmpty());

  // The shell interprets the command; each argument stays one word.
  EXPECT_EQ(info.RunCommandInShellAndReturnOutput(QStringLiteral("echo $#; printf '%s\\n'"),
                                                  {QStringLiteral("x y"), QStringLiteral("$HOME; z")}, 5000),
            QStringList({"2", "x y", "$HOME; z"}));
  EXPECT_EQ(info.RunCommandInShellAndReturnOutput(QStringLiteral("echo one | tr o O"), {}, 5000), QStringList({"One"}));

  QElapsedTimer timer;
  timer.start();
  EXPECT_EQ(info.RunCommandInShellAndReturnOutput(QStringLiteral("echo started; sleep 20; echo late"), {}, 300),
            QStringList({"started"}));
  EXPECT_LT(timer.elapsed(), 5000);
}

TEST(SystemInfo, RteSysinfoReportsAndRefusesBadOptions)
{
  SKIP_WITHOUT_RTE();
  const RteRun run = runRte({QStringLiteral("sysinfo"), QStringLiteral("--load-ms"), QStringLiteral("40")});
  EXPECT_EQ(run.exitCode, 0) << qPrintable(run.err);
  EXPECT_TRUE(run.out.contains(QStringLiteral("Linux:                     yes"))) << qPrintable(run.out);
  EXPECT_TRUE(run.out.contains(QStringLiteral("Memory total:"))) << qPrintable(run.out);
  EXPECT_TRUE(run.out.contains(QStringLiteral("Instruction sets:"))) << qPrintable(run.out);
  EXPECT_EQ(runRte({QStringLiteral("sysinfo"), QStringLiteral("--load-ms"), QStringLiteral("soon")}).exitCode, 2);
  EXPECT_EQ(runRte({QStringLiteral("sysinfo"), QStringLiteral("extra")}).exitCode, 2);
}

} // namespace
