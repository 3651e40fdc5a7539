#include "TestHelpers.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Parameter/ParameterStorage.h>
#include <Core/Common/Storage/SettingsDocument.h>
#include <Core/Common/Storage/SettingsStringBasedDocument.h>
#include <Core/Common/Storage/StorageExceptions.h>

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <limits>

using namespace RTE::Parameter;

namespace
{

// A category kind that no writer or reader knows.
class C_Gizmo : public C_Node
{
public:
  C_Gizmo() : C_Node("Gizmo", "gizmo", "", ReadWrite, Visible4Customer, QString(), true) {}
  QString GetTypeName() const override { return QStringLiteral("Gizmo"); }
  void CopyValues(std::shared_ptr<C_Node>) override {}

protected:
  void NotifyValueChangedWithValue() override {}
};

std::shared_ptr<C_Category> makeRegion(long long x = 0, long long width = 640)
{
  auto region = CreateCategory("Region", "Region", "One region of interest");
  region->AddChild(CreateInteger("X", "X", "", ReadWrite, x, 0, 4095, C_Integer::EditorSpinBox));
  region->AddChild(CreateInteger("Width", "Width", "", ReadWrite, width, 1, 4096, C_Integer::EditorSpinBox));
  return region;
}

// One node of every kind, with attributes away from the defaults.
std::shared_ptr<C_Tree> makeEveryKind()
{
  auto tree = CreateTree();
  auto camera = CreateCategory("Camera", "Camera", "Acquisition settings");
  camera->SetVisibilityLevel(Visible4Service);
  auto exposure =
      CreateDouble("ExposureTime", "Exposure time", "In ms", ReadWrite, 12.5, 0.01, 1000.0, C_Double::EditorSlider, 2);
  exposure->SetStep(0.25);
  camera->AddChild(exposure);
  camera->AddChild(CreateDouble("Offset", -0.1)); // the widest range
  auto gain = CreateInteger("Gain", "Gain", "Analogue gain", ReadOnly, -3, -8, 16, C_Integer::EditorSpinBox);
  gain->SetStep(2);
  gain->SetVisibilityLevel(Visible4Developer);
  camera->AddChild(gain);
  camera->AddChild(CreateInteger("Counter", std::numeric_limits<long long>::min()));
  auto trigger = CreateEnumeration("TriggerMode", "Trigger mode", "", C_Enumeration::EditorComboBox);
  trigger->AddEntry(Private::CreateEnumerationEntry("Internal", "Internal clock", "", 0));
  trigger->AddEntry(Private::CreateEnumerationEntry("External", "External input", "Rising edge", -7));
  trigger->SetCurrentEntry("External");
  trigger->SetAccessMode(ReadWrite);
  camera->AddChild(trigger);
  camera->AddChild(CreateEnumeration("Empty", "", "", C_Enumeration::EditorListView));
  tree->AddChild(camera);

  tree->AddChild(CreateBool("Enabled", "Enabled", "", ReadWrite, true, C_Bool::EditorCheckButton));
  tree->AddChild(CreateText("Note", "Note", "", ReadWrite, "two\nlines & <xml>", C_Text::EditorLineEdit));
  auto channels = CreateTextList("Channels", 3, "Channels", "", ReadWrite, "", C_TextList::EditorListView);
  channels->SetValues({"Pressure", "", "Crank angle"});
  tree->AddChild(channels);
  auto offsets = CreateIntegerList("Offsets", 3, "Offsets", "", ReadWrite, 0, -100, 100, C_IntegerList::EditorTreeView);
  offsets->SetValue(0, -100);
  offsets->SetValue(2, 100);
  tree->AddChild(offsets);
  auto gains =
      CreateDoubleList("Gains", 2, "Gains", "", UndefinedAccesMode, 1.0, 0.0, 16.0, C_DoubleList::EditorLineEdit, 2);
  gains->SetValue(1, 0.1);
  tree->AddChild(gains);
  tree->AddChild(CreateDoubleList("NoGains", 0, "", "", ReadWrite, 0, 0, 0, C_DoubleList::EditorLineEdit, 2));
  auto regions = CreateList(
      "Regions", "Regions", "", [] { return makeRegion(); }, C_List::EditorTreeView);
  regions->Append(makeRegion(0, 640));
  regions->Append(makeRegion(100, 200));
  tree->AddChild(regions);
  tree->AddChild(CreateList("NoRegions", "", "", nullptr, C_List::EditorTreeView));
  auto calibrate = CreateAction("Calibrate", "Calibrate", "", ReadWrite, C_Action::EditorPushButton);
  tree->AddChild(calibrate);
  auto entry = Private::CreateEnumerationEntry("Loose", "Loose entry", "", 3);
  entry->SetVisibilityLevel(Visible4Service);
  tree->AddChild(entry);
  return tree;
}

template <typename Pointer>
Pointer readBack(const QString& xml)
{
  Storage::SettingsStringBasedDocument document(xml);
  Pointer node;
  Storage::DeserializeFrom(document, node);
  return node;
}

// The exception type of what fn throws, or "no exception".
QString typeOf(const std::function<void()>& fn)
{
  return messageOf(fn).section(QStringLiteral(": "), 0, 0);
}

} // namespace

TEST(ParameterStorage, CategoryLayout)
{
  auto category = CreateCategory("cat", "Cat", "Holds a and b");
  category->AddChild(CreateBool("a", true));
  auto b = CreateCategory("b", "B", "");
  b->AddChild(CreateText("c", "C", "", ReadOnly, "x", C_Text::EditorLineEdit));
  category->AddChild(b);

  Storage::SettingsStringBasedDocument document;
  EXPECT_EQ(&Storage::SerializeTo(document, category), &document);
  EXPECT_EQ(document.ToString(), QStringLiteral(R"(<root class="Category">
 <Label class="string" value="Cat" />
 <Name class="string" value="cat" />
 <Description class="string" value="Holds a and b" />
 <AccessMode class="int32" value="2" />
 <VisibilityLevel class="int32" value="0" />
 <ChildList class="list" version="1">
  <item index="0" class="Bool">
   <Label class="string" value="" />
   <Name class="string" value="a" />
   <Description class="string" value="" />
   <AccessMode class="int32" value="2" />
   <VisibilityLevel class="int32" value="0" />
   <Value class="bool" value="true" />
  </item>
  <item index="1" class="Category">
   <Label class="string" value="B" />
   <Name class="string" value="b" />
   <Description class="string" value="" />
   <AccessMode class="int32" value="2" />
   <VisibilityLevel class="int32" value="0" />
   <ChildList class="list" version="1">
    <item index="0" class="Text">
     <Label class="string" value="C" />
     <Name class="string" value="c" />
     <Description class="string" value="" />
     <AccessMode class="int32" value="1" />
     <VisibilityLevel class="int32" value="0" />
     <Value class="string" value="x" />
    </item>
   </ChildList>
  </item>
 </ChildList>
</root>)"));

  // Writing again into the same node replaces the list rather than adding a second one.
  Storage::SerializeTo(document, category);
  EXPECT_EQ(document.Count("ChildList"), 1u);
  EXPECT_EQ(document.GetNode("ChildList")->Count("item"), 2u);
}

TEST(ParameterStorage, KindLayouts)
{
  const auto leavesOf = [](const std::shared_ptr<C_Node>& node)
  {
    Storage::SettingsStringBasedDocument document;
    Storage::SerializeTo(document, node);
    QStringList names = document.GetChildrenNames();
    names.erase(names.begin(), names.begin() + 5); // the common leaves, checked above
    return std::make_pair(document.GetClass(), names.join(' '));
  };
  auto enumeration = CreateEnumeration("e", "", "", C_Enumeration::EditorComboBox);
  enumeration->AddEntry(Private::CreateEnumerationEntry("one", "", "", 1));
  const std::vector<std::tuple<std::shared_ptr<C_Node>, QString, QString>> cases{
      {CreateAction("a", "", "", ReadWrite, C_Action::EditorPushButton), "Action", ""},
      {CreateBool("b", true), "Bool", "Value"},
      {CreateInteger("i", 1), "Integer", "Value Min Max Step"},
      {CreateDouble("d", 1), "Double", "Value Min Max Step"},
      {CreateIntegerList("il", 2, "", "", ReadWrite, 0, 0, 1, C_IntegerList::EditorLineEdit), "IntegerList",
       "Values Min Max"},
      {CreateDoubleList("dl", 2, "", "", ReadWrite, 0, 0, 1, C_DoubleList::EditorLineEdit, 2), "DoubleList",
       "Values Min Max"},
      {CreateText("t", "", "", ReadWrite, "x", C_Text::EditorLineEdit), "Text", "Value"},
      {CreateTextList("tl", 2, "", "", ReadWrite, "x", C_TextList::EditorLineEdit), "TextList", "Values"},
      {Private::CreateEnumerationEntry("one", "", "", 1), "EnumerationEntry", "Value"},
      {enumeration, "Enumeration", "Entries CurrentEntry"},
      {CreateList("l", "", "", nullptr, C_List::EditorTreeView), "List", "Items"},
  };
  for (const auto& [node, className, leaves] : cases)
  {
    SCOPED_TRACE(className.toStdString());
    EXPECT_EQ(leavesOf(node), std::make_pair(className, leaves));
  }

  // Number lists: a "list" node of items.
  Storage::SettingsStringBasedDocument document;
  auto gains = CreateDoubleList("g", 2, "", "", ReadWrite, 0.5, 0, 1, C_DoubleList::EditorLineEdit, 2);
  Storage::SerializeTo(document, gains);
  EXPECT_EQ(document.GetNode("Values")->ToString(), QStringLiteral(R"(<Values class="list" version="1">
 <item index="0" class="double" value="0.5" />
 <item index="1" class="double" value="0.5" />
</Values>)"));

  // A tree: the root's children in a list "Root"; the root category itself is not written.
  auto tree = CreateTree();
  tree->AddChild(CreateBool("a", true));
  Storage::SettingsStringBasedDocument treeDocument;
  Storage::SerializeTo(treeDocument, tree);
  EXPECT_EQ(treeDocument.GetClass(), "ParameterTree");
  EXPECT_EQ(treeDocument.GetChildrenNames(), QStringList{"Root"});
  EXPECT_EQ(treeDocument.GetNode("Root")->GetClass(), "list");
  EXPECT_EQ(treeDocument.GetNode("Root")->GetClass("item", 0), "Bool");
}

TEST(ParameterStorage, TreeOfEveryKindReadsBackEqualThroughAFile)
{
  QTemporaryDir folder;
  const QString path = folder.filePath("camera.xml");
  const auto written = makeEveryKind();
  written->GetAction("Calibrate")->SetNeedsCallback(true);
  {
    Storage::SettingsDocument document(path, Storage::AutoSync::Off);
    Storage::SerializeTo(*document.CreateNode("Camera0"), written);
    ASSERT_TRUE(document.Save());
  }
  Storage::SettingsDocument document(path, Storage::AutoSync::Off);
  ASSERT_TRUE(document.Load());
  std::shared_ptr<C_Tree> read;
  Storage::DeserializeFrom(*document.GetNode("Camera0"), read);
  ASSERT_TRUE(read);
  EXPECT_FALSE(document.HasReports());
  EXPECT_TRUE(*read == *written);
  for (const auto& child : written->GetChildList())
  {
    SCOPED_TRACE(child->GetName().toStdString());
    EXPECT_TRUE(*read->Get(child->GetName()) == *child) << read->Get(child->GetName())->dump();
    EXPECT_NE(read->Get(child->GetName()), child);
  }
  EXPECT_EQ(read->GetDouble("Camera.Offset")->GetRange().maximum, std::numeric_limits<double>::max());
  EXPECT_EQ(read->GetEnumeration("Camera.TriggerMode")->GetCurrentEntry()->GetName(), "External");
  EXPECT_EQ(read->GetEnumeration("Camera.Empty")->GetCurrentEntry()->GetName(), C_Enumeration::ENTRY_INVALID);
  EXPECT_EQ(read->GetText("Note")->GetValue(), "two\nlines & <xml>");

  // The read list makes new entries like its stored ones, so values can be copied in.
  auto regions = read->GetList("Regions");
  auto changed = CreateList("Regions", "", "", nullptr, C_List::EditorTreeView);
  for (long long x : {5, 6, 7})
    changed->Append(makeRegion(x, 10));
  regions->CopyValues(changed);
  ASSERT_EQ(regions->GetLength(), 3u);
  EXPECT_EQ(CastToCategory(regions->GetAt(2))->GetChild("X")->toString(), "7");
  EXPECT_THROW(read->GetList("NoRegions")->CopyValues(changed), RTE::VerificationFailed);
}

TEST(ParameterStorage, WhatIsNotStoredReadsAsTheFactoryDefault)
{
  auto precise = CreateDouble("d", "", "", ReadWrite, 1.5, 0, 2, C_Double::EditorLineEdit, 5);
  Storage::SettingsStringBasedDocument document;
  Storage::SerializeTo(document, precise);
  const auto read = readBack<std::shared_ptr<C_Double>>(document.GetContent());
  EXPECT_EQ(read->GetPrecision(), 2u);
  EXPECT_EQ(read->GetPreferredEditor(), C_Double::EditorSpinBox);
  EXPECT_EQ(read->GetValue(), 1.5);
  EXPECT_EQ(read->GetRange(), DoubleRange(0, 2));

  auto list = CreateDoubleList("l", 1, "", "", ReadWrite, 1, 0, 2, C_DoubleList::EditorTreeView, 4);
  list->SetStep(0.5);
  Storage::SerializeTo(document, list);
  const auto readList = readBack<std::shared_ptr<C_DoubleList>>(document.GetContent());
  EXPECT_EQ(readList->GetPrecision(), 2u);
  EXPECT_EQ(readList->GetStep(), 1.0);
  EXPECT_EQ(readList->GetValue(0), 1.0);
}

TEST(ParameterStorage, WritingFailures)
{
  Storage::SettingsStringBasedDocument document;
  EXPECT_EQ(messageOf([&] { Storage::SerializeTo(document, std::shared_ptr<C_Tree>()); }),
            "Storage::EmptyObjectError: Empty object");
  EXPECT_EQ(messageOf([&] { Storage::SerializeTo(document, std::shared_ptr<C_Double>()); }),
            "Storage::EmptyObjectError: Empty object");

  auto withHole = CreateCategory("holey", "", "");
  withHole->SetChildList({CreateBool("a", true), nullptr});
  EXPECT_EQ(typeOf([&] { Storage::SerializeTo(document, withHole); }), "Storage::EmptyObjectError");

  auto list = CreateList("l", "", "", nullptr, C_List::EditorTreeView);
  list->Append(CreateBool("fine", true));
  list->Append(std::make_shared<C_Gizmo>());
  const QString message = messageOf([&] { Storage::SerializeTo(document, list); });
  EXPECT_TRUE(message.startsWith("Storage::UnsupportedNodeTypeError: ")) << message.toStdString();
  EXPECT_TRUE(message.contains("Gizmo")) << message.toStdString();

  // A category that holds itself fails instead of recursing without end.
  auto loop = CreateCategory("loop", "", "");
  auto inner = CreateCategory("inner", "", "");
  loop->AddChild(inner);
  inner->AddChild(loop);
  EXPECT_THROW(Storage::SerializeTo(document, loop), RTE::InvalidArgumentError);
  inner->ClearChildList(); // let the pair go
}

TEST(ParameterStorage, ReadingFailuresLeaveTheOutputAlone)
{
  const auto integer = [](const char* value, const char* minimum, const char* access = "2")
  {
    return QStringLiteral(R"(<root class="Integer"><Label class="string" value=""/><Name class="string" value="i"/>
<Description class="string" value=""/><AccessMode class="int32" value="%3"/><VisibilityLevel class="int32" value="0"/>
<Value class="int64" value="%1"/><Min class="int64" value="%2"/><Max class="int64" value="10"/>
<Step class="int64" value="1"/></root>)")
        .arg(QLatin1String(value), QLatin1String(minimum), QLatin1String(access));
  };
  EXPECT_EQ(readBack<std::shared_ptr<C_Integer>>(integer("5", "0"))->GetValue(), 5);

  struct Case
  {
    QString xml;
    QString expected; // exception type, or type and message
  };
  const std::vector<Case> cases{
      {integer("50", "0"), "RTE::Exception: Value 50 out of range (0-10)"},
      {integer("5", "6"), "RTE::Exception: Value 5 out of range (6-10)"},
      {integer("5", "0", "7"), "Storage::InvalidValue"},
      {integer("5", "0").replace("<Step class=\"int64\" value=\"1\"/>", ""), "Storage::NotExistingSetting"},
      {integer("5", "0").replace("class=\"Integer\"", "class=\"Double\""), "Storage::SettingHasWrongClass"},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.xml.toStdString());
    auto kept = CreateInteger("kept", 1);
    auto node = kept;
    const QString got = messageOf(
        [&]
        {
          Storage::SettingsStringBasedDocument document(c.xml);
          Storage::DeserializeFrom(document, node);
        });
    EXPECT_TRUE(got.startsWith(c.expected)) << got.toStdString();
    EXPECT_EQ(node, kept);
  }

  // Unknown classes, in a list and asked for directly; a tree from a non-tree node.
  auto tree = makeEveryKind();
  Storage::SettingsStringBasedDocument document;
  Storage::SerializeTo(document, tree);
  QString text = document.GetContent();
  text.replace("class=\"Action\"", "class=\"Gizmo\"");
  auto kept = CreateTree();
  auto node = kept;
  const QString message = messageOf([&] { node = readBack<std::shared_ptr<C_Tree>>(text); });
  EXPECT_TRUE(message.startsWith("Storage::UnsupportedNodeTypeError: ")) << message.toStdString();
  EXPECT_TRUE(message.contains("Gizmo"));
  EXPECT_EQ(node, kept);
  EXPECT_EQ(typeOf([] { readBack<std::shared_ptr<C_Node>>(R"(<root class="Gizmo"/>)"); }),
            "Storage::UnsupportedNodeTypeError");
  EXPECT_EQ(typeOf([] { readBack<std::shared_ptr<C_Tree>>(R"(<root class="Category"/>)"); }),
            "Storage::SettingHasWrongClass");

  // Values an enumeration refuses: an unknown current entry, duplicate entries.
  auto enumeration = CreateEnumeration("e", "", "", C_Enumeration::EditorComboBox);
  enumeration->AddEntry(Private::CreateEnumerationEntry("one", "", "", 1));
  enumeration->AddEntry(Private::CreateEnumerationEntry("two", "", "", 2));
  Storage::SerializeTo(document, enumeration);
  text = document.GetContent();
  const QString duplicate =
      messageOf([&] { readBack<std::shared_ptr<C_Enumeration>>(QString(text).replace("\"one\"", "\"two\"")); });
  EXPECT_TRUE(duplicate.startsWith("RTE::Exception: Enumeration entry not unique: two")) << duplicate.toStdString();
  document.Set("CurrentEntry", QStringLiteral("three"));
  EXPECT_EQ(messageOf([&] { readBack<std::shared_ptr<C_Enumeration>>(document.GetContent()); }),
            "RTE::Exception: The enumeration 'e' has no entry 'three'");
  document.Remove("CurrentEntry"); // older documents: the first entry is current
  EXPECT_EQ(readBack<std::shared_ptr<C_Enumeration>>(document.GetContent())->GetCurrentEntry()->GetName(), "one");

  // Two children of one name in a category.
  auto category = CreateCategory("c", "", "");
  category->SetChildList({CreateBool("x", true), CreateBool("x", false)});
  Storage::SerializeTo(document, category);
  EXPECT_EQ(typeOf([&] { readBack<std::shared_ptr<C_Category>>(document.GetContent()); }), "Storage::InvalidValue");
}

TEST(ParameterStorage, TheLargestDoublesReadBackDespiteRounding)
{
  // Written with 15 digits, the largest double rounds up beyond the range.
  Storage::SettingsStringBasedDocument document;
  document.Set("max", std::numeric_limits<double>::max());
  EXPECT_EQ(document.Get<double>("max", 0), std::numeric_limits<double>::max());
  const std::vector<std::pair<const char*, double>> cases{
      {"-1.79769313486232e+308", std::numeric_limits<double>::lowest()},
      {"1.79769313486233e+308", std::numeric_limits<double>::max()},
      {"1.7977e+308", 0.0}, // further out than rounding explains: as text that does not fit
      {"1e400", 0.0},
      {"1e-400", 0.0},
      {"12abc", 0.0},
  };
  for (const auto& [text, expected] : cases)
  {
    SCOPED_TRACE(text);
    Storage::SettingsStringBasedDocument leaf(
        QStringLiteral(R"(<root><v class="double" value="%1"/></root>)").arg(QLatin1String(text)));
    EXPECT_EQ(leaf.Get<double>("v", -1), expected);
  }
}
