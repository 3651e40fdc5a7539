// The `rte params` subcommand, run as a user would run it.
#include <Core/Common/Parameter/ParameterStorage.h>
#include <Core/Common/Storage/SettingsDocument.h>

#include <QCoreApplication>
#include <QFileInfo>
#include <QTemporaryDir>

#include "RteRun.h"

#include <gtest/gtest.h>

using namespace RTE::Parameter;

namespace
{

RteRun rte(const QStringList& arguments)
{
  return runRte(QStringList{QStringLiteral("params")} + arguments);
}

std::shared_ptr<C_Tree> makeCamera()
{
  auto tree = CreateTree();
  auto sensor = CreateCategory("Sensor", "Sensor", "");
  sensor->AddChild(CreateDouble("ExposureTime", "", "", ReadWrite, 12.5, 0.01, 1000, C_Double::EditorSpinBox, 2));
  sensor->AddChild(CreateInteger("Gain", "", "", ReadOnly, 2, 1, 16, C_Integer::EditorSpinBox));
  tree->AddChild(sensor);
  auto trigger = CreateEnumeration("TriggerMode", "", "", C_Enumeration::EditorComboBox);
  trigger->AddEntry(Private::CreateEnumerationEntry("Internal", "", "", 0));
  trigger->AddEntry(Private::CreateEnumerationEntry("External", "", "", 1));
  trigger->SetCurrentEntry("External");
  tree->AddChild(trigger);
  auto regions = CreateList("Regions", "", "", nullptr, C_List::EditorTreeView);
  regions->Append(CreateIntegerList("Region", 2, "", "", ReadWrite, 5, 0, 10, C_IntegerList::EditorLineEdit));
  tree->AddChild(regions);
  tree->AddChild(CreateTextList("Channels", 2, "", "", ReadWrite, "a\"b", C_TextList::EditorListView));
  tree->AddChild(CreateText("Note", "", "", ReadWrite, "two\nlines", C_Text::EditorLineEdit));
  tree->AddChild(CreateAction("Calibrate", "", "", ReadWrite, C_Action::EditorPushButton));
  return tree;
}

} // namespace

TEST(ParamsCommand, PrintsTheStoredTreeIndented)
{
  SKIP_WITHOUT_RTE();
  QTemporaryDir dir;
  const QString path = dir.filePath("setup.xml");
  {
    Storage::SettingsDocument document(path, Storage::AutoSync::Off);
    document.Set("Owner", QStringLiteral("lab 3"));
    Storage::SerializeTo(*document.CreateNode("Camera0"), makeCamera());
    auto single = CreateBool("Enabled", true);
    Storage::SerializeTo(*document.CreateNode("Flags")->CreateNode("Enabled"), single);
    ASSERT_TRUE(document.Save());
  }

  RteRun run = rte({path});
  EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
  EXPECT_EQ(run.out,
            QStringLiteral("Sensor  Category  ReadWrite\n"
                           "  ExposureTime  Double  = 12.5  [0.01 .. 1000]  ReadWrite\n"
                           "  Gain  Integer  = 2  [1 .. 16]  ReadOnly\n"
                           "TriggerMode  Enumeration  = External  {Internal=0, External=1}  UndefinedAccesMode\n"
                           "Regions  List  length 1  UndefinedAccesMode\n"
                           "  [0] Region  IntegerList  = (5, 5)  [0 .. 10]  ReadWrite\n"
                           "Channels  TextList  = (\"a\\\"b\", \"a\\\"b\")  ReadWrite\n"
                           "Note  Text  = \"two\\nlines\"  ReadWrite\n"
                           "Calibrate  Action  ReadWrite\n"));

  run = rte({path, "--node", "Flags/Enabled"});
  EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
  EXPECT_EQ(run.out, QStringLiteral("Enabled  Bool  = true  ReadWrite\n"));

  run = rte({path, "--node", "Flags/Missing"});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_TRUE(run.err.contains("no parameter tree")) << run.err.toStdString();
  run = rte({path, "--node", "Owner"}); // a leaf, not a node
  EXPECT_EQ(run.exitCode, 1);
  run = rte({});
  EXPECT_EQ(run.exitCode, 2);
}
