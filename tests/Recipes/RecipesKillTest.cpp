// A child process saves, archives, copies, renames and removes recipes without end and
// is killed at random moments; after every kill the folder must load and every listed
// recipe must be whole.
#include "RecipesTestHelpers.h"

#include <QCoreApplication>
#include <QDir>
#include <QProcess>
#include <QRandomGenerator>
#include <QThread>

#include <cstdio>

using RTE::Recipe;
using RTE::Recipes;
using Which = RTE::Recipes::WhichRecipe;

namespace
{

const char* const kFolderVariable = "CORECOMMON_RECIPES_KILL_FOLDER";
const char* const kSeedVariable = "CORECOMMON_RECIPES_KILL_SEED";
const QStringList kContexts{QStringLiteral("Camera"), QStringLiteral("Laser")};

// Whether the settings document at path loads.
bool loads(const QString& path)
{
  Storage::SettingsDocument document(path, Storage::AutoSync::Off);
  return document.Load();
}

// Problems found in the recipes folder; empty when it is sound.
QStringList problemsIn(const QString& folder, qsizetype* listed)
{
  QStringList problems;
  if (QFileInfo::exists(folder + "/toc.xml") && !loads(folder + "/toc.xml"))
    problems << QStringLiteral("toc.xml does not load");
  Recipes recipes(folder);
  const QList<QUuid> ids = recipes.allRecipes(Which::Any);
  *listed = ids.size();
  for (const QUuid& id : ids)
  {
    const Recipe recipe = recipes.recipe(id, Which::Any);
    const QString dir = recipes.recipeFolder(recipe);
    if (id.isNull() || !QFileInfo(dir).isDir())
    {
      problems << QStringLiteral("no folder for ") + id.toString();
      continue;
    }
    Storage::SettingsDocument meta(dir + "/meta.xml", Storage::AutoSync::Off);
    QUuid metaId;
    if (meta.Load() && meta.Contains(QStringLiteral("Recipe")))
    {
      const auto node = meta.GetNode(QStringLiteral("Recipe"));
      if (node->Contains(QStringLiteral("Id")))
        Storage::DeserializeFrom(*node->GetNode(QStringLiteral("Id")), metaId);
    }
    if (metaId != id)
      problems << QStringLiteral("meta.xml of ") + dir + QStringLiteral(" does not name its recipe");
    for (const QString& context : kContexts)
      if (!loads(dir + "/" + context + "/data.xml"))
        problems << QStringLiteral("context data missing in ") + dir + "/" + context;
  }
  return problems;
}

} // namespace

// The child's work; skipped unless started by the test below.
TEST(RecipesKillTest, Child)
{
  const QString folder = qEnvironmentVariable(kFolderVariable);
  if (folder.isEmpty())
    GTEST_SKIP() << "runs only as the child of RecipesKillTest.KilledAtRandomMoments";
  RTE::recipeContextRegistry().clear();
  for (const QString& name : kContexts)
    RTE::recipeContextRegistry().add(std::make_unique<TestContext>(name, 0));
  QRandomGenerator random(qEnvironmentVariableIntValue(kSeedVariable));
  Recipes recipes(folder);
  std::fputs("ready\n", stdout);
  std::fflush(stdout);
  for (int step = 0;; ++step)
  {
    const QList<QUuid> active = recipes.allRecipes(Which::Active);
    Recipe recipe;
    recipe.id = QUuid::createUuid();
    recipe.label = QStringLiteral("Recipe %1").arg(step);
    if (random.bounded(2))
      recipe.folderName = QStringLiteral("Folder-") + recipe.id.toString(QUuid::WithoutBraces).left(13);
    recipes.save(recipe, {{QStringLiteral("Camera"), recipe.label, step}});
    if (active.isEmpty())
      continue;
    const QUuid other = active[random.bounded(active.size())];
    switch (random.bounded(6))
    {
    case 0:
    case 1:
      recipes.moveToArchive(other, recipe.id);
      break;
    case 2:
      recipes.moveToArchive(other, QUuid());
      break;
    case 3:
      recipes.remove(other);
      break;
    case 4:
      recipes.rename(QStringLiteral("Renamed-") + QUuid::createUuid().toString(QUuid::WithoutBraces).left(13), other);
      break;
    default:
    {
      Recipe request;
      request.label = QStringLiteral("Copy %1").arg(step);
      if (random.bounded(2))
        request.folderName = QStringLiteral("Copy-") + QUuid::createUuid().toString(QUuid::WithoutBraces).left(13);
      recipes.copy(request, other);
      break;
    }
    }
  }
}

TEST(RecipesKillTest, KilledAtRandomMoments)
{
  QTemporaryDir dir;
  ASSERT_TRUE(dir.isValid());
  QRandomGenerator random(17);
  constexpr int kRounds = 60;
  int kills = 0;
  qsizetype listed = 0;
  qsizetype mostListed = 0;
  for (int round = 0; round < kRounds; ++round)
  {
    QProcess child;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QString::fromLatin1(kFolderVariable), dir.path());
    environment.insert(QString::fromLatin1(kSeedVariable), QString::number(round));
    child.setProcessEnvironment(environment);
    child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--gtest_filter=RecipesKillTest.Child")});
    ASSERT_TRUE(child.waitForStarted());
    QByteArray output;
    while (!output.contains("ready") && child.waitForReadyRead(10000))
      output += child.readAllStandardOutput();
    ASSERT_TRUE(output.contains("ready"))
        << "the child did not start: " << output.constData() << child.readAllStandardError().constData();
    QThread::usleep(random.bounded(1000U, 60000U));
    child.kill(); // SIGKILL
    child.waitForFinished();
    ASSERT_EQ(child.exitStatus(), QProcess::CrashExit)
        << "the child stopped by itself: " << child.readAllStandardError().constData();
    ++kills;
    const QStringList problems = problemsIn(dir.path(), &listed);
    ASSERT_TRUE(problems.isEmpty()) << "after kill " << kills << ": " << problems.join("\n").toStdString();
    mostListed = std::max(mostListed, listed);
  }
  EXPECT_GE(kills, 50);
  // The child got real work done between the kills.
  EXPECT_GT(mostListed, 10);
  std::printf("[          ] %d kills, at most %lld recipes listed\n", kills, static_cast<long long>(mostListed));
}
