#include "TestHelpers.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Parameter/C_Tree.h>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <functional>
#include <future>
#include <thread>

using namespace RTE::Parameter;

namespace
{

// Camera.Exposure (Double), Camera.Gain (Integer), Enabled (Bool).
std::shared_ptr<C_Tree> makeTree(double exposure = 1.5, long long gain = 2)
{
  auto tree = CreateTree();
  auto camera = CreateCategory("Camera", "Camera", "");
  camera->AddChild(CreateDouble("Exposure", exposure));
  camera->AddChild(CreateInteger("Gain", gain));
  tree->AddChild(camera);
  tree->AddChild(CreateBool("Enabled", true));
  return tree;
}

// Counts its calls and runs `body` (if any) for each.
class RecordingCopyHandler : public CopyHandler
{
public:
  explicit RecordingCopyHandler(std::function<void(const C_Tree&, C_Tree&)> body) : m_body(std::move(body)) {}
  void Copy(const C_Tree& source, C_Tree& target) override
  {
    ++calls;
    m_body(source, target);
  }
  int calls = 0;

private:
  std::function<void(const C_Tree&, C_Tree&)> m_body;
};

} // namespace

TEST(C_Tree, CopiesShareOneTreeAndCreateTreeMakesAFreshOne)
{
  C_Tree first;
  C_Tree second(first);
  C_Tree third;
  third = first;
  second.AddChild(CreateBool("a", true));
  EXPECT_TRUE(first.Contains("a"));
  EXPECT_TRUE(third.Contains("a"));
  EXPECT_EQ(first.GetRootCategory(), third.GetRootCategory());

  auto fresh = CreateTree();
  EXPECT_TRUE(fresh->empty());
  EXPECT_NE(fresh->GetRootCategory(), first.GetRootCategory());
  const auto root = fresh->GetRootCategory();
  EXPECT_EQ(root->GetName(), "Root");
  EXPECT_EQ(root->GetLabel(), "Root");
  EXPECT_EQ(root->GetDescription(), "This root category is only for internal use as member of C_Tree");
  EXPECT_EQ(root->GetAccessMode(), ReadWrite);
}

TEST(C_Tree, TypedGettersCastOrThrowTheCastFailure)
{
  auto tree = CreateTree();
  tree->AddChild(CreateInteger("i", 1));
  tree->AddChild(CreateDouble("d", 1));
  tree->AddChild(CreateBool("b", true));
  tree->AddChild(CreateText("t", "", "", ReadWrite, "x", C_Text::EditorLineEdit));
  tree->AddChild(CreateEnumeration("e", "", "", C_Enumeration::EditorComboBox));
  tree->AddChild(CreateCategory("c", "", ""));
  tree->AddChild(CreateAction("a", "", "", ReadWrite, C_Action::EditorPushButton));
  tree->AddChild(CreateList("l", "", "", nullptr, C_List::EditorTreeView));
  tree->AddChild(CreateIntegerList("il", 1, "", "", ReadWrite, 0, 0, 1, C_IntegerList::EditorLineEdit));
  tree->AddChild(CreateDoubleList("dl", 1, "", "", ReadWrite, 0, 0, 1, C_DoubleList::EditorLineEdit, 2));
  tree->AddChild(CreateTextList("tl", 1, "", "", ReadWrite, "", C_TextList::EditorLineEdit));

  struct Case
  {
    QString path;
    std::function<std::shared_ptr<C_Node>(const QString&)> get;
    QString kind;
  };
  const std::vector<Case> cases{
      {"i", [&](const QString& p) { return tree->GetInteger(p); }, "Integer"},
      {"d", [&](const QString& p) { return tree->GetDouble(p); }, "Double"},
      {"e", [&](const QString& p) { return tree->GetEnumeration(p); }, "Enumeration"},
      {"c", [&](const QString& p) { return tree->GetCategory(p); }, "Category"},
      {"t", [&](const QString& p) { return tree->GetText(p); }, "Text"},
      {"b", [&](const QString& p) { return tree->GetBool(p); }, "Bool"},
      {"a", [&](const QString& p) { return tree->GetAction(p); }, "Action"},
      {"l", [&](const QString& p) { return tree->GetList(p); }, "List"},
      {"il", [&](const QString& p) { return tree->GetIntegerList(p); }, "IntegerList"},
      {"dl", [&](const QString& p) { return tree->GetDoubleList(p); }, "DoubleList"},
      {"tl", [&](const QString& p) { return tree->GetTextList(p); }, "TextList"},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.kind.toStdString());
    EXPECT_EQ(c.get(c.path), tree->Get(c.path));
    // Every other kind is refused with the cast failure naming both kinds.
    const QString other = c.path == "b" ? "i" : "b";
    const QString otherKind = c.path == "b" ? "Integer" : "Bool";
    EXPECT_EQ(messageOf([&] { c.get(other); }),
              QStringLiteral("RTE::Exception: Cannot cast %1 to %2.").arg(otherKind, c.kind));
  }
  EXPECT_THROW(tree->Get("missing"), RTE::VerificationFailed);
  EXPECT_THROW(tree->GetDouble(""), RTE::VerificationFailed);
}

TEST(C_Tree, CopyValuesTakesValuesByNameAndKeepsTheStructure)
{
  auto target = makeTree(1.5, 2);
  auto source = makeTree(7.0, 5);
  source->GetCategory("Camera")->AddChild(CreateText("Serial", "", "", ReadWrite, "A1", C_Text::EditorLineEdit));
  target->CopyValues(source);
  EXPECT_EQ(target->GetDouble("Camera.Exposure")->GetValue(), 7.0);
  EXPECT_EQ(target->GetInteger("Camera.Gain")->GetValue(), 5);
  EXPECT_FALSE(target->Contains("Camera.Serial"));
  EXPECT_THROW(target->CopyValues(nullptr), RTE::InvalidArgumentError);
}

TEST(C_Tree, MergeHandlerOnlyForDifferingStructures)
{
  auto target = makeTree(1.5);
  int calls = 0;
  QList<QString> targetOnly;
  QList<QString> sourceOnly;
  const C_Tree* seenSource = nullptr;
  const C_Tree* seenTarget = nullptr;
  target->setMergeHandler(
      [&](StructuralDiffs& diffs)
      {
        ++calls;
        targetOnly = diffs.targetOnlyPaths();
        sourceOnly = diffs.sourceOnlyPaths();
        seenSource = &diffs.source();
        seenTarget = &diffs.target();
      });

  // Equal structures, different values: copied, handler not called.
  auto equal = makeTree(9.0);
  target->copyValuesFrom(*equal);
  EXPECT_EQ(target->GetDouble("Camera.Exposure")->GetValue(), 9.0);
  EXPECT_EQ(calls, 0);

  // The target lacks one node of the source, and the source one of the target's
  // (Gain is an Integer here, a Double there: both lists name it).
  auto differing = CreateTree();
  auto camera = CreateCategory("Camera", "Camera", "");
  camera->AddChild(CreateDouble("Exposure", 3.0));
  camera->AddChild(CreateDouble("Gain", 4.0));
  camera->AddChild(CreateBool("Cooling", true));
  differing->AddChild(camera);
  target->copyValuesFrom(*differing);
  EXPECT_EQ(calls, 1);
  EXPECT_EQ(target->GetDouble("Camera.Exposure")->GetValue(), 3.0);
  EXPECT_EQ(sourceOnly, (QList<QString>{"Camera.Gain", "Camera.Cooling"}));
  EXPECT_EQ(targetOnly, (QList<QString>{"Camera.Gain", "Enabled"}));
  EXPECT_EQ(seenSource, differing.get());
  EXPECT_EQ(seenTarget, target.get());

  // Without a handler nothing is compared or called.
  target->setMergeHandler(nullptr);
  target->copyValuesFrom(*differing);
  EXPECT_EQ(calls, 1);
}

TEST(C_Tree, CopyHandlerReplacesTheValueCopyAndHandlersMayReenterTheTree)
{
  auto target = makeTree(1.5, 2);
  auto source = makeTree(7.0, 5);
  source->AddChild(CreateInteger("Extra", 11));
  auto handler = std::make_unique<RecordingCopyHandler>(
      [](const C_Tree& from, C_Tree& to)
      {
        // Re-entering the locked tree on the same thread: getters, child list, equality.
        to.GetInteger("Camera.Gain")->SetValue(from.GetInteger("Camera.Gain")->GetValue() * 10);
        EXPECT_EQ(to.GetChildList().size(), 2u);
        EXPECT_TRUE(to != from);
      });
  RecordingCopyHandler* copy = handler.get();
  target->setCopyHandler(std::move(handler));
  // A merging handler that adds what the target lacks, through the tree itself.
  target->setMergeHandler(
      [](StructuralDiffs& diffs)
      {
        for (const QString& path : diffs.sourceOnlyPaths())
          diffs.target().AddChild(diffs.source().Get(path));
      });

  target->copyValuesFrom(*source);
  EXPECT_EQ(copy->calls, 1);
  EXPECT_EQ(target->GetInteger("Camera.Gain")->GetValue(), 50);
  EXPECT_EQ(target->GetDouble("Camera.Exposure")->GetValue(), 1.5); // the default copy did not run
  ASSERT_TRUE(target->Contains("Extra"));
  EXPECT_EQ(target->Get("Extra"), source->Get("Extra"));

  target->setCopyHandler(nullptr); // back to the default copy
  target->copyValuesFrom(*source);
  EXPECT_EQ(target->GetDouble("Camera.Exposure")->GetValue(), 7.0);
}

TEST(C_Tree, CopyValuesFromHoldsTheLockAgainstOtherThreads)
{
  auto target = makeTree();
  auto source = makeTree(3.0);
  std::atomic<bool> handlerDone{false};
  std::atomic<bool> otherSawHandlerRunning{false};
  std::atomic<bool> containsAnswered{false};
  std::thread other;
  target->setCopyHandler(std::make_unique<RecordingCopyHandler>(
      [&](const C_Tree&, C_Tree& to)
      {
        // Contains does not take the lock: it answers while the handler runs.
        std::promise<bool> contains;
        auto answer = contains.get_future();
        std::thread probe([&] { contains.set_value(to.Contains("Camera.Gain")); });
        ASSERT_EQ(answer.wait_for(std::chrono::seconds(10)), std::future_status::ready);
        containsAnswered = answer.get();
        probe.join();
        // GetChildList takes it: the other thread must wait until copyValuesFrom returns.
        other = std::thread(
            [&]
            {
              to.GetChildList();
              if (!handlerDone)
                otherSawHandlerRunning = true;
            });
        std::this_thread::sleep_for(std::chrono::milliseconds(100));
        handlerDone = true;
      }));
  target->copyValuesFrom(*source);
  other.join();
  EXPECT_TRUE(containsAnswered);
  EXPECT_FALSE(otherSawHandlerRunning);
}

TEST(C_Tree, CategoriesShareTheNodeObjects)
{
  auto tree = makeTree();
  auto category = CreateCategory("Copy", "", "");
  tree->CopyToCategory(category);
  EXPECT_EQ(category->GetChildList(), tree->GetChildList());

  auto fromCategory = CreateTreeFromCategory(category);
  EXPECT_EQ(fromCategory->GetChildList(), tree->GetChildList());
  EXPECT_TRUE(*fromCategory == *tree);
  fromCategory->GetDouble("Camera.Exposure")->SetValue(42.0); // the same node object
  EXPECT_EQ(tree->GetDouble("Camera.Exposure")->GetValue(), 42.0);

  auto replaced = makeTree();
  replaced->CopyFromCategory(CreateCategory("Empty", "", ""));
  EXPECT_TRUE(replaced->empty());
  EXPECT_TRUE(*replaced != *tree);
  EXPECT_THROW(tree->CopyToCategory(nullptr), RTE::InvalidArgumentError);
  EXPECT_THROW(tree->CopyFromCategory(nullptr), RTE::InvalidArgumentError);
}

TEST(C_Tree, LargeCategoriesCopyAndCompareByName)
{
  // Beyond a few children names are looked up in a table: order, duplicates and kinds
  // must still follow the rules of the small case.
  for (int count : {3, 40})
  {
    SCOPED_TRACE(count);
    std::list<std::shared_ptr<C_Node>> forward;
    std::list<std::shared_ptr<C_Node>> backward;
    for (int i = 0; i < count; ++i)
    {
      forward.push_back(CreateInteger(QStringLiteral("n%1").arg(i), 0));
      backward.push_front(CreateInteger(QStringLiteral("n%1").arg(i), 100 + i));
    }
    forward.push_back(CreateInteger("dup", 0));
    forward.push_back(CreateInteger("dup", 0));
    backward.push_back(CreateInteger("dup", 7));
    backward.push_back(CreateDouble("kind", 1.0));
    forward.push_back(CreateBool("kind", false));
    auto target = CreateTree();
    target->GetRootCategory()->SetChildList(forward);
    auto source = CreateTree();
    source->GetRootCategory()->SetChildList(backward);

    QList<QString> sourceOnly;
    QList<QString> targetOnly;
    target->setMergeHandler(
        [&](StructuralDiffs& diffs)
        {
          sourceOnly = diffs.sourceOnlyPaths();
          targetOnly = diffs.targetOnlyPaths();
        });
    target->copyValuesFrom(*source);
    EXPECT_EQ(target->GetInteger(QStringLiteral("n%1").arg(count - 1))->GetValue(), 100 + count - 1);
    EXPECT_EQ(target->GetInteger("n0")->GetValue(), 100);
    const auto list = target->GetChildList();
    EXPECT_EQ(CastToInteger(*std::next(list.begin(), count))->GetValue(), 7); // the first "dup"
    EXPECT_EQ(CastToInteger(*std::next(list.begin(), count + 1))->GetValue(), 0);
    EXPECT_FALSE(target->GetBool("kind")->GetValue());
    EXPECT_EQ(sourceOnly, QList<QString>{"kind"});
    EXPECT_EQ(targetOnly, QList<QString>{"kind"});
  }
}
