// Costs of the unit lookups and number formatting that displays run per shown value.
#include <Core/Common/Units/AutoFormatValueWithUnit.h>
#include <Core/Common/Units/NumberFormatter.h>
#include <Core/Common/Units/UnitsRegistry.h>

#include <benchmark/benchmark.h>

namespace
{

void BM_RegistryFindScale(benchmark::State& state)
{
  const RTE::UnitsRegistry& registry = RTE::UnitsRegistry::getInstance();
  const QString from = QString::fromUtf8("µs"); // Time is registered late: a long search
  const QString to = QStringLiteral("min");
  for (auto _ : state)
    benchmark::DoNotOptimize(registry.findScale(from, to));
}
BENCHMARK(BM_RegistryFindScale);

void BM_RegistryLabel(benchmark::State& state)
{
  const RTE::UnitsRegistry& registry = RTE::UnitsRegistry::getInstance();
  const QString id = QStringLiteral("m/s^2");
  for (auto _ : state)
    benchmark::DoNotOptimize(registry.getLabelForUnitId(id));
}
BENCHMARK(BM_RegistryLabel);

void BM_NumberFormatter(benchmark::State& state)
{
  const Common::NumberFormatter& formatter = Common::NumberFormatter::Default();
  double value = 0.012345;
  for (auto _ : state)
  {
    benchmark::DoNotOptimize(formatter.ToString(value));
    value *= 1.0001;
  }
}
BENCHMARK(BM_NumberFormatter);

void BM_AutoFormatValueWithUnit(benchmark::State& state)
{
  const QString unit = QStringLiteral("s");
  for (auto _ : state)
    benchmark::DoNotOptimize(Common::AutoFormatValueWithUnit(0.0000123, unit));
}
BENCHMARK(BM_AutoFormatValueWithUnit);

} // namespace
