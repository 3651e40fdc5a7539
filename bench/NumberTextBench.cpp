// Numbers and durations to text and back, against Qt's own conversions as the reference.
//
//   build/bench/NumberTextBench --benchmark_filter=Double
#include <Core/Common/Units/DefaultStringToTimeConverter.h>
#include <Core/Common/Units/DefaultTimeToStringConverter.h>
#include <Core/Common/Units/FloatConverter.h>
#include <Core/Common/Units/TimeSpan.h>

#include <QLocale>
#include <QString>

#include <benchmark/benchmark.h>

#include <bit>
#include <cmath>
#include <random>
#include <vector>

namespace
{

const std::vector<double>& doubles()
{
  static const std::vector<double> values = []
  {
    std::mt19937_64 random(1);
    std::vector<double> v;
    while (v.size() < 4096)
    {
      const auto x = std::bit_cast<double>(random());
      if (std::isfinite(x))
        v.push_back(x);
    }
    return v;
  }();
  return values;
}

std::vector<QString> texts(QString (*write)(double))
{
  std::vector<QString> v;
  for (const double x : doubles())
    v.push_back(write(x));
  return v;
}

QString qtShortest(double x)
{
  return QString::number(x, 'g', QLocale::FloatingPointShortest);
}

void DoubleToTextShortest(benchmark::State& state)
{
  for (auto _ : state)
    for (const double x : doubles())
      benchmark::DoNotOptimize(RTE::FloatConverter::toString(x));
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(doubles().size()));
}
BENCHMARK(DoubleToTextShortest);

void DoubleToTextShortestQt(benchmark::State& state)
{
  for (auto _ : state)
    for (const double x : doubles())
      benchmark::DoNotOptimize(qtShortest(x));
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(doubles().size()));
}
BENCHMARK(DoubleToTextShortestQt);

void TextToDouble(benchmark::State& state)
{
  const std::vector<QString> input = texts(&RTE::FloatConverter::toString);
  for (auto _ : state)
    for (const QString& text : input)
      benchmark::DoNotOptimize(RTE::FloatConverter::toDouble(text));
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(input.size()));
}
BENCHMARK(TextToDouble);

void TextToDoubleQt(benchmark::State& state)
{
  const std::vector<QString> input = texts(&RTE::FloatConverter::toString);
  const QLocale c = QLocale::c();
  for (auto _ : state)
    for (const QString& text : input)
      benchmark::DoNotOptimize(c.toDouble(text));
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(input.size()));
}
BENCHMARK(TextToDoubleQt);

void TimeSpanRoundTrip(benchmark::State& state)
{
  std::mt19937_64 random(2);
  std::vector<RTE::TimeSpan> spans;
  for (int i = 0; i < 4096; ++i)
  {
    const std::uint64_t bits = random();
    spans.emplace_back(static_cast<std::int64_t>(bits) >> (bits % 64));
  }
  const RTE::DefaultTimeToStringConverter writer;
  const RTE::DefaultStringToTimeConverter reader;
  for (auto _ : state)
    for (const RTE::TimeSpan span : spans)
      benchmark::DoNotOptimize(reader.convert(writer.convert(span)));
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(spans.size()));
}
BENCHMARK(TimeSpanRoundTrip);

} // namespace
