// Index selections: parsing a long range text, and walking an RTE::Indices against a
// plain loop over the same indices (the reference, in the same run).
#include <Core/Common/Utilities/Indices.h>
#include <Core/Common/Utilities/RangeString.h>

#include <QString>
#include <QStringList>

#include <benchmark/benchmark.h>

namespace
{

// 10,000 parts of every kind, as a user might paste them: runs, singles, open ends and
// exclusions, with blanks and ";" mixed in.
QString longRangeText()
{
  QStringList parts;
  for (int i = 0; i < 10000; ++i)
  {
    const int base = (i * 37) % 99000;
    switch (i % 5)
    {
    case 0:
      parts.append(QStringLiteral("%1-%2").arg(base).arg(base + 40));
      break;
    case 1:
      parts.append(QString::number(base));
      break;
    case 2:
      parts.append(QStringLiteral(" %1 - %2 ").arg(base + 900).arg(base));
      break;
    case 3:
      parts.append(QStringLiteral("!%1").arg(base + 3));
      break;
    default:
      parts.append(QStringLiteral("-%1").arg(base % 50));
      break;
    }
  }
  return parts.join(QStringLiteral(", ")).replace(QStringLiteral(", !1"), QStringLiteral("; !1"));
}

void BM_ParseRangeString10000Parts(benchmark::State& state)
{
  const QString text = longRangeText();
  std::vector<bool> singles;
  for (auto _ : state)
    benchmark::DoNotOptimize(RTE::ParseRangeString(text, 0, 99999, singles, false));
  state.counters["parts"] = 10000;
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * text.size() * 2);
}
BENCHMARK(BM_ParseRangeString10000Parts)->Unit(benchmark::kMicrosecond);

// 10 million indices in five ranges separated by gaps, step 1.
const RTE::Indices& tenMillion()
{
  static const RTE::Indices indices(
      QStringLiteral("1-2000000, 2000101-4000100, 4000201-6000200, 6000301-8000300, 8000401-10000400"), 10000400, 1);
  return indices;
}

void BM_IndicesIteration(benchmark::State& state)
{
  const RTE::Indices& indices = tenMillion();
  for (auto _ : state)
  {
    for (unsigned int index : indices)
      benchmark::DoNotOptimize(index);
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * indices.size()));
}
BENCHMARK(BM_IndicesIteration)->Unit(benchmark::kMillisecond);

// The reference: the same indices from a plain loop over the ranges.
void BM_PlainLoopSameIndices(benchmark::State& state)
{
  const RTE::Indices& indices = tenMillion();
  const unsigned int step = indices.stepSize();
  for (auto _ : state)
  {
    for (const RTE::Indices::Range& range : indices.ranges())
    {
      for (unsigned long long index = range.minimum; index <= range.maximum; index += step)
        benchmark::DoNotOptimize(static_cast<unsigned int>(index));
    }
  }
  state.SetItemsProcessed(static_cast<int64_t>(state.iterations() * indices.size()));
}
BENCHMARK(BM_PlainLoopSameIndices)->Unit(benchmark::kMillisecond);

} // namespace
