#include "RteRun.h"
#include "TestHelpers.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(RteFileCommands, DuAndCopyWorkOnTreesAndRefuseBadArguments)
{
  SKIP_WITHOUT_RTE();
  QTemporaryDir dir;
  WriteFile(dir.path() + "/src/a.bin", 1500);
  WriteFile(dir.path() + "/src/sub/b.tmp", 36);

  const RteRun du = runRte({QStringLiteral("du"), dir.path() + "/src"});
  EXPECT_EQ(du.exitCode, 0) << du.err.toStdString();
  EXPECT_TRUE(du.out.startsWith(QStringLiteral("1536\t1.5 KB\t"))) << du.out.toStdString();
  EXPECT_EQ(runRte({QStringLiteral("du"), dir.path() + "/none"}).exitCode, 1);
  EXPECT_EQ(runRte({QStringLiteral("du")}).exitCode, 2);

  const RteRun copy =
      runRte({QStringLiteral("copy"), dir.path() + "/src", dir.path() + "/dst", "--exclude", QStringLiteral(".tmp")});
  EXPECT_EQ(copy.exitCode, 0) << copy.err.toStdString();
  EXPECT_EQ(QFileInfo(dir.path() + "/dst/a.bin").size(), 1500);
  EXPECT_FALSE(QFileInfo::exists(dir.path() + "/dst/sub/b.tmp"));
  EXPECT_TRUE(copy.err.contains(QStringLiteral("100%"))) << copy.err.toStdString();

  const RteRun again = runRte({QStringLiteral("copy"), dir.path() + "/src", dir.path() + "/dst"});
  EXPECT_EQ(again.exitCode, 1);
  EXPECT_TRUE(again.err.contains(QStringLiteral("The target folder must not exist."))) << again.err.toStdString();

  const RteRun locations = runRte({QStringLiteral("locations")});
  EXPECT_EQ(locations.exitCode, 0) << locations.err.toStdString();
  EXPECT_TRUE(locations.out.contains(QStringLiteral("Layout:                 portable")))
      << locations.out.toStdString();
  EXPECT_TRUE(locations.out.contains(QStringLiteral("Read-only settings:"))) << locations.out.toStdString();
}
