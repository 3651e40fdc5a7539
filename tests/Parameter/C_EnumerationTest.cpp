#include "SignalLog.h"
#include "TestHelpers.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Parameter/C_Bool.h>
#include <Core/Common/Parameter/C_Enumeration.h>

#include <QSignalSpy>

#include <gtest/gtest.h>

using namespace RTE::Parameter;

namespace
{

std::shared_ptr<C_EnumerationEntry> entry(const QString& name, long long value)
{
  return Private::CreateEnumerationEntry(name, name + " label", "", value);
}

void watch(SignalLog& log, C_Enumeration* e)
{
  log.watch(e, &C_Node::ValueChanged, "ValueChanged");
  log.watch(e, qOverload<EnumerationEntries>(&C_Enumeration::ValueChanged), "Value");
  log.watch(e, &C_Enumeration::CurrentEntryChanged, "Current");
  log.watch(e, &C_Enumeration::EntriesChanged, "Entries");
}

// An enumeration a, b, c with values 1, 2, 3 and a selected.
std::shared_ptr<C_Enumeration> abc()
{
  auto e = CreateEnumeration("Mode", "Mode", "", C_Enumeration::EditorComboBox);
  e->AddEntry(entry("a", 1));
  e->AddEntry(entry("b", 2));
  e->AddEntry(entry("c", 3));
  return e;
}

} // namespace

TEST(C_Enumeration, WithoutEntriesThePlaceholderIsCurrent)
{
  C_Enumeration e;
  EXPECT_EQ(e.GetCurrentEntry()->GetName(), "__invalid__");
  EXPECT_EQ(e.GetCurrentValue(), 0);
  EXPECT_TRUE(e.GetEntries().empty());
  EXPECT_EQ(e.GetAccessMode(), UndefinedAccesMode);

  auto made = CreateEnumeration("Trigger", "Trigger mode", "How exposures start", C_Enumeration::EditorListView);
  // Unlike the other factories, this one leaves the access mode undefined.
  EXPECT_EQ(made->dump(), "Name: Trigger Label: Trigger mode Tooltip: How exposures start Access: UndefinedAccesMode "
                          "Visibility: Visible4Customer Value: __invalid__");
  EXPECT_EQ(made->GetPreferredEditor(), "ListView");

  // Clear goes back to the placeholder and tells only of the entries.
  auto cleared = abc();
  cleared->SetCurrentEntry("b");
  SignalLog log;
  watch(log, cleared.get());
  cleared->Clear();
  EXPECT_EQ(log.take(), QStringList({"Entries([])"}));
  EXPECT_EQ(cleared->GetCurrentEntry()->GetName(), "__invalid__");
  EXPECT_EQ(cleared->GetCurrentValue(), 0);
}

TEST(C_Enumeration, AddingEntriesAnnouncesInOrder)
{
  auto e = CreateEnumeration("Mode", "", "", C_Enumeration::EditorComboBox);
  SignalLog log;
  watch(log, e.get());

  e->AddEntry(entry("a", 1));
  EXPECT_EQ(log.take(), QStringList({"ValueChanged()", "Value([a])", "Current(a)", "Entries([a])"}));
  e->AddEntry(entry("b", 2));
  EXPECT_EQ(log.take(), QStringList({"ValueChanged()", "Value([a b])", "Entries([a b])"}));
  EXPECT_EQ(e->GetCurrentEntry()->GetName(), "a") << "the first entry stays selected";

  struct Case
  {
    const char* what;
    std::shared_ptr<C_EnumerationEntry> duplicate;
    QString expected;
  };
  const std::vector<Case> cases{
      {"same value", entry("z", 2), "RTE::Exception: Enumeration entry not unique: z equals to b"},
      {"same name", entry("a", 7), "RTE::Exception: Enumeration entry not unique: a equals to a"},
  };
  for (const auto& c : cases)
  {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(messageOf([&] { e->AddEntry(c.duplicate); }), c.expected);
  }
  EXPECT_THROW(e->AddEntry(nullptr), RTE::InvalidArgumentError);
  EXPECT_EQ(e->GetEntries().size(), 2u);
  EXPECT_TRUE(log.take().isEmpty());
}

TEST(C_Enumeration, SelectionByNameAndByValue)
{
  auto e = abc();
  SignalLog log;
  watch(log, e.get());

  e->SetCurrentEntry("a");
  e->SetCurrentEntry(1LL);
  EXPECT_TRUE(log.take().isEmpty()) << "selecting the current entry is no change";

  e->SetCurrentEntry("c");
  EXPECT_EQ(log.take(), QStringList({"ValueChanged()", "Value([a b c])", "Current(c)"}));
  e->SetCurrentEntry(2LL);
  EXPECT_EQ(log.take(), QStringList({"ValueChanged()", "Value([a b c])", "Current(b)"}));
  EXPECT_EQ(e->GetCurrentValue(), 2);
  EXPECT_EQ(e->toString(), "b");

  EXPECT_EQ(messageOf([&] { e->SetCurrentEntry("C"); }), "RTE::Exception: The enumeration 'Mode' has no entry 'C'");
  EXPECT_EQ(messageOf([&] { e->SetCurrentEntry(9LL); }), "RTE::Exception: The enumeration 'Mode' has no entry 9");
  EXPECT_FALSE(e->Contains("A"));
  EXPECT_EQ(e->GetCurrentEntry()->GetName(), "b");

  // Case-insensitive lookup, but uniqueness still compares names exactly.
  e->setCaseSensitivity(Qt::CaseInsensitive);
  EXPECT_TRUE(e->Contains("A"));
  e->SetCurrentEntry("C");
  EXPECT_EQ(e->GetCurrentEntry()->GetName(), "c");
  EXPECT_NO_THROW(e->AddEntry(entry("A", 10)));
  EXPECT_THROW(e->AddEntry(entry("B", 2)), RTE::Exception) << "values still clash";
  log.take();
  e->SetCurrentEntry("c");
  EXPECT_TRUE(log.take().isEmpty());

  // The current entry is told even while signals are off; nothing else is.
  e->EnableSignals(false);
  e->SetCurrentEntry("a");
  EXPECT_EQ(log.take(), QStringList({"Current(a)"}));
  e->AddEntry(entry("d", 4));
  EXPECT_TRUE(log.take().isEmpty());
}

TEST(C_Enumeration, EraseNotifiesOnlyForTheCurrentEntry)
{
  struct Case
  {
    const char* what;
    QStringList erase;
    QString current;
    QStringList expected;
  };
  const std::vector<Case> cases{
      {"not current", {"b"}, "a", {}},
      {"current, with a follower", {"a"}, "b", {"ValueChanged()", "Value([b c])", "Current(b)", "Entries([b c])"}},
      {"current and last", {"c"}, "b", {"ValueChanged()", "Value([a b])", "Current(b)", "Entries([a b])"}},
      {"every entry", {"b", "c", "a"}, "__invalid__", {"Entries([])"}},
  };
  for (const auto& c : cases)
  {
    SCOPED_TRACE(c.what);
    auto e = abc();
    if (c.erase.front() == "c")
      e->SetCurrentEntry("c");
    SignalLog log;
    watch(log, e.get());
    for (const auto& name : c.erase)
      e->Erase(name);
    EXPECT_EQ(e->GetCurrentEntry()->GetName(), c.current);
    EXPECT_EQ(log.take(), c.expected);
  }

  auto e = abc();
  EXPECT_EQ(messageOf([&] { e->Erase("A"); }), "RTE::Exception: Cannot erase entry. Specified entry not available: A");
  EXPECT_EQ(e->GetEntries().size(), 3u);
}

TEST(C_Enumeration, CopyValuesSelectsByNameWhileCopyEverythingTakesTheEntries)
{
  auto target = abc();
  auto source = CreateEnumeration("Other", "", "", C_Enumeration::EditorComboBox);
  source->AddEntry(entry("x", 1));
  source->AddEntry(entry("c", 30));
  source->SetCurrentEntry("x");

  target->CopyValues(source);
  EXPECT_EQ(target->GetCurrentEntry()->GetName(), "a") << "a name this enumeration lacks changes nothing";
  source->SetCurrentEntry("c");
  target->CopyValues(source);
  EXPECT_EQ(target->GetCurrentEntry()->GetName(), "c");
  EXPECT_EQ(target->GetCurrentValue(), 3) << "entries are not copied";
  EXPECT_EQ(messageOf([&] { target->CopyValues(CreateBool("b", true)); }),
            "RTE::Exception: Cannot cast Bool to Enumeration.");

  source->GetEntries().back()->SetVisibilityLevel(Visible4Developer);
  SignalLog log;
  watch(log, target.get());
  target->CopyEverything(source);
  ASSERT_EQ(target->GetEntries().size(), 2u);
  const auto& copied = target->GetEntries().back();
  EXPECT_NE(copied, source->GetEntries().back()) << "entries are new objects";
  EXPECT_TRUE(*copied == *source->GetEntries().back());
  EXPECT_EQ(copied->GetVisibilityLevel(), Visible4Developer);
  EXPECT_EQ(copied->GetAccessMode(), ReadOnly);
  EXPECT_EQ(target->GetCurrentValue(), 30);
  EXPECT_EQ(target->GetName(), "Mode");
  EXPECT_EQ(log.take(), QStringList({"ValueChanged()", "Value([x c])", "Current(c)"}));

  // A source without a choice leaves the copy without one.
  target->CopyEverything(std::make_shared<C_Enumeration>());
  EXPECT_TRUE(target->GetEntries().empty());
  EXPECT_EQ(target->GetCurrentEntry()->GetName(), "__invalid__");
}

TEST(C_EnumerationEntry, ReadOnlyOnceMadeAndEquality)
{
  auto e = Private::CreateEnumerationEntry("Hardware", "Hardware trigger", "Tip", 7);
  EXPECT_EQ(e->GetAccessMode(), ReadOnly);
  EXPECT_EQ(messageOf([&] { e->SetValue(8); }), "RTE::Exception: C_EnumerationEntry::SetValue: Access denied.");
  EXPECT_EQ(e->GetValue(), 7);

  e->SetAccessMode(ReadWrite);
  SignalLog log;
  log.watch(e.get(), &C_Node::ValueChanged, "ValueChanged");
  log.watch(e.get(), qOverload<int64_t>(&C_EnumerationEntry::ValueChanged), "Value");
  e->SetValue(7);
  e->SetValue(8);
  EXPECT_EQ(log.take(), QStringList({"ValueChanged()", "Value(8)"}));
  EXPECT_EQ(e->dump(), "Name: Hardware Label: Hardware trigger Tooltip: Tip Access: ReadWrite Visibility: "
                       "Visible4Customer"
                       "EnumEntry: 8");

  auto simple = CreateEnumerationEntry("Software");
  EXPECT_EQ(simple->GetValue(), 0);
  EXPECT_TRUE(simple->GetLabel().isEmpty());
  auto twin = Private::CreateEnumerationEntry("Software", "", "", 0);
  EXPECT_TRUE(*simple == *twin);
  twin->SetAccessMode(ReadWrite);
  twin->SetValue(1);
  twin->SetAccessMode(ReadOnly);
  EXPECT_FALSE(*simple == *twin) << "the value counts";

  simple->CopyValues(twin);
  EXPECT_EQ(simple->GetValue(), 0) << "entries copy nothing";
  EXPECT_EQ(messageOf([&] { CastToEnumerationEntry(CreateBool("b", true)); }),
            "RTE::Exception: Cannot cast Bool to EnumerationEntry.");
}
