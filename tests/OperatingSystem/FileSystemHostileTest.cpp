// Trees and disks that fight back: link loops, undecodable and multi-line names, deep
// nesting, and a file-size limit that makes writes fail half-way.
#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/OperatingSystem/ActivityControl.h>
#include <Core/Common/OperatingSystem/ActivityFeedback.h>
#include <Core/Common/OperatingSystem/FileSystem.h>

#include "TestHelpers.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace FS = RTE::FileSystem;

namespace
{

// Runs body in a child whose files may not grow beyond limit bytes; SIGXFSZ is ignored,
// so writes fail with EFBIG. The child's exit code is body's result (0 = as expected).
int WithFileSizeLimit(rlim_t limit, const std::function<int()>& body)
{
  const pid_t child = ::fork();
  if (child == 0)
  {
    std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small{limit, limit};
    ::setrlimit(RLIMIT_FSIZE, &small);
    int code = 99;
    try
    {
      code = body();
    }
    catch (...)
    {
      code = 98;
    }
    ::_exit(code);
  }
  int status = 0;
  ::waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 100 + WTERMSIG(status);
}

} // namespace

TEST(FileSystemHostile, LoopsOddNamesAndUnreadableEntriesAreSkippedAndReported)
{
  QTemporaryDir dir;
  const QString src = dir.path() + "/src";
  WriteFile(src + "/line\nbreak.txt", 4);
  WriteFile(src + "/sub/ok.txt", 5);
  WriteFile(dir.path() + "/secret", 1000);
  QFile::link(src, src + "/sub/loop");
  QFile::link(dir.path() + "/secret", src + "/escape");
  const QByteArray badName = QFile::encodeName(src) + "/bad\xff\xfe.txt";
  const int fd = ::open(badName.constData(), O_WRONLY | O_CREAT, 0644);
  ASSERT_GE(fd, 0);
  ASSERT_EQ(::write(fd, "abc", 3), 3);
  ::close(fd);

  RTE::ActivityControl control;
  EXPECT_EQ(FS::DirSize(src, control), 12U); // links not followed, the odd name counted

  RTE::ActivityFeedback feedback;
  QStringList skipped;
  QObject::connect(&feedback, &RTE::I_ActivityFeedback::messageReported,
                   [&](const QString& m)
                   {
                     if (m.startsWith(QStringLiteral("Skipped: ")))
                       skipped << m.mid(9);
                   });
  const QString dst = dir.path() + "/dst";
  FS::CopyFolder(src, dst, control, feedback);
  EXPECT_TRUE(skipped.contains(QStringLiteral("sub/loop")));
  EXPECT_TRUE(skipped.contains(QStringLiteral("escape")));
  EXPECT_EQ(skipped.size(), 3) << skipped.join('|').toStdString();
  EXPECT_EQ(QFileInfo(dst + "/line\nbreak.txt").size(), 4);
  EXPECT_FALSE(QFileInfo::exists(dst + "/escape"));
  EXPECT_FALSE(QFileInfo::exists(dst + "/sub/loop"));

  // Removal takes links away without following them; the target of a link survives.
  FS::RemoveFolder(src, control, feedback);
  EXPECT_FALSE(QFileInfo::exists(src));
  EXPECT_TRUE(QFileInfo::exists(dir.path() + "/secret"));

  // An unreadable folder counts as empty. Permissions do not stop the superuser, so the
  // walk runs in a child that gives its privileges up.
  WriteFile(dst + "/closed/x", 10);
  ::chmod(QFile::encodeName(dir.path()).constData(), 0755);
  ::chmod(QFile::encodeName(dst + "/closed").constData(), 0);
  const pid_t child = ::fork();
  if (child == 0)
  {
    if (::geteuid() == 0 && (::setgid(65534) != 0 || ::setuid(65534) != 0))
      ::_exit(2);
    RTE::ActivityControl childControl;
    ::_exit(FS::DirSize(dst, childControl) == 4U + 5U ? 0 : 1);
  }
  int status = -1;
  ::waitpid(child, &status, 0);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << status;
  ::chmod(QFile::encodeName(dst + "/closed").constData(), 0755);
}

TEST(FileSystemHostile, ThousandLevelsDeepAreWalkedCopiedAndRemoved)
{
  QTemporaryDir dir;
  QString deep = dir.path() + "/src";
  for (int level = 0; level < 1000; ++level)
    deep += "/d";
  ASSERT_TRUE(QDir().mkpath(deep));
  WriteFile(deep + "/leaf", 9);

  RTE::ActivityControl control;
  RTE::ActivityFeedback feedback;
  EXPECT_EQ(FS::DirSize(dir.path() + "/src", control), 9U);
  FS::CopyFolder(dir.path() + "/src", dir.path() + "/dst", control, feedback);
  EXPECT_EQ(QFileInfo(QString(deep).replace("/src/", "/dst/") + "/leaf").size(), 9);
  FS::RemoveFolder(dir.path() + "/dst", control, feedback);
  EXPECT_FALSE(QFileInfo::exists(dir.path() + "/dst"));
}

TEST(FileSystemHostile, AWriteLimitFailsCopiesAndRemovesTheirTargets)
{
  QTemporaryDir dir;
  const QString src = dir.path() + "/src";
  WriteFile(src + "/small", 100);
  WriteFile(src + "/big", 3 * 1048576);

  // The child's code: 1 for a wrong or missing error, 2 for a target left behind.
  const int fileCopy = WithFileSizeLimit(
      1048576 + 100,
      [&]
      {
        if (MessageOf<RTE::Exception>([&] { FS::CopyFile(src + "/big", dir.path() + "/big.copy"); }) !=
            "Unknown error during 'CopyFile' " + src + "/big to " + dir.path() + "/big.copy")
          return 1;
        return QFileInfo::exists(dir.path() + "/big.copy") ? 2 : 0;
      });
  EXPECT_EQ(fileCopy, 0);

  const int folderCopy = WithFileSizeLimit(
      1048576 + 100,
      [&]
      {
        RTE::ActivityControl control;
        RTE::ActivityFeedback feedback;
        if (MessageOf<RTE::LogicError>([&] { FS::CopyFolder(src, dir.path() + "/dst", control, feedback); }) !=
            QStringLiteral("The file \"big\" could not be copied to the target folder."))
          return 1;
        return QFileInfo::exists(dir.path() + "/dst") ? 2 : 0;
      });
  EXPECT_EQ(folderCopy, 0);
  // (A settings save cut short the same way is tested with the settings documents.)
}
