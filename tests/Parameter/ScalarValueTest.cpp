#include "SignalLog.h"
#include "TestHelpers.h"

#include <Core/Common/Parameter/C_Action.h>
#include <Core/Common/Parameter/C_Bool.h>
#include <Core/Common/Parameter/C_Double.h>
#include <Core/Common/Parameter/C_Text.h>

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace RTE::Parameter;

namespace
{

struct CountingCallback : I_ActionCallback
{
  void Invoke() override { ++calls; }
  int calls = 0;
};

} // namespace

TEST(C_Bool, ValueSignalsTextsAndCopies)
{
  auto node = CreateBool("Trigger", "Trigger", "External trigger", ReadOnly, true, C_Bool::EditorComboBox);
  EXPECT_EQ(node->GetPreferredEditor(), "ComboBox");
  EXPECT_EQ(node->toString(), "true");

  SignalLog log;
  log.watch(node.get(), &C_Node::ValueChanged, "ValueChanged");
  log.watch(node.get(), qOverload<bool>(&C_Bool::ValueChanged), "Bool");
  node->SetValue(true);
  EXPECT_TRUE(log.take().isEmpty());
  node->SetValue(false);
  EXPECT_EQ(log.take(), QStringList({"ValueChanged()", "Bool(false)"}));
  EXPECT_EQ(node->toString(), "false");

  auto source = CreateBool("Other", true);
  EXPECT_EQ(source->GetAccessMode(), ReadWrite);
  EXPECT_EQ(source->GetPreferredEditor(), "CheckBox");
  node->CopyValues(source);
  EXPECT_TRUE(node->GetValue());
  EXPECT_EQ(node->GetName(), "Trigger");
  EXPECT_EQ(log.take(), QStringList({"ValueChanged()", "Bool(true)"}));

  EXPECT_EQ(messageOf([&] { node->CopyValues(CreateDouble("d", 1)); }), "RTE::Exception: Cannot cast Double to Bool.");
  EXPECT_FALSE(*node == *source) << "names differ";
  source->SetName("Trigger");
  source->SetLabel("Trigger");
  source->SetDescription("External trigger");
  source->SetAccessMode(ReadOnly);
  EXPECT_TRUE(*node == *source);
  source->SetValue(false);
  EXPECT_FALSE(*node == *source);
}

TEST(C_Text, ValueSignalsAndCopyRefusesOtherKinds)
{
  auto node = CreateText("Path", "Folder", "", ReadWrite, "/data", C_Text::EditorDirectoryEdit);
  EXPECT_EQ(node->GetValue(), "/data");
  EXPECT_EQ(node->toString(), "/data");
  EXPECT_EQ(node->toQVariant(), QVariant(QStringLiteral("/data")));
  EXPECT_EQ(node->GetPreferredEditor(), "DirectoryEdit");
  EXPECT_EQ(node->dump(), "Name: Path Label: Folder Tooltip:  Access: ReadWrite Visibility: Visible4Customer "
                          "Value: /data");

  SignalLog log;
  log.watch(node.get(), &C_Node::ValueChanged, "ValueChanged");
  log.watch(node.get(), qOverload<QString>(&C_Text::ValueChanged), "Text");
  node->SetValue("/data");
  EXPECT_TRUE(log.take().isEmpty());
  node->CopyValues(CreateText("x", "", "", ReadOnly, "/tmp", C_Text::EditorLineEdit));
  EXPECT_EQ(log.take(), QStringList({"ValueChanged()", "Text(/tmp)"}));

  auto flag = CreateBool("b", true);
  EXPECT_EQ(messageOf([&] { node->CopyValues(flag); }), "RTE::Exception: CopyValues: Cannot copy '" +
                                                            QString::fromLatin1(flag->dump()) + "' to '" +
                                                            QString::fromLatin1(node->dump()) + "'");
  EXPECT_EQ(node->GetValue(), "/tmp");
  EXPECT_TRUE(*node != *CreateText("Path", "Folder", "", ReadWrite, "/other", C_Text::EditorDirectoryEdit));
  EXPECT_FALSE(*node != *CreateText("Path", "Folder", "", ReadWrite, "/tmp", C_Text::EditorLineEdit));
}

TEST(C_Action, ExecutionWithAndWithoutCallback)
{
  auto action = CreateAction("Calibrate", "Calibrate", "", ReadWrite, C_Action::EditorPushButton);
  EXPECT_TRUE(action->NeedsCallback());
  EXPECT_FALSE(action->IsExecutable());
  QSignalSpy spy(action.get(), &C_Node::ValueChanged);

  EXPECT_EQ(messageOf([&] { action->Execute(); }),
            "RTE::Exception: Action is not executable: " + QString::fromLatin1(action->dump()));
  EXPECT_EQ(spy.count(), 0) << "a refused press announces nothing";

  auto callback = std::make_shared<CountingCallback>();
  action->SetCallback(callback);
  EXPECT_EQ(spy.count(), 1);
  action->SetCallback(callback);
  EXPECT_EQ(spy.count(), 1) << "the same callback again is no change";
  action->Execute();
  EXPECT_EQ(callback->calls, 1);
  EXPECT_EQ(spy.count(), 2);

  // An action without a needed callback tells each press through ValueChanged() alone.
  C_Action button(false);
  QSignalSpy buttonSpy(&button, &C_Node::ValueChanged);
  button.Execute();
  EXPECT_EQ(buttonSpy.count(), 1);

  // Copying takes over the callback object; equality compares it.
  auto other = CreateAction("Calibrate", "Calibrate", "", ReadWrite, C_Action::EditorPushButton);
  EXPECT_FALSE(*action == *other);
  other->CopyValues(action);
  EXPECT_TRUE(*action == *other);
  other->Execute();
  EXPECT_EQ(callback->calls, 2);
  EXPECT_EQ(messageOf([&] { other->CopyValues(CreateBool("b", true)); }),
            "RTE::Exception: Cannot cast Bool to Action.");
}
