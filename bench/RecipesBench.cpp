// The recipe store must scale linearly with the number of recipes: reload, save of one
// recipe (two contexts), update and moveToArchive on stores of 250, 1000 and 4000
// recipes. BM_RecipesSave/N also writes, in every iteration, the same "toc.xml" alone
// through a settings document and reports save time over that reference (counters
// vs_toc_only for wall time, vs_toc_only_cpu for thread CPU time), so both sides share
// the machine's load of the moment. BM_RecipesSaveStoreOnly/N is the same with contexts
// that write nothing: the store's own share.
#include <Core/Common/Recipes/RecipeContextRegistry.h>
#include <Core/Common/Recipes/Recipes.h>
#include <Core/Common/Storage/SettingsDocument.h>
#include <Core/Common/Storage/ValueSerialization.h>

#include <benchmark/benchmark.h>

#include <QDir>
#include <QTemporaryDir>

#include <chrono>
#include <ctime>
#include <memory>

namespace
{

using RTE::Recipe;
using RTE::Recipes;
using Clock = std::chrono::steady_clock;

// Whether the contexts write their document; off, a save measures the store's own work
// (folders, "meta.xml", "toc.xml").
bool contextsWrite = true;

// A context that writes one small settings document, as a module would.
class BenchContext : public RTE::RecipeContext
{
public:
  explicit BenchContext(QString name) : m_name(std::move(name)) {}
  QString name() const override { return m_name; }
  QString displayName() const override { return m_name; }
  int activationOrder() const override { return 0; }
  QString summary(const QString&) const override { return {}; }
  CheckResult checkActivateOk(const QString&, int, QStringList&) override { return CheckResult::Ok; }
  QStringList prepareActivate(const QString&, int) override { return {}; }
  QStringList activate(const QString&, int) override { return {}; }
  CheckResult checkSaveOk(const QString&, int, QStringList&) override { return CheckResult::Ok; }
  QStringList prepareSave(const QString&, int) override { return {}; }
  QStringList save(const QString& folder, const QString& text, int index) override
  {
    if (!contextsWrite)
      return {};
    Storage::SettingsDocument document;
    document.Set(QStringLiteral("Selection"), text);
    document.Set(QStringLiteral("Index"), index);
    document.Set(QStringLiteral("Exposure"), 2.5);
    document.SaveAs(folder + QStringLiteral("/settings.xml"));
    return {};
  }

private:
  QString m_name;
};

void registerContexts()
{
  static const bool once = []
  {
    RTE::recipeContextRegistry().add(std::make_unique<BenchContext>(QStringLiteral("Camera")));
    RTE::recipeContextRegistry().add(std::make_unique<BenchContext>(QStringLiteral("Laser")));
    return true;
  }();
  (void)once;
}

// The table of contents as the store writes it, built through the settings document.
void writeToc(const QList<Recipe>& list, const QString& path)
{
  Storage::SettingsDocument toc;
  for (const Recipe& recipe : list)
  {
    const std::shared_ptr<Storage::Settings> item = toc.AppendCollectionNode(QStringLiteral("Recipes"));
    Storage::SerializeTo(*item->CreateNode(QStringLiteral("Id")), recipe.id);
    item->Set(QStringLiteral("Label"), recipe.label);
    item->Set(QStringLiteral("Comment"), recipe.comment);
    item->Set(QStringLiteral("Archived"), recipe.archived);
    const auto time = item->CreateNode(QStringLiteral("ArchivedTime"));
    time->SetClass(QStringLiteral("datetime"));
    time->SetVersion(1);
    Storage::SerializeTo(*item->CreateNode(QStringLiteral("Successor")), recipe.successor);
    item->Set(QStringLiteral("FolderName"), recipe.folderName);
  }
  toc.SaveAs(path);
}

Recipe makeRecipe(int number)
{
  Recipe recipe;
  recipe.id = QUuid::createUuid();
  recipe.label = QStringLiteral("Recipe %1").arg(number);
  recipe.comment = QStringLiteral("Engine test bench set-up number %1").arg(number);
  return recipe;
}

// A recipes folder with count recipes, each with its folder.
struct Store
{
  explicit Store(int count)
  {
    registerContexts();
    for (int number = 0; number < count; ++number)
    {
      list.append(makeRecipe(number));
      QDir().mkpath(dir.path() + QLatin1Char('/') + list.last().id.toString(QUuid::WithBraces));
    }
    writeToc(list, dir.path() + QStringLiteral("/toc.xml"));
    recipes = std::make_unique<Recipes>(dir.path());
  }

  QTemporaryDir dir;
  QList<Recipe> list;
  std::unique_ptr<Recipes> recipes;
};

void BM_RecipesReload(benchmark::State& state)
{
  Store store(static_cast<int>(state.range(0)));
  for (auto _ : state)
    store.recipes->reload();
  state.SetComplexityN(state.range(0));
}

double threadSeconds()
{
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

// Wall time is what a user waits for; it includes one fdatasync per document written
// (two context documents, "meta.xml" and "toc.xml" against the reference's one). Thread
// CPU time is the work of the code alone.
void measureSave(benchmark::State& state, bool withContextData)
{
  contextsWrite = withContextData;
  Store store(static_cast<int>(state.range(0)));
  Recipe recipe = makeRecipe(-1);
  store.recipes->save(recipe, {});
  QList<Recipe> reference = store.list;
  reference.append(recipe);
  const QString referencePath = store.dir.path() + QStringLiteral("/reference/toc.xml");
  double saveSeconds = 0;
  double tocSeconds = 0;
  double saveCpu = 0;
  double tocCpu = 0;
  for (auto _ : state)
  {
    const double cpuStart = threadSeconds();
    const auto start = Clock::now();
    store.recipes->save(recipe, {{QStringLiteral("Camera"), QStringLiteral("fast"), 1}});
    const auto saved = Clock::now();
    const double cpuSaved = threadSeconds();
    writeToc(reference, referencePath);
    const auto written = Clock::now();
    tocCpu += threadSeconds() - cpuSaved;
    saveCpu += cpuSaved - cpuStart;
    const double seconds = std::chrono::duration<double>(saved - start).count();
    saveSeconds += seconds;
    tocSeconds += std::chrono::duration<double>(written - saved).count();
    state.SetIterationTime(seconds);
  }
  state.counters["vs_toc_only"] = saveSeconds / tocSeconds;
  state.counters["vs_toc_only_cpu"] = saveCpu / tocCpu;
  state.counters["toc_only_ms"] = 1000.0 * tocSeconds / static_cast<double>(state.iterations());
  state.SetComplexityN(state.range(0));
  contextsWrite = true;
}

void BM_RecipesSave(benchmark::State& state)
{
  measureSave(state, true);
}

void BM_RecipesSaveStoreOnly(benchmark::State& state)
{
  measureSave(state, false);
}

void BM_RecipesUpdate(benchmark::State& state)
{
  Store store(static_cast<int>(state.range(0)));
  Recipe recipe = store.list[store.list.size() / 2];
  int round = 0;
  for (auto _ : state)
  {
    recipe.comment = QStringLiteral("round %1").arg(++round);
    store.recipes->update(recipe);
  }
  state.SetComplexityN(state.range(0));
}

// Every iteration archives one more recipe; the store is built with that many extra.
void BM_RecipesMoveToArchive(benchmark::State& state)
{
  constexpr int kIterations = 30;
  Store store(static_cast<int>(state.range(0)));
  const QList<Recipe> candidates = store.list.mid(0, kIterations);
  qsizetype next = 0;
  for (auto _ : state)
    store.recipes->moveToArchive(candidates[next++].id, QUuid());
  state.SetComplexityN(state.range(0));
}

BENCHMARK(BM_RecipesReload)->Arg(250)->Arg(1000)->Arg(4000)->Unit(benchmark::kMillisecond)->Complexity();
BENCHMARK(BM_RecipesSave)->Arg(250)->Arg(1000)->Arg(4000)->UseManualTime()->Unit(benchmark::kMillisecond)->Complexity();
BENCHMARK(BM_RecipesSaveStoreOnly)
    ->Arg(250)
    ->Arg(1000)
    ->Arg(4000)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond)
    ->Complexity();
BENCHMARK(BM_RecipesUpdate)->Arg(250)->Arg(1000)->Arg(4000)->Unit(benchmark::kMillisecond)->Complexity();
BENCHMARK(BM_RecipesMoveToArchive)
    ->Arg(250)
    ->Arg(1000)
    ->Arg(4000)
    ->Iterations(30)
    ->Unit(benchmark::kMillisecond)
    ->Complexity();

} // namespace
