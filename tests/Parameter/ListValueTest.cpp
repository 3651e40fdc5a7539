#include "SignalLog.h"
#include "TestHelpers.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Parameter/C_Bool.h>
#include <Core/Common/Parameter/C_DoubleList.h>
#include <Core/Common/Parameter/C_Integer.h>
#include <Core/Common/Parameter/C_IntegerList.h>
#include <Core/Common/Parameter/C_List.h>
#include <Core/Common/Parameter/C_Text.h>
#include <Core/Common/Parameter/C_TextList.h>

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace RTE::Parameter;

TEST(C_NumericValueList, ElementChecksAndSignals)
{
  auto list = CreateIntegerList("Offsets", 3, "Offsets", "", ReadWrite, 1, 0, 10, C_IntegerList::EditorTreeView);
  SignalLog log;
  log.watch(list.get(), &C_Node::ValueChanged, "ValueChanged");
  log.watch(list.get(), qOverload<std::vector<int64_t>>(&C_IntegerList::ValueChanged), "Values");
  log.watch(list.get(), &C_NumericValueBase::RangeChanged, "RangeChanged");
  log.watch(list.get(), qOverload<IntegerRange>(&C_IntegerList::RangeChanged), "Range");
  log.watch(list.get(), qOverload<int64_t>(&C_IntegerList::StepChanged), "Step");
  log.watch(list.get(), &C_NumericValueBase::PrecisionChanged, "PrecisionChanged");

  struct Case
  {
    const char* what;
    std::function<void()> change;
    QStringList expected;
    QString failure;
  };
  const std::vector<Case> cases{
      {"new element", [&] { list->SetValue(1, 7); }, {"ValueChanged()", "Values([1 7 1])"}, "no exception"},
      {"equal element", [&] { list->SetValue(1, 7); }, {}, "no exception"},
      {"index at the size", [&] { list->SetValue(3, 2); }, {}, "RTE::Exception: Index 3 out of range (3)"},
      {"value above", [&] { list->SetValue(0, 11); }, {}, "RTE::Exception: Value 11 out of range (0-10)"},
      {"growing is silent and unchecked", [&] { list->SetSize(5, 99); }, {}, "no exception"},
      {"shrinking is silent", [&] { list->SetSize(4, 0); }, {}, "no exception"},
      {"a new range does not clamp",
       [&] { list->SetRange(IntegerRange(0, 5)); },
       {"RangeChanged()", "Range(0-5)"},
       "no exception"},
      {"same range", [&] { list->SetRange(IntegerRange(0, 5)); }, {}, "no exception"},
      {"new step", [&] { list->SetStep(2); }, {"Step(2)"}, "no exception"},
      {"precision has no typed signal", [&] { list->SetPrecision(1); }, {"PrecisionChanged()"}, "no exception"},
  };
  for (const auto& c : cases)
  {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(messageOf(c.change), c.failure);
    EXPECT_EQ(log.take(), c.expected);
  }
  EXPECT_EQ(list->GetSize(), 4u);
  EXPECT_EQ(list->GetValue(1), 7);
  EXPECT_EQ((*list)[3], 99);
  EXPECT_EQ(list->FitToRange(99), 5);
  EXPECT_EQ(list->dump(), "Name: Offsets Label: Offsets Tooltip:  Access: ReadWrite Visibility: Visible4Customer "
                          "Value: 1 7 1 99 Range: 0-5 Precision: 1");
}

TEST(C_NumericValueList, FactoryOrderAndDefaults)
{
  // The fill value is applied after the range and never checked against it.
  auto list =
      CreateDoubleList("Gains", 2, "Gains", "Per channel", ReadOnly, 50.0, 10.0, 0.0, C_DoubleList::EditorListView, 3);
  // The range is stored as given.
  EXPECT_EQ(list->dump(), "Name: Gains Label: Gains Tooltip: Per channel Access: ReadOnly Visibility: Visible4Customer "
                          "Value: 50 50 Range: 10-0 Precision: 3");
  EXPECT_EQ(list->GetPreferredEditor(), "ListView");
}

TEST(C_NumericValueList, CopyValuesAnnouncesAlwaysAndRefusesOtherKinds)
{
  auto target = CreateDoubleList("a", 2, "", "", ReadWrite, 1.0, 0, 10, C_DoubleList::EditorTreeView, 2);
  auto source = CreateDoubleList("b", 3, "", "", ReadWrite, 2.5, 0, 3, C_DoubleList::EditorTreeView, 2);
  SignalLog log;
  log.watch(target.get(), &C_Node::ValueChanged, "ValueChanged");
  log.watch(target.get(), qOverload<std::vector<double>>(&C_DoubleList::ValueChanged), "Values");

  target->CopyValues(source);
  EXPECT_EQ(log.take(), QStringList({"ValueChanged()", "Values([2.5 2.5 2.5])"}));
  EXPECT_EQ(target->GetRange(), RTE::RangeDouble(0, 10)) << "only the values are copied";
  target->CopyValues(source);
  EXPECT_EQ(log.take(), QStringList({"ValueChanged()", "Values([2.5 2.5 2.5])"})) << "announced without a change";
  target->CopyValues(target);
  EXPECT_EQ(log.take(), QStringList({"ValueChanged()", "Values([2.5 2.5 2.5])"}));

  const std::vector<std::shared_ptr<C_Node>> others{
      CreateText("t", "", "", ReadWrite, "1", C_Text::EditorLineEdit),
      CreateIntegerList("i", 1, "", "", ReadWrite, 1, 0, 1, C_IntegerList::EditorTreeView)};
  for (const auto& other : others)
  {
    SCOPED_TRACE(other->GetTypeName().toStdString());
    EXPECT_EQ(messageOf([&] { target->CopyValues(other); }), "RTE::Exception: CopyValues: Cannot copy '" +
                                                                 QString::fromLatin1(other->dump()) + "' to '" +
                                                                 QString::fromLatin1(target->dump()) + "'");
  }
  EXPECT_EQ(target->GetSize(), 3u);
  EXPECT_TRUE(log.take().isEmpty());

  auto same = CreateDoubleList("a", 3, "", "", ReadWrite, 2.5, 0, 10, C_DoubleList::EditorTreeView, 2);
  EXPECT_TRUE(*target == *same);
  same->SetStep(0.5);
  EXPECT_TRUE(*target != *same);
}

TEST(C_TextList, ValuesAndTheirTextForm)
{
  auto list = CreateTextList("Channels", 3, "Channels", "", ReadWrite, "x", C_TextList::EditorListView);
  EXPECT_EQ(list->GetValue(99), QString()) << "beyond the size reads empty";

  SignalLog log;
  log.watch(list.get(), &C_Node::ValueChanged, "ValueChanged");
  log.watch(list.get(), qOverload<std::vector<QString>>(&C_TextList::ValueChanged), "Values");
  list->SetValue(0, "a");
  list->SetValue("b", 1);
  list->SetValue(1, "b");
  list->SetValues({"a", "b", "x"});
  list->SetSize(4, "y");
  EXPECT_EQ(log.take(), QStringList({"ValueChanged()", "Values([a x x])", "ValueChanged()", "Values([a b x])"}));
  list->SetValue(9, "out of bounds");
  EXPECT_EQ(list->GetSize(), 4u);
  EXPECT_TRUE(log.take().isEmpty());

  EXPECT_EQ(list->ValuesToString(), "a b x y");
  EXPECT_EQ(list->toString(), "a b x y");
  list->ValuesToString(std::string("a  b"));
  EXPECT_EQ(list->GetValues(), std::vector<QString>({"a", "", "b"}));
  list->ValuesToString(std::string("caf\xE9"));
  EXPECT_EQ(list->GetValue(0), QString::fromUtf8("caf\xC3\xA9")) << "read as Latin-1";
  EXPECT_EQ(list->ValuesToString(), "caf\xE9");

  auto source = CreateTextList("Other", 2, "", "", ReadOnly, "s", C_TextList::EditorLineEdit);
  list->CopyValues(source);
  EXPECT_EQ(list->GetValues(), std::vector<QString>({"s", "s"}));
  EXPECT_EQ(list->GetName(), "Channels");
  EXPECT_EQ(log.take().size(), 2);
  EXPECT_THROW(list->CopyValues(CreateText("t", "", "", ReadWrite, "s", C_Text::EditorLineEdit)), RTE::Exception);
}

TEST(C_List, EntriesAndTheirAnnouncements)
{
  auto list = CreateList(
      "Regions", "Regions", "", [] { return CreateInteger("Region", 0); }, C_List::EditorTreeView);
  EXPECT_EQ(list->GetPreferredEditor(), "TreeView");
  QSignalSpy spy(list.get(), &C_Node::ValueChanged);
  list->Clear();
  EXPECT_EQ(spy.count(), 0) << "clearing an empty list is no change";

  auto first = CreateInteger("Region", 1);
  auto second = CreateInteger("Region", 2);
  list->Append(first);
  list->Append(second);
  EXPECT_EQ(spy.count(), 2);
  EXPECT_EQ(list->GetLength(), 2u);
  EXPECT_EQ(list->GetAt(1), second);

  EXPECT_THROW(list->Append(nullptr), RTE::InvalidArgumentError);
  EXPECT_EQ(messageOf([&] { list->GetAt(2); }), "RTE::Exception: Index 2 is out of range.");
  EXPECT_EQ(messageOf([&] { list->EraseAt(2); }), "RTE::VerificationFailed: Invalid index");
  EXPECT_EQ(spy.count(), 2);

  // NotifyEvent: the list first, then each entry with its typed signal.
  SignalLog log;
  log.watch(list.get(), &C_Node::ValueChanged, "List");
  log.watch(first.get(), &C_Node::ValueChanged, "First");
  log.watch(first.get(), qOverload<int64_t>(&C_Integer::ValueChanged), "FirstValue");
  log.watch(second.get(), &C_Node::ValueChanged, "Second");
  list->NotifyEvent();
  EXPECT_EQ(log.take(), QStringList({"List()", "First()", "FirstValue(1)", "Second()"}));

  // Switching signals reaches the entries.
  list->EnableSignals(false);
  EXPECT_FALSE(first->AreSignalsEnabled());
  first->EnableSignals(true);
  EXPECT_TRUE(list->AreSignalsEnabled());
  list->EnableSignals(true);

  list->EraseAt(0);
  EXPECT_EQ(list->GetAt(0), second);
  list->Clear();
  EXPECT_EQ(list->GetLength(), 0u);
  EXPECT_EQ(spy.count(), 5);
}

TEST(C_List, CopyValuesRebuildsEntriesWithTheMaker)
{
  auto source = CreateList("s", "", "", nullptr, C_List::EditorTreeView);
  source->Append(CreateInteger("a", 5));
  source->Append(CreateInteger("b", 6));
  int made = 0;
  auto target = CreateList(
      "t", "", "",
      [&made]
      {
        ++made;
        return CreateInteger("fresh", 0);
      },
      C_List::EditorTreeView);
  target->Append(CreateBool("old", true));

  target->CopyValues(source);
  EXPECT_EQ(made, 2);
  ASSERT_EQ(target->GetLength(), 2u);
  EXPECT_EQ(target->GetAt(0)->GetName(), "fresh") << "entries are the list's own, filled from the source";
  EXPECT_EQ(CastToInteger(target->GetAt(0))->GetValue(), 5);
  EXPECT_EQ(CastToInteger(target->GetAt(1))->GetValue(), 6);
  EXPECT_NE(target->GetAt(0), source->GetAt(0));

  target->CopyValues(target);
  EXPECT_EQ(made, 2) << "copying from itself does nothing";
  EXPECT_EQ(messageOf([&] { target->CopyValues(CreateBool("b", true)); }), "RTE::Exception: Cannot cast Bool to List.");
  EXPECT_EQ(messageOf([&] { source->CopyValues(target); }),
            "RTE::VerificationFailed: Allocator for list entry is NULL.");
  EXPECT_EQ(source->GetLength(), 2u);
}
