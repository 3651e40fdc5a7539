// Parameter trees of N value nodes in 100 categories must persist and copy in time
// linear in N: serialising into a settings document, writing its text, parsing the text,
// deserialising, copyValuesFrom between two trees and missingNodesIn. The reference is
// BM_SettingsOnlyRoundTrip: the same document shape written through the settings tree
// alone, as text, and parsed again.
#include <Core/Common/Parameter/ParameterStorage.h>
#include <Core/Common/Storage/SettingsStringBasedDocument.h>

#include <benchmark/benchmark.h>

namespace
{

using namespace RTE::Parameter;

constexpr int categories = 100;

std::shared_ptr<C_Node> makeValue(int index)
{
  const QString name = QStringLiteral("v%1").arg(index);
  switch (index % 4)
  {
  case 0:
    return CreateDouble(name, "Value", "A real value", ReadWrite, index * 0.5, -1e6, 1e6, C_Double::EditorSpinBox, 2);
  case 1:
    return CreateInteger(name, "Value", "A whole value", ReadWrite, index, -1000000, 1000000, C_Integer::EditorSpinBox);
  case 2:
    return CreateBool(name, "Value", "A switch", ReadWrite, index % 3 == 0, C_Bool::EditorCheckBox);
  default:
    return CreateText(name, "Value", "A text", ReadWrite, QStringLiteral("text %1").arg(index), C_Text::EditorLineEdit);
  }
}

std::shared_ptr<C_Tree> makeTree(int values)
{
  auto tree = CreateTree();
  for (int c = 0; c < categories; ++c)
  {
    auto category = CreateCategory(QStringLiteral("c%1").arg(c), "Category", "");
    for (int v = c; v < values; v += categories)
      category->AddChild(makeValue(v));
    tree->AddChild(category);
  }
  return tree;
}

QString treeText(int values)
{
  Storage::SettingsStringBasedDocument document;
  Storage::SerializeTo(document, makeTree(values));
  return document.GetContent();
}

void BM_Serialize(benchmark::State& state)
{
  const auto tree = makeTree(static_cast<int>(state.range(0)));
  for (auto _ : state)
  {
    Storage::SettingsStringBasedDocument document;
    Storage::SerializeTo(document, tree);
    benchmark::DoNotOptimize(document);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_WriteText(benchmark::State& state)
{
  Storage::SettingsStringBasedDocument document;
  Storage::SerializeTo(document, makeTree(static_cast<int>(state.range(0))));
  for (auto _ : state)
    benchmark::DoNotOptimize(document.GetContent());
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_Parse(benchmark::State& state)
{
  const QString text = treeText(static_cast<int>(state.range(0)));
  for (auto _ : state)
  {
    Storage::SettingsStringBasedDocument document(text);
    benchmark::DoNotOptimize(document);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_Deserialize(benchmark::State& state)
{
  const Storage::SettingsStringBasedDocument document(treeText(static_cast<int>(state.range(0))));
  for (auto _ : state)
  {
    std::shared_ptr<C_Tree> tree;
    Storage::DeserializeFrom(document, tree);
    if (tree->GetChildList().size() != categories)
      state.SkipWithError("wrong tree");
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_CopyValuesFrom(benchmark::State& state)
{
  const auto source = makeTree(static_cast<int>(state.range(0)));
  const auto target = makeTree(static_cast<int>(state.range(0)));
  target->setMergeHandler([](StructuralDiffs&) {}); // so that the structures are compared too
  for (auto _ : state)
    target->copyValuesFrom(*source);
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_MissingNodesIn(benchmark::State& state)
{
  const auto a = makeTree(static_cast<int>(state.range(0)));
  const auto b = makeTree(static_cast<int>(state.range(0)) - categories); // one node fewer per category
  for (auto _ : state)
  {
    const auto missing = a->GetRootCategory()->missingNodesIn(b->GetRootCategory());
    if (missing.size() != categories)
      state.SkipWithError("wrong difference");
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

// The same document shape written leaf by leaf, as text, and parsed: what the settings
// tree costs without any parameter node.
void BM_SettingsOnlyRoundTrip(benchmark::State& state)
{
  const int values = static_cast<int>(state.range(0));
  const auto common =
      [](Storage::Settings& node, const QString& className, const QString& name, const QString& description)
  {
    node.SetClass(className);
    node.Set(QStringLiteral("Label"), QStringLiteral("Value"));
    node.Set(QStringLiteral("Name"), name);
    node.Set(QStringLiteral("Description"), description);
    node.Set(QStringLiteral("AccessMode"), 2);
    node.Set(QStringLiteral("VisibilityLevel"), 0);
  };
  for (auto _ : state)
  {
    Storage::SettingsStringBasedDocument document;
    document.SetClass(QStringLiteral("ParameterTree"));
    auto root = document.CreateNode(QStringLiteral("Root"));
    root->SetClass(QStringLiteral("list"));
    root->SetVersion(1);
    for (int c = 0; c < categories; ++c)
    {
      auto category = root->AppendCollectionNode(QStringLiteral("item"));
      common(*category, QStringLiteral("Category"), QStringLiteral("c%1").arg(c), QString());
      category->Set(QStringLiteral("Label"), QStringLiteral("Category"));
      auto children = category->CreateNode(QStringLiteral("ChildList"));
      children->SetClass(QStringLiteral("list"));
      children->SetVersion(1);
      for (int v = c; v < values; v += categories)
      {
        auto item = children->AppendCollectionNode(QStringLiteral("item"));
        const QString name = QStringLiteral("v%1").arg(v);
        switch (v % 4)
        {
        case 0:
          common(*item, QStringLiteral("Double"), name, QStringLiteral("A real value"));
          item->Set(QStringLiteral("Value"), v * 0.5);
          item->Set(QStringLiteral("Min"), -1e6);
          item->Set(QStringLiteral("Max"), 1e6);
          item->Set(QStringLiteral("Step"), 1.0);
          break;
        case 1:
          common(*item, QStringLiteral("Integer"), name, QStringLiteral("A whole value"));
          item->Set(QStringLiteral("Value"), static_cast<long long>(v));
          item->Set(QStringLiteral("Min"), -1000000LL);
          item->Set(QStringLiteral("Max"), 1000000LL);
          item->Set(QStringLiteral("Step"), 1LL);
          break;
        case 2:
          common(*item, QStringLiteral("Bool"), name, QStringLiteral("A switch"));
          item->Set(QStringLiteral("Value"), v % 3 == 0);
          break;
        default:
          common(*item, QStringLiteral("Text"), name, QStringLiteral("A text"));
          item->Set(QStringLiteral("Value"), QStringLiteral("text %1").arg(v));
        }
      }
    }
    const Storage::SettingsStringBasedDocument parsed(document.GetContent());
    benchmark::DoNotOptimize(parsed);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_FullRoundTrip(benchmark::State& state)
{
  const auto tree = makeTree(static_cast<int>(state.range(0)));
  for (auto _ : state)
  {
    Storage::SettingsStringBasedDocument document;
    Storage::SerializeTo(document, tree);
    const Storage::SettingsStringBasedDocument parsed(document.GetContent());
    std::shared_ptr<C_Tree> read;
    Storage::DeserializeFrom(parsed, read);
    benchmark::DoNotOptimize(read);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

#define PARAMETER_BENCH(name)                                                                                          \
  BENCHMARK(name)->Arg(2500)->Arg(5000)->Arg(10000)->Arg(20000)->Arg(40000)->Unit(benchmark::kMillisecond)

PARAMETER_BENCH(BM_Serialize);
PARAMETER_BENCH(BM_WriteText);
PARAMETER_BENCH(BM_Parse);
PARAMETER_BENCH(BM_Deserialize);
PARAMETER_BENCH(BM_CopyValuesFrom);
PARAMETER_BENCH(BM_MissingNodesIn);
PARAMETER_BENCH(BM_FullRoundTrip);
PARAMETER_BENCH(BM_SettingsOnlyRoundTrip);

} // namespace
