// The `rte settings` subcommand, run as a user would run it.
#include <Core/Common/Storage/SettingsDocument.h>

#include "StorageTestHelpers.h"
#include "TestFiles.h"

#include <QTemporaryDir>

#include "RteRun.h"

#include <gtest/gtest.h>

namespace
{

RteRun rte(const QStringList& arguments)
{
  return runRte(QStringList{QStringLiteral("settings")} + arguments);
}

} // namespace

TEST(SettingsCommand, PrintsGetsAndSetsKeepingTheRest)
{
  SKIP_WITHOUT_RTE();
  QTemporaryDir dir;
  const QString path = dir.filePath(QStringLiteral("setup.xml"));
  {
    Storage::SettingsDocument document(path, Storage::AutoSync::Off);
    document.SetClass("Setup");
    document.SetVersion(3);
    auto center = document.CreateNode("center");
    center->SetClass("point2D");
    center->Set("X", 10);
    document.AppendCollectionItem("items", 0.5);
    document.AppendCollectionItem("items", 7);
    document.Set("note", QStringLiteral("a\nb"));
    ASSERT_TRUE(document.Save());
  }

  RteRun run = rte({path});
  EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
  EXPECT_EQ(run.out, QStringLiteral("root  class=\"Setup\"  version=3\n"
                                    "  center  class=\"point2D\"\n"
                                    "    X = 10  (int32)\n"
                                    "  items[0] = 0.5  (double)\n"
                                    "  items[1] = 7  (int32)\n"
                                    "  note = a\\nb  (string)\n"
                                    "Reports: none\n"));

  run = rte({path, QStringLiteral("--get"), QStringLiteral("center/X")});
  EXPECT_EQ(run.out, QStringLiteral("10\nReports: none\n"));
  run =
      rte({path, QStringLiteral("--get"), QStringLiteral("items[0]"), QStringLiteral("--as"), QStringLiteral("int32")});
  EXPECT_EQ(run.exitCode, 3); // read as another type: reported
  EXPECT_TRUE(run.err.contains(QStringLiteral("Mismatching class"))) << run.err.toStdString();
  run = rte({path, QStringLiteral("--get"), QStringLiteral("center/Z")});
  EXPECT_EQ(run.exitCode, 1);

  run = rte({path, QStringLiteral("--set"), QStringLiteral("center/Y=-3"), QStringLiteral("--type"),
             QStringLiteral("int32")});
  EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
  run = rte(
      {path, QStringLiteral("--set"), QStringLiteral("gain=lots"), QStringLiteral("--type"), QStringLiteral("double")});
  EXPECT_EQ(run.exitCode, 2);
  run = rte(
      {path, QStringLiteral("--set"), QStringLiteral("items=1"), QStringLiteral("--type"), QStringLiteral("int32")});
  EXPECT_EQ(run.exitCode, 1); // a collection is never overwritten

  Storage::SettingsDocument changed(path, Storage::AutoSync::LoadOnly);
  EXPECT_EQ(changed.GetVersion(), 3u);
  EXPECT_EQ(changed.GetNode("center")->Get<int>("Y", 0), -3);
  EXPECT_EQ(changed.GetNode("center")->Get<int>("X", 0), 10);
  EXPECT_EQ(changed.GetCollectionItem<int>("items", 1, 0), 7);
  EXPECT_EQ(changed.Get<QString>("note", QString()), QStringLiteral("a\nb"));
  EXPECT_FALSE(changed.Contains("gain"));

  // A file that cannot be read is never overwritten.
  const QString broken = dir.filePath(QStringLiteral("broken.xml"));
  ASSERT_TRUE(writeFile(broken, "<root><unclosed>"));
  run = rte({broken, QStringLiteral("--set"), QStringLiteral("a=1")});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(readFile(broken), QByteArray("<root><unclosed>"));
}
