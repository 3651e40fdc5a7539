#include "LogCapture.h"
#include "SignalLog.h"
#include "TestHelpers.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Parameter/C_Bool.h>
#include <Core/Common/Parameter/C_Category.h>
#include <Core/Common/Parameter/C_Double.h>
#include <Core/Common/Parameter/C_Integer.h>
#include <Core/Common/Parameter/C_Text.h>

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <functional>

#include <sstream>

using namespace RTE::Parameter;

namespace
{

// Camera (a category with Exposure (a category with Time) and Gain), and Enabled.
std::shared_ptr<C_Category> makeTree()
{
  auto root = CreateCategory("Root", "Root", "");
  auto camera = CreateCategory("Camera", "Camera", "");
  auto exposure = CreateCategory("Exposure", "Exposure", "");
  exposure->AddChild(CreateDouble("Time", 1.5));
  camera->AddChild(exposure);
  camera->AddChild(CreateInteger("Gain", 2));
  root->AddChild(camera);
  root->AddChild(CreateBool("Enabled", true));
  return root;
}

} // namespace

TEST(C_Node, EnumerationTextsIncludingUndefinedValues)
{
  const std::vector<std::pair<E_AccessMode, std::string>> modes{
      {ReadOnly, "ReadOnly"},
      {ReadWrite, "ReadWrite"},
      {UndefinedAccesMode, "UndefinedAccesMode"},
      {static_cast<E_AccessMode>(0), "E_AccessMode: I am confused!"},
      {static_cast<E_AccessMode>(4), "E_AccessMode: I am confused!"}};
  for (const auto& [mode, expected] : modes)
  {
    std::ostringstream s;
    s << mode;
    EXPECT_EQ(s.str(), expected);
  }
  const std::vector<std::pair<E_VisibilityLevel, std::string>> levels{
      {Visible4Customer, "Visible4Customer"},
      {Visible4Service, "Visible4Service"},
      {Visible4Developer, "Visible4Developer"},
      {static_cast<E_VisibilityLevel>(3), "E_VisibilityLevel: I am confused!"},
      {static_cast<E_VisibilityLevel>(-1), "E_VisibilityLevel: I am confused!"}};
  for (const auto& [level, expected] : levels)
  {
    std::ostringstream s;
    s << level;
    EXPECT_EQ(s.str(), expected);
  }
}

TEST(C_Node, SettersAnnounceOnlyRealChangesInOrder)
{
  auto node = CreateBool("Flag", false);
  node->SetLabel("Label");
  node->SetDescription("Tip");
  SignalLog log;
  log.watch(node.get(), &C_Node::ValueChanged, "ValueChanged");
  log.watch(node.get(), qOverload<bool>(&C_Bool::ValueChanged), "Bool");
  log.watch(node.get(), &C_Node::AccessModeChanged, "Access");
  log.watch(node.get(), &C_Node::VisibilityLevelChanged, "Visibility");

  struct Case
  {
    const char* what;
    std::function<void()> change;
    QStringList expected;
  };
  const std::vector<Case> cases{
      {"same label", [&] { node->SetLabel("Label"); }, {}},
      {"same name", [&] { node->SetName("Flag"); }, {}},
      {"same description", [&] { node->SetDescription("Tip"); }, {}},
      {"same access mode", [&] { node->SetAccessMode(ReadWrite); }, {}},
      {"same visibility", [&] { node->SetVisibilityLevel(Visible4Customer); }, {}},
      {"editor never notifies", [&] { node->SetPreferredEditor("ComboBox"); }, {}},
      {"new label", [&] { node->SetLabel("Other"); }, {"ValueChanged()", "Bool(false)"}},
      {"new name", [&] { node->SetName("Flag2"); }, {"ValueChanged()", "Bool(false)"}},
      {"new description", [&] { node->SetDescription("Tip2"); }, {"ValueChanged()", "Bool(false)"}},
      {"new access mode",
       [&] { node->SetAccessMode(ReadOnly); },
       {"ValueChanged()", "Bool(false)", "Access(ReadOnly)"}},
      {"new visibility",
       [&] { node->SetVisibilityLevel(Visible4Developer); },
       {"ValueChanged()", "Bool(false)", "Visibility(Visible4Developer)"}},
  };
  for (const auto& c : cases)
  {
    SCOPED_TRACE(c.what);
    c.change();
    EXPECT_EQ(log.take(), c.expected);
  }
  EXPECT_EQ(node->GetLabel(), "Other");
  EXPECT_EQ(node->GetName(), "Flag2");
  EXPECT_EQ(node->GetPreferredEditor(), "ComboBox");

  // Disabled: changes are stored, nobody hears of them, nothing is replayed later.
  node->EnableSignals(false);
  node->SetAccessMode(ReadWrite);
  node->SetVisibilityLevel(Visible4Service);
  node->SetLabel("Quiet");
  node->SetValue(true);
  EXPECT_EQ(node->GetAccessMode(), ReadWrite);
  EXPECT_EQ(node->GetVisibilityLevel(), Visible4Service);
  EXPECT_TRUE(node->GetValue());
  node->EnableSignals(true);
  EXPECT_TRUE(log.take().isEmpty());
}

TEST(C_Node, DumpAndEquality)
{
  auto a = CreateBool("Name", "Label", "Tip", ReadOnly, true, C_Bool::EditorCheckBox);
  a->SetVisibilityLevel(Visible4Service);
  EXPECT_EQ(a->dump(), "Name: Name Label: Label Tooltip: Tip Access: ReadOnly Visibility: Visible4Service Value: true");
  a->SetLabel(QString::fromUtf8("\xC2\xB5s"));
  EXPECT_EQ(a->dump().substr(0, 20), "Name: Name Label: \xB5s") << "texts are written as Latin-1";

  auto category = CreateCategory("Cam", "Camera", "Tip");
  EXPECT_EQ(category->dump(), "Name: Cam Label: Camera Tooltip: Tip Access: ReadWrite Visibility: Visible4Customer");
  EXPECT_EQ(category->toString(), QString());

  auto b = CreateCategory("Cam", "Camera", "Tip");
  b->SetPreferredEditor("Anything");
  b->EnableSignals(false);
  EXPECT_TRUE(*category == *b) << "editor and signals flag take no part";
  struct Case
  {
    const char* what;
    std::function<void(C_Category&)> change;
  };
  const std::vector<Case> cases{{"label", [](C_Category& c) { c.SetLabel("x"); }},
                                {"name", [](C_Category& c) { c.SetName("x"); }},
                                {"description", [](C_Category& c) { c.SetDescription("x"); }},
                                {"access", [](C_Category& c) { c.SetAccessMode(ReadOnly); }},
                                {"visibility", [](C_Category& c) { c.SetVisibilityLevel(Visible4Developer); }}};
  for (const auto& c : cases)
  {
    SCOPED_TRACE(c.what);
    auto other = CreateCategory("Cam", "Camera", "Tip");
    c.change(*other);
    EXPECT_FALSE(*category == *other);
    EXPECT_TRUE(*category != *other);
  }
  EXPECT_FALSE(*category == static_cast<const C_Node&>(*CreateBool("Cam", false))) << "another kind is never equal";
}

TEST(C_Category, FactoryAndConstructorDefaults)
{
  // The constructor takes the label first, the factory the name.
  C_Category constructed("Label", "Name", "Tip");
  EXPECT_EQ(constructed.dump(),
            "Name: Name Label: Label Tooltip: Tip Access: UndefinedAccesMode Visibility: Visible4Customer");
  EXPECT_TRUE(constructed.AreSignalsEnabled());
  EXPECT_TRUE(constructed.empty());

  EXPECT_EQ(CreateCategory("Name", "Label", "Tip")->dump(),
            "Name: Name Label: Label Tooltip: Tip Access: ReadWrite Visibility: Visible4Customer");
}

TEST(C_Category, PathLookupAndItsFailures)
{
  auto root = makeTree();
  EXPECT_EQ(root->GetChild("Camera.Exposure.Time")->GetTypeName(), "Double");
  EXPECT_EQ(root->GetChild("Camera.Gain")->GetName(), "Gain");
  EXPECT_EQ(root->GetChild("Enabled")->GetTypeName(), "Bool");
  EXPECT_TRUE(root->Contains("Camera.Exposure"));
  EXPECT_TRUE(root->Contains("Camera.Exposure.Time"));
  EXPECT_FALSE(root->Contains(""));
  EXPECT_FALSE(root->Contains("Lens.Focus"));
  EXPECT_FALSE(root->Contains("Camera.Lens"));
  EXPECT_FALSE(root->Contains("camera")) << "names compare case-sensitively";

  struct Case
  {
    const char* path;
    QString expected;
  };
  const std::vector<Case> cases{
      {"", "RTE::VerificationFailed: Path is empty"},
      {"Lens.Focus.Distance", "RTE::VerificationFailed: Value with name 'Lens' not found"},
      {"Camera.Lens.Focus", "RTE::VerificationFailed: Value with name 'Lens' not found"},
      {"Camera..Gain", "RTE::VerificationFailed: Value with name '' not found"},
      {"Enabled.Value", "RTE::Exception: Cannot cast Bool to Category."},
      {"Camera.Gain.Unit", "RTE::Exception: Cannot cast Integer to Category."},
  };
  for (const auto& c : cases)
  {
    SCOPED_TRACE(c.path);
    EXPECT_EQ(messageOf([&] { root->GetChild(c.path); }), c.expected);
  }
  // A path running on below a value node is an error for Contains as well.
  EXPECT_EQ(messageOf([&] { root->Contains("Enabled.Value"); }), "RTE::Exception: Cannot cast Bool to Category.");

  // Probing for an unknown name is routine and stays out of the log; the rest is logged.
  {
    LogCapture capture("Core.Exception");
    EXPECT_THROW(root->GetChild("Missing"), RTE::VerificationFailed);
    EXPECT_TRUE(capture.messages().isEmpty());
    EXPECT_THROW(root->GetChild(""), RTE::VerificationFailed);
    EXPECT_EQ(capture.messages().size(), 1);
  }
}

TEST(C_Category, AddAndRemoveChildren)
{
  auto category = CreateCategory("Root", "", "");
  QSignalSpy changed(category.get(), &C_Node::ValueChanged);
  auto flag = CreateBool("Flag", true);
  category->AddChild(flag);
  category->AddChild(CreateInteger("Count", 1));
  EXPECT_EQ(changed.count(), 2);

  EXPECT_EQ(messageOf([&] { category->AddChild(CreateText("Flag", "", "", ReadWrite, "x", "LineEdit")); }),
            "RTE::Exception: Cannot add child. This category already contains a child with the name Flag");
  EXPECT_THROW(category->AddChild(nullptr), RTE::InvalidArgumentError);
  EXPECT_EQ(category->GetChildList().size(), 2u);
  EXPECT_EQ(category->GetChild("Flag"), flag) << "the first child stays";

  EXPECT_EQ(messageOf([&] { category->RemoveChild("Nope"); }),
            "RTE::Exception: Cannot remove child. This category does not contain a child with the name Nope");
  EXPECT_EQ(changed.count(), 2) << "failures announce nothing";

  category->RemoveChild("Flag");
  EXPECT_EQ(changed.count(), 3);
  EXPECT_FALSE(category->Contains("Flag"));
  EXPECT_TRUE(flag->GetValue()) << "the removed node lives on with its other owners";

  // Replacing or clearing the list is silent and unchecked.
  auto list = category->GetChildList();
  list.push_back(CreateBool("Count", false));
  category->SetChildList(list);
  EXPECT_EQ(category->GetChildList().size(), 2u);
  category->ClearChildList();
  EXPECT_TRUE(category->empty());
  EXPECT_EQ(changed.count(), 3);

  // The list returned is a copy holding the same nodes.
  category->AddChild(flag);
  auto copy = category->GetChildList();
  copy.clear();
  EXPECT_FALSE(category->empty());
  EXPECT_EQ(category->GetChildList().front().get(), flag.get());
}

TEST(C_Category, EqualityComparesChildrenInOrder)
{
  auto a = CreateCategory("C", "", "");
  auto b = CreateCategory("C", "", "");
  a->AddChild(CreateBool("x", true));
  a->AddChild(CreateInteger("y", 3));
  b->AddChild(CreateInteger("y", 3));
  b->AddChild(CreateBool("x", true));
  EXPECT_FALSE(*a == *b) << "order matters";

  auto c = CreateCategory("C", "", "");
  c->AddChild(CreateBool("x", true));
  c->AddChild(CreateInteger("y", 3));
  EXPECT_TRUE(*a == *c);
  CastToInteger(c->GetChild("y"))->SetValue(4);
  EXPECT_FALSE(*a == *c) << "child values count";
  c->RemoveChild("y");
  EXPECT_FALSE(*a == *c) << "child counts differ";
}

TEST(C_Category, CopyValuesMatchesByNameAndKind)
{
  auto target = makeTree();
  auto source = makeTree();
  CastToDouble(source->GetChild("Camera.Exposure.Time"))->SetValue(9.5);
  CastToBool(source->GetChild("Enabled"))->SetValue(false);
  CastToCategory(source->GetChild("Camera"))->AddChild(CreateBool("OnlyInSource", true));
  // Same name, another kind: skipped silently.
  auto camera = CastToCategory(source->GetChild("Camera"));
  camera->RemoveChild("Gain");
  camera->AddChild(CreateText("Gain", "", "", ReadWrite, "high", C_Text::EditorLineEdit));
  source->SetLabel("Source label");

  auto gain = CastToInteger(target->GetChild("Camera.Gain"));
  QSignalSpy gainSpy(gain.get(), &C_Node::ValueChanged);
  QSignalSpy rootSpy(target.get(), &C_Node::ValueChanged);
  target->CopyValues(source);

  EXPECT_DOUBLE_EQ(CastToDouble(target->GetChild("Camera.Exposure.Time"))->GetValue(), 9.5);
  EXPECT_FALSE(CastToBool(target->GetChild("Enabled"))->GetValue());
  EXPECT_EQ(gain->GetValue(), 2);
  EXPECT_EQ(gainSpy.count(), 0);
  EXPECT_FALSE(target->Contains("Camera.OnlyInSource")) << "structure never changes";
  EXPECT_EQ(target->GetLabel(), "Root");
  EXPECT_EQ(rootSpy.count(), 0) << "the category itself emits nothing";

  EXPECT_EQ(messageOf([&] { target->CopyValues(CreateBool("b", true)); }),
            "RTE::Exception: Cannot cast Bool to Category.");
}

TEST(C_Category, MissingNodesAndAllPaths)
{
  auto tree = CreateCategory("Root", "", "");
  auto a = CreateCategory("a", "", "");
  a->AddChild(CreateBool("x", true));
  a->AddChild(CreateBool("y", true));
  tree->AddChild(a);
  tree->AddChild(CreateBool("b", true));

  // Against an empty tree every path is missing: that is the full list of paths.
  EXPECT_EQ(tree->missingNodesIn(CreateCategory("Empty", "", "")), QList<QString>({"a", "a.x", "a.y", "b"}));

  auto other = CreateCategory("Other", "", "");
  auto otherA = CreateCategory("a", "", "");
  otherA->AddChild(CreateInteger("x", 1)); // another kind
  otherA->AddChild(CreateBool("z", true)); // only there
  other->AddChild(otherA);
  other->AddChild(CreateBool("b", false));
  EXPECT_EQ(tree->missingNodesIn(other), QList<QString>({"a.x", "a.y"}));
  EXPECT_EQ(other->missingNodesIn(tree), QList<QString>({"a.x", "a.z"}));

  // A category replaced by a value node: the category and everything below it.
  auto flat = CreateCategory("Flat", "", "");
  flat->AddChild(CreateBool("a", true));
  flat->AddChild(CreateBool("b", true));
  EXPECT_EQ(tree->missingNodesIn(flat), QList<QString>({"a", "a.x", "a.y"}));
}

TEST(C_Category, SignalSwitchingReachesTheWholeSubtree)
{
  auto root = makeTree();
  auto time = root->GetChild("Camera.Exposure.Time");
  root->EnableSignals(false);
  EXPECT_FALSE(root->AreSignalsEnabled());
  EXPECT_FALSE(time->AreSignalsEnabled());
  QSignalSpy spy(time.get(), &C_Node::ValueChanged);
  CastToDouble(time)->SetValue(3.0);
  EXPECT_EQ(spy.count(), 0);

  time->EnableSignals(true);
  EXPECT_TRUE(root->AreSignalsEnabled()) << "one enabled leaf makes the tree report enabled";
  root->EnableSignals(true);
  CastToDouble(time)->SetValue(4.0);
  EXPECT_EQ(spy.count(), 1);
}

TEST(C_Category, InsertChildrenAndFlatten)
{
  auto target = CreateCategory("Target", "", "");
  target->AddChild(CreateBool("c", true));
  auto source = CreateCategory("Source", "", "");
  source->AddChild(CreateBool("a", true));
  source->AddChild(CreateBool("b", true));
  InsertChildrenAndFlatten(target, source);
  EXPECT_TRUE(target->Contains("a"));
  EXPECT_TRUE(target->Contains("b"));
  EXPECT_FALSE(target->Contains("Source"));
  EXPECT_EQ(target->GetChild("a"), source->GetChild("a")) << "children are shared, not copied";

  // A clash stops the move with the earlier children already added.
  auto clashing = CreateCategory("Clash", "", "");
  clashing->AddChild(CreateBool("d", true));
  clashing->AddChild(CreateBool("a", true));
  clashing->AddChild(CreateBool("e", true));
  EXPECT_THROW(InsertChildrenAndFlatten(target, clashing), RTE::Exception);
  EXPECT_TRUE(target->Contains("d"));
  EXPECT_FALSE(target->Contains("e"));
}
