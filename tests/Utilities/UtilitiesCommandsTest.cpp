// The `rte ranges` and `rte xml` subcommands, run as a user would run them.
#include "RteRun.h"
#include "TestFiles.h"
#include "Units/QStringPrinter.h"

#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(RangesCommand, PrintsRangesSinglesOrTheError)
{
  SKIP_WITHOUT_RTE();
  RteRun run =
      runRte({QStringLiteral("ranges"), QStringLiteral("1-3; 5, !2"), QStringLiteral("--max"), QStringLiteral("9")});
  EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
  EXPECT_EQ(run.out, QStringLiteral("Ranges (0-based): 1, 3, 5\nSingles: 5\nSelected: 3 of 10 indices\n"));

  // A leading minus is a range statement, not an option.
  run = runRte({QStringLiteral("ranges"), QStringLiteral("-2"), QStringLiteral("--min"), QStringLiteral("1"),
                QStringLiteral("--max"), QStringLiteral("5"), QStringLiteral("--one-based")});
  EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
  EXPECT_TRUE(run.out.startsWith(QStringLiteral("Ranges (0-based): 0-1\n"))) << run.out.toStdString();

  run = runRte({QStringLiteral("ranges"), QStringLiteral("2-4-6"), QStringLiteral("--max"), QStringLiteral("9")});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(run.err, QStringLiteral("rte ranges: ParseRangeString: Range string contains invalid range statements\n"));
  EXPECT_TRUE(run.out.isEmpty());

  run = runRte({QStringLiteral("ranges"), QStringLiteral("1"), QStringLiteral("--max"), QStringLiteral("-1")});
  EXPECT_EQ(run.exitCode, 2);
  run = runRte({QStringLiteral("ranges"), QStringLiteral("1")});
  EXPECT_EQ(run.exitCode, 2);
}

TEST(XmlCommand, PrintsTheSelectedValue)
{
  SKIP_WITHOUT_RTE();
  QTemporaryDir dir;
  const QString path = dir.filePath(QStringLiteral("camera.xml"));
  ASSERT_TRUE(writeFile(path, "<camera id=\"c1\"><lens>35</lens></camera>"));
  RteRun run = runRte({QStringLiteral("xml"), path, QStringLiteral("/camera/@id")});
  EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
  EXPECT_EQ(run.out, QStringLiteral("c1\n"));
  run = runRte({QStringLiteral("xml"), path, QStringLiteral("//lens")});
  EXPECT_EQ(run.out, QStringLiteral("35\n"));

  run = runRte({QStringLiteral("xml"), path, QStringLiteral("//tripod")});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_TRUE(run.err.contains(QStringLiteral("selects nothing"))) << run.err.toStdString();
  run = runRte({QStringLiteral("xml"), dir.filePath(QStringLiteral("none.xml")), QStringLiteral("/a")});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_TRUE(run.err.contains(QStringLiteral("no such file"))) << run.err.toStdString();
}

TEST(FlagsCommand, SwitchesForOneRunOrStoresTheChoice)
{
  SKIP_WITHOUT_RTE();
  RteRun run = runRte({QStringLiteral("flags"), QStringLiteral("list")});
  ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
  const QString file = run.out.section(QLatin1Char('\n'), 0, 0).mid(6);
  ASSERT_TRUE(file.endsWith(QStringLiteral("/FeatureFlags.xml"))) << run.out.toStdString();
  QFile::remove(file);
  run = runRte({QStringLiteral("flags"), QStringLiteral("list")});
  EXPECT_TRUE(run.out.contains(QStringLiteral("  FastPreview          off  Acquisition: Fast preview, default off\n")))
      << run.out.toStdString();
  EXPECT_TRUE(run.out.endsWith(QStringLiteral("Stored:\n  ExperimentalCodecs   off\n  FastPreview          off\n")))
      << run.out.toStdString();

  run = runRte({QStringLiteral("flags"), QStringLiteral("set"), QStringLiteral("FastPreview"), QStringLiteral("on")});
  EXPECT_EQ(run.out, QStringLiteral("FastPreview is on for this run\n"));
  EXPECT_FALSE(QFileInfo::exists(file));

  run = runRte({QStringLiteral("flags"), QStringLiteral("set"), QStringLiteral("Zoom"), QStringLiteral("on"),
                QStringLiteral("--store")});
  EXPECT_EQ(run.out, QStringLiteral("Zoom is on (stored in %1); no module of this tool registers it\n").arg(file));
  run = runRte({QStringLiteral("flags"), QStringLiteral("list")});
  EXPECT_TRUE(run.out.contains(QStringLiteral("  Zoom                 on\n"))) << run.out.toStdString();
  EXPECT_TRUE(run.out.contains(QStringLiteral("  FastPreview          off  "))) << run.out.toStdString();
  QFile::remove(file);

  for (const QStringList& bad :
       {QStringList{QStringLiteral("flags")},
        QStringList{QStringLiteral("flags"), QStringLiteral("set"), QStringLiteral("A")},
        QStringList{QStringLiteral("flags"), QStringLiteral("set"), QStringLiteral("A"), QStringLiteral("yes")}})
    EXPECT_EQ(runRte(bad).exitCode, 2) << bad.join(QLatin1Char(' ')).toStdString();
}
