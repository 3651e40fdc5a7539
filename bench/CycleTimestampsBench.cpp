// Building a large cycle and mapping a long series onto its crank angles, each beside a
// pass that only reads the same vectors, so that the figures can be judged against the
// memory bandwidth of the machine they ran on.
#include <Core/Common/CycleTimestamps/CycleTimestamps.h>

#include <QBuffer>

#include <benchmark/benchmark.h>

#include <cmath>

namespace
{

constexpr std::size_t marks = 3600;
constexpr std::size_t exposureCount = 1000000;
constexpr std::size_t sampleCount = 10000000;
// One cycle of 100 ms (1200 rpm at 720 degrees), starting at 1 s.
constexpr std::int64_t startPs = 1000000000000;
constexpr std::int64_t periodPs = 100000000000;

struct Input
{
  RTE::CycleTimestamps::Settings settings;
  std::vector<RTE::TimeSpan> cdms;
  std::vector<RTE::TimeSpan> exposures;
  std::vector<RTE::TimeSample> series;
};

const Input& input()
{
  static const Input data = []
  {
    Input in;
    in.settings.degreesPerCycle = RTE::DegreesPerCycle(720.0);
    in.settings.cdmsPerCycle = RTE::CycleTimestamps::CdmCount(marks);
    in.settings.start = RTE::TimeSpan(startPs);
    in.settings.nextStart = RTE::TimeSpan(startPs + periodPs);
    for (std::size_t i = 0; i < marks; ++i)
    {
      // Slightly uneven marks, as a real crank speed is.
      const double x = double(i) / marks;
      const double t = x - 0.005 * std::sin(2 * M_PI * 2 * x) / (2 * M_PI * 2);
      in.cdms.emplace_back(startPs + std::int64_t(t * periodPs));
    }
    for (std::size_t j = 0; j < exposureCount; ++j)
      in.exposures.emplace_back(startPs + std::int64_t(j) * (periodPs / std::int64_t(exposureCount)));
    in.series.reserve(sampleCount);
    for (std::size_t k = 0; k < sampleCount; ++k)
      in.series.push_back({RTE::TimeSpan(startPs + std::int64_t(k) * (periodPs / std::int64_t(sampleCount))),
                           std::sin(double(k) * 1e-5)});
    return in;
  }();
  return data;
}

void BM_BuildCycle(benchmark::State& state)
{
  const Input& in = input();
  for (auto _ : state)
  {
    RTE::CycleTimestamps cycle(in.settings, in.cdms, in.exposures);
    benchmark::DoNotOptimize(cycle.crankAngles().data());
  }
  state.SetItemsProcessed(state.iterations() * std::int64_t(exposureCount));
  state.counters["exposures"] = double(exposureCount);
}

// Reference for BM_BuildCycle: one read of the mark and exposure times.
void BM_ReadCycleInput(benchmark::State& state)
{
  const Input& in = input();
  for (auto _ : state)
  {
    std::int64_t sum = 0;
    for (const RTE::TimeSpan& t : in.cdms)
      sum += t.ToPicoSeconds();
    for (const RTE::TimeSpan& t : in.exposures)
      sum += t.ToPicoSeconds();
    benchmark::DoNotOptimize(sum);
  }
  state.SetItemsProcessed(state.iterations() * std::int64_t(exposureCount));
}

void BM_MapToCrankAngle(benchmark::State& state)
{
  const Input& in = input();
  const RTE::CycleTimestamps cycle(in.settings, in.cdms, {});
  for (auto _ : state)
  {
    const std::vector<RTE::CrankAngleSample> mapped = cycle.mapToCrankAngle(in.series);
    benchmark::DoNotOptimize(mapped.data());
  }
  state.SetItemsProcessed(state.iterations() * std::int64_t(sampleCount));
  state.counters["samples"] = double(sampleCount);
}

// Reference for BM_MapToCrankAngle: one read of the series.
void BM_ReadSeries(benchmark::State& state)
{
  const Input& in = input();
  for (auto _ : state)
  {
    double sum = 0.0;
    std::int64_t last = 0;
    for (const RTE::TimeSample& s : in.series)
    {
      sum += s.value;
      last ^= s.time.ToPicoSeconds();
    }
    benchmark::DoNotOptimize(sum);
    benchmark::DoNotOptimize(last);
  }
  state.SetItemsProcessed(state.iterations() * std::int64_t(sampleCount));
}

void BM_StoreAndLoad(benchmark::State& state)
{
  const Input& in = input();
  const RTE::CycleTimestamps cycle(in.settings, in.cdms, in.exposures);
  for (auto _ : state)
  {
    QBuffer buffer;
    buffer.open(QIODevice::WriteOnly);
    cycle.store(buffer);
    buffer.close();
    const RTE::CycleTimestamps loaded = RTE::CycleTimestamps::load(buffer);
    benchmark::DoNotOptimize(loaded.crankAngles().data());
  }
  state.SetItemsProcessed(state.iterations() * std::int64_t(exposureCount));
}

} // namespace

BENCHMARK(BM_BuildCycle)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadCycleInput)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_MapToCrankAngle)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_ReadSeries)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_StoreAndLoad)->Unit(benchmark::kMillisecond);
