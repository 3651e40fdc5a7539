// Settings collections must scale linearly: appending N items, writing the document as
// text, parsing it and reading every item back by index, compared with raw pugixml
// parsing the same text and walking every element. BM_SettingsRoundTrip/N reports that
// ratio itself (counters vs_raw_wall and vs_raw_cpu): every iteration also times the raw
// parse of its own text, so both sides share the machine's load of the moment.
// BM_RawPugixmlParseAndWalk/N is the same reference on its own.
//
// Both sides run with a steady heap. Left to itself, glibc hands freed memory back to
// the system when the free top of its heap exceeds a threshold that it raises as large
// blocks come and go, so whether a side pays page faults for its memory again on every
// run depends on which allocations happened before it (the reference, run after the
// round trips, finds the thresholds raised by them). Fixed thresholds, as a long-running
// host's heap has, leave the work of the code to be compared. Set
// SETTINGS_BENCH_DEFAULT_HEAP=1 to measure with glibc's own thresholds instead.
#include <Core/Common/Storage/SettingsStringBasedDocument.h>

#include <benchmark/benchmark.h>

#include <pugixml.hpp>

#include <chrono>
#include <cstdlib>
#include <ctime>

#include <malloc.h>

namespace
{

const bool steadyHeap = []
{
  if (std::getenv("SETTINGS_BENCH_DEFAULT_HEAP"))
    return false;
  // Blocks up to 32 MiB (the largest threshold glibc accepts) come from the heap, and
  // its top is never trimmed.
  return mallopt(M_MMAP_THRESHOLD, 32 << 20) == 1 && mallopt(M_TRIM_THRESHOLD, 1 << 30) == 1;
}();

struct Instant
{
  double wall;
  double cpu;
};

Instant now()
{
  timespec cpu{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &cpu);
  return {std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch()).count(),
          static_cast<double>(cpu.tv_sec) + 1e-9 * static_cast<double>(cpu.tv_nsec)};
}

// The reference: pugixml parses the UTF-8 text (its default options, a copy of the
// buffer) and every item's attributes are searched for the value.
long long rawParseAndWalk(const QByteArray& text)
{
  pugi::xml_document document;
  document.load_buffer(text.constData(), static_cast<size_t>(text.size()));
  long long sum = 0;
  for (pugi::xml_node item : document.child("root").children())
    sum += item.attribute("value").as_int();
  return sum;
}

QString collectionText(int count)
{
  Storage::SettingsStringBasedDocument document;
  for (int i = 0; i < count; ++i)
    document.AppendCollectionItem(QStringLiteral("items"), i);
  return document.GetContent();
}

// Appends count items, writes the text, parses it and reads every item back; the
// documents are destroyed before it returns, as the reference's is.
long long settingsRoundTrip(int count, const QString& name)
{
  Storage::SettingsStringBasedDocument written;
  for (int i = 0; i < count; ++i)
    written.AppendCollectionItem(name, i);
  const Storage::SettingsStringBasedDocument read(written.GetContent());
  long long sum = 0;
  for (int i = 0; i < count; ++i)
    sum += read.GetCollectionItem<int>(name, static_cast<unsigned long long>(i), 0);
  return sum;
}

void BM_SettingsRoundTrip(benchmark::State& state)
{
  const int count = static_cast<int>(state.range(0));
  const long long expected = static_cast<long long>(count) * (count - 1) / 2;
  const QString name = QStringLiteral("items");
  const Instant start = now();
  for (auto _ : state)
  {
    if (settingsRoundTrip(count, name) != expected)
      state.SkipWithError("wrong sum");
  }
  const Instant end = now();
  state.SetItemsProcessed(state.iterations() * count);

  // The reference on the same text, right after: one run to warm up, then as many as
  // the round trips had and at least as long as they took, so that both sides see the
  // same load and the reference its own steady state.
  const QByteArray reference = collectionText(count).toUtf8();
  if (rawParseAndWalk(reference) != expected)
    state.SkipWithError("wrong reference sum");
  const Instant rawStart = now();
  Instant rawEnd = rawStart;
  long long runs = 0;
  while (runs < state.iterations() || rawEnd.wall - rawStart.wall < end.wall - start.wall)
  {
    benchmark::DoNotOptimize(rawParseAndWalk(reference));
    ++runs;
    rawEnd = now();
  }
  const double iterations = static_cast<double>(state.iterations());
  const double rawRuns = static_cast<double>(runs);
  state.counters["vs_raw_wall"] = (end.wall - start.wall) / iterations / ((rawEnd.wall - rawStart.wall) / rawRuns);
  state.counters["vs_raw_cpu"] = (end.cpu - start.cpu) / iterations / ((rawEnd.cpu - rawStart.cpu) / rawRuns);
  state.SetLabel(steadyHeap ? "steady heap" : "glibc's own heap thresholds");
}

void BM_RawPugixmlParseAndWalk(benchmark::State& state)
{
  const int count = static_cast<int>(state.range(0));
  const QByteArray text = collectionText(count).toUtf8();
  for (auto _ : state)
  {
    const long long sum = rawParseAndWalk(text);
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

namespace
{

void BM_SettingsReadParsed(benchmark::State& state)
{
  const int count = static_cast<int>(state.range(0));
  const Storage::SettingsStringBasedDocument read(collectionText(count));
  for (auto _ : state)
  {
    long long sum = 0;
    for (int i = 0; i < count; ++i)
      sum += read.GetCollectionItem<int>(QStringLiteral("items"), static_cast<unsigned long long>(i), 0);
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}

} // namespace

BENCHMARK(BM_SettingsReadParsed)->Arg(1000)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
