// Settings collections must scale linearly: appending N items, writing the document as
// text, parsing it and reading every item back by index, compared with raw pugixml
// parsing the same text and walking every element. The ratio of
// BM_SettingsRoundTrip/N to BM_RawPugixmlParseAndWalk/N is the figure to watch.
#include <Core/Common/Storage/SettingsStringBasedDocument.h>

#include <benchmark/benchmark.h>

#include <pugixml.hpp>

namespace
{

QString collectionText(int count)
{
  Storage::SettingsStringBasedDocument document;
  for (int i = 0; i < count; ++i)
    document.AppendCollectionItem(QStringLiteral("items"), i);
  return document.GetContent();
}

void BM_SettingsRoundTrip(benchmark::State& state)
{
  const int count = static_cast<int>(state.range(0));
  const QString name = QStringLiteral("items");
  for (auto _ : state)
  {
    Storage::SettingsStringBasedDocument written;
    for (int i = 0; i < count; ++i)
      written.AppendCollectionItem(name, i);
    const Storage::SettingsStringBasedDocument read(written.GetContent());
    long long sum = 0;
    for (int i = 0; i < count; ++i)
      sum += read.GetCollectionItem<int>(name, static_cast<unsigned long long>(i), 0);
    if (sum != static_cast<long long>(count) * (count - 1) / 2)
      state.SkipWithError("wrong sum");
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * count);
}

void BM_RawPugixmlParseAndWalk(benchmark::State& state)
{
  const int count = static_cast<int>(state.range(0));
  const QByteArray text = collectionText(count).toUtf8();
  for (auto _ : state)
  {
    pugi::xml_document document;
    document.load_buffer(text.constData(), static_cast<size_t>(text.size()));
    long long sum = 0;
    for (pugi::xml_node item : document.child("root").children())
      sum += item.attribute("value").as_int();
    if (sum != static_cast<long long>(count) * (count - 1) / 2)
      state.SkipWithError("wrong sum");
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * count);
}

// The phases of the round trip, to see where the time goes.
void BM_SettingsAppend(benchmark::State& state)
{
  const int count = static_cast<int>(state.range(0));
  for (auto _ : state)
  {
    Storage::SettingsStringBasedDocument written;
    for (int i = 0; i < count; ++i)
      written.AppendCollectionItem(QStringLiteral("items"), i);
    benchmark::DoNotOptimize(written.GetDocImpl());
  }
  state.SetItemsProcessed(state.iterations() * count);
}

void BM_SettingsParseAndRead(benchmark::State& state)
{
  const int count = static_cast<int>(state.range(0));
  const QString text = collectionText(count);
  for (auto _ : state)
  {
    const Storage::SettingsStringBasedDocument read(text);
    long long sum = 0;
    for (int i = 0; i < count; ++i)
      sum += read.GetCollectionItem<int>(QStringLiteral("items"), static_cast<unsigned long long>(i), 0);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * count);
}

} // namespace

BENCHMARK(BM_SettingsRoundTrip)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_RawPugixmlParseAndWalk)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SettingsAppend)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SettingsParseAndRead)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

namespace
{

void BM_SettingsGetContent(benchmark::State& state)
{
  const Storage::SettingsStringBasedDocument document(collectionText(static_cast<int>(state.range(0))));
  for (auto _ : state)
    benchmark::DoNotOptimize(document.GetContent());
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

void BM_SettingsSetContent(benchmark::State& state)
{
  const QString text = collectionText(static_cast<int>(state.range(0)));
  for (auto _ : state)
  {
    const Storage::SettingsStringBasedDocument document(text);
    benchmark::DoNotOptimize(document.GetDocImpl());
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

BENCHMARK(BM_SettingsGetContent)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SettingsSetContent)->Arg(100000)->Unit(benchmark::kMillisecond);
