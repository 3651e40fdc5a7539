#include "RecipesTestHelpers.h"

#include <QDateTime>
#include <QDir>
#include <QFile>

#include <functional>

using RTE::Recipe;
using RTE::RecipeContext;
using RTE::Recipes;
using CheckResult = RTE::RecipeContext::CheckResult;
using Which = RTE::Recipes::WhichRecipe;

namespace
{

QByteArray fileBytes(const QString& path)
{
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

Recipe metaOf(const QString& recipeFolder)
{
  Storage::SettingsDocument meta(recipeFolder + QStringLiteral("/meta.xml"), Storage::AutoSync::LoadOnly);
  Recipe recipe;
  if (!meta.Contains(QStringLiteral("Recipe")))
    return recipe;
  const auto node = meta.GetNode(QStringLiteral("Recipe"));
  Storage::DeserializeFrom(*node->GetNode(QStringLiteral("Id")), recipe.id);
  recipe.label = node->Get<QString>(QStringLiteral("Label"), QString());
  recipe.archived = node->Get<bool>(QStringLiteral("Archived"), false);
  return recipe;
}

} // namespace

using RecipesTest = RecipesFixture;

TEST_F(RecipesTest, FolderLayoutAndReloadKeepEveryKey)
{
  addContext(QStringLiteral("Camera"), 0);
  addContext(QStringLiteral("Laser"), 0);
  Recipes recipes(folder());
  EXPECT_TRUE(recipes.allRecipes(Which::Any).isEmpty());
  EXPECT_FALSE(QFileInfo::exists(folder() + "/toc.xml"));

  const Recipe byId = newRecipe(QStringLiteral("By id"));
  const Recipe named = newRecipe(QStringLiteral("Named"), QStringLiteral("Cylinder head"));
  recipes.save(byId, {});
  recipes.save(named, {{QStringLiteral("LASER"), QStringLiteral("fast"), 3}});
  recipes.moveToArchive(byId.id, named.id);

  const QString byIdFolder = folder() + "/" + byId.id.toString(QUuid::WithBraces);
  EXPECT_EQ(recipes.recipeFolder(byId), byIdFolder);
  EXPECT_TRUE(QFileInfo(byIdFolder + "/Camera/data.xml").isFile());
  EXPECT_TRUE(QFileInfo(byIdFolder + "/Laser/data.xml").isFile());
  EXPECT_EQ(TestContext::read(folder() + "/Cylinder head/Laser"), QStringLiteral("fast"));
  EXPECT_EQ(TestContext::read(folder() + "/Cylinder head/Camera"), QString());
  EXPECT_EQ(metaOf(folder() + "/Cylinder head").id, named.id);
  EXPECT_TRUE(metaOf(byIdFolder).archived);

  // A second store reads exactly what the first holds, in the same order; the null
  // archive time and successor of the active recipe come back null.
  Recipes again(folder());
  ASSERT_EQ(again.allRecipes(Which::Any), (QList<QUuid>{byId.id, named.id}));
  EXPECT_EQ(again.allRecipes(Which::Active), QList<QUuid>{named.id});
  EXPECT_EQ(again.allRecipes(Which::Archived), QList<QUuid>{byId.id});
  EXPECT_EQ(again.recipe(named.id, Which::Any), named);
  EXPECT_TRUE(again.recipe(named.id, Which::Any).archivedTime.isNull());
  const Recipe archived = again.recipe(byId.id, Which::Archived);
  EXPECT_EQ(archived, recipes.recipe(byId.id, Which::Any));
  EXPECT_EQ(archived.successor, named.id);
  EXPECT_TRUE(archived.archivedTime.isValid());
  EXPECT_FALSE(again.hasRecipe(byId.id, Which::Active));
  EXPECT_TRUE(again.recipe(QUuid::createUuid(), Which::Any).id.isNull());

  EXPECT_EQ(thrownMessage([&] { again.setRecipesFolder(QStringLiteral("relative/recipes")); }),
            "Bad Recipes::setRecipesFolder(): Relative path");
  EXPECT_EQ(again.recipesFolder(), QDir::cleanPath(folder()));
  EXPECT_TRUE(Recipes::systemDefaultRecipesFolder().endsWith(QStringLiteral("/Recipes")));
}

TEST_F(RecipesTest, SavePhasesVisitEveryContextInRegistrationOrder)
{
  TestContext* a = addContext(QStringLiteral("A"), 1);
  TestContext* b = addContext(QStringLiteral("B"), 5);
  addContext(QStringLiteral("C"), 3);
  Recipes recipes(folder());
  m_log.watch(recipes);
  const Recipe recipe = newRecipe(QStringLiteral("r"));
  const std::vector<Recipes::ContextSelection> selections{{QStringLiteral("b"), QStringLiteral("sel"), 2}};

  QStringList messages;
  b->checkResult = CheckResult::Warning;
  EXPECT_EQ(recipes.checkSaveOk(recipe, selections, messages), CheckResult::Warning);
  EXPECT_EQ(m_log.take(), (QStringList{"checkSaveOk A  -1", "checkSaveOk B sel 2", "checkSaveOk C  -1"}));
  EXPECT_EQ(messages, (QStringList{"A checked", "B checked", "C checked"}));

  // Error stops the check; a later Ok does not lower it.
  a->checkResult = CheckResult::Error;
  messages.clear();
  EXPECT_EQ(recipes.checkSaveOk(recipe, selections, messages), CheckResult::Error);
  EXPECT_EQ(m_log.take(), QStringList{"checkSaveOk A  -1"});
  EXPECT_EQ(messages, QStringList{"A checked"});

  a->warnings = QStringList{"w1", "w2"};
  recipes.prepareSave(recipe, selections);
  EXPECT_EQ(m_log.take(), (QStringList{"prepareSave A  -1", "prepareProgess(3,1,A)", "prepareWarning(A,w1)",
                                       "prepareWarning(A,w2)", "prepareSave B sel 2", "prepareProgess(3,2,B)",
                                       "prepareSave C  -1", "prepareProgess(3,3,C)"}));

  const QString dir = recipe.id.toString(QUuid::WithBraces);
  EXPECT_EQ(recipes.save(recipe, selections), (QStringList{"w1", "w2"}));
  EXPECT_EQ(m_log.take(),
            (QStringList{"save A " + dir + "/A  -1", "save B " + dir + "/B sel 2", "save C " + dir + "/C  -1"}));

  // Only the named contexts, into the folder given.
  const QString other = folder() + "/elsewhere";
  EXPECT_EQ(recipes.saveSelectedContexts(other, {{QStringLiteral("c"), QStringLiteral("x"), 0}}), QStringList{});
  EXPECT_EQ(m_log.take(), QStringList{"save C elsewhere/C x 0"});
  EXPECT_EQ(QDir(other).entryList(QDir::Dirs | QDir::NoDotAndDotDot), QStringList{"C"});
}

TEST_F(RecipesTest, ActivationRunsContextsWithDataHighestOrderFirst)
{
  TestContext* a = addContext(QStringLiteral("A"), 1);
  TestContext* b = addContext(QStringLiteral("B"), 5);
  TestContext* c = addContext(QStringLiteral("C"), 3);
  Recipes recipes(folder());
  m_log.watch(recipes);
  const Recipe recipe = newRecipe(QStringLiteral("r"));
  recipes.save(recipe, {{QStringLiteral("A"), QStringLiteral("alpha"), 0}});
  m_log.take();
  const QString dir = recipes.recipeFolder(recipe);
  // C has no data in the recipe; A's folder was written on a system that ignores case.
  ASSERT_TRUE(QDir(dir + "/C").removeRecursively());
  ASSERT_TRUE(QDir().rename(dir + "/A", dir + "/a"));

  QStringList messages;
  EXPECT_EQ(recipes.checkActivateOk(recipe.id, 7, {}, messages), CheckResult::Ok);
  EXPECT_EQ(m_log.take(), (QStringList{"checkActivateOk B B 7", "checkActivateOk A a 7"}));
  b->checkResult = CheckResult::Error;
  EXPECT_EQ(recipes.checkActivateOk(recipe.id, 7, {}, messages), CheckResult::Error);
  EXPECT_EQ(m_log.take(), QStringList{"checkActivateOk B B 7"});

  b->warnings = QStringList{"careful"};
  recipes.prepareActivate(recipe.id, 7, {});
  EXPECT_EQ(m_log.take(),
            (QStringList{"prepareActivate B B 7", "prepareProgess(2,1,B context)", "prepareWarning(B,careful)",
                         "prepareActivate A a 7", "prepareProgess(2,2,A context)"}));
  recipes.activate(recipe.id, 7, {});
  EXPECT_EQ(m_log.take(), (QStringList{"activate B B 7", "activationProgess(2,1,B)", "activationWarning(B,careful)",
                                       "activate A a 7", "activationProgess(2,2,A)"}));
  EXPECT_EQ(a->activated, QStringLiteral("alpha"));
  EXPECT_TRUE(c->activated.isEmpty());

  // Names match without regard to case; names without data select nothing.
  recipes.activate(recipe.id, 0, {QStringLiteral("a"), QStringLiteral("c")});
  EXPECT_EQ(m_log.take(), (QStringList{"activate A a 0", "activationProgess(1,1,A)"}));
  recipes.activate(recipe.id, 0, {QStringLiteral("C")});
  EXPECT_TRUE(m_log.take().isEmpty());

  EXPECT_EQ(recipes.contextSummary(recipe.id, {}), QStringLiteral("A:alpha\nB:\nC:<none>\n"));
  EXPECT_EQ(recipes.contextSummary(recipe.id, {QStringLiteral("b")}), QStringLiteral("B:\n"));

  // Archived recipes still activate.
  recipes.moveToArchive(recipe.id, QUuid());
  recipes.activate(recipe.id, 1, {QStringLiteral("A")});
  EXPECT_EQ(m_log.take(), (QStringList{"activate A a 1", "activationProgess(1,1,A)"}));
}

TEST_F(RecipesTest, LookUpFailuresNameTheOperation)
{
  addContext(QStringLiteral("A"), 0);
  Recipes recipes(folder());
  const QUuid unknown = QUuid::createUuid();
  QStringList messages;
  const QList<std::pair<QString, std::function<void(const QUuid&)>>> operations{
      {"checkActivateOk", [&](const QUuid& id) { recipes.checkActivateOk(id, 0, {}, messages); }},
      {"prepareActivate", [&](const QUuid& id) { recipes.prepareActivate(id, 0, {}); }},
      {"activate", [&](const QUuid& id) { recipes.activate(id, 0, {}); }},
      {"contextSummary", [&](const QUuid& id) { recipes.contextSummary(id, {}); }}};
  for (const auto& [name, call] : operations)
  {
    EXPECT_EQ(thrownMessage([&] { call(QUuid()); }), "Bad Recipes::" + name + "(): Invalid recipe ID");
    EXPECT_EQ(thrownMessage([&] { call(unknown); }), "Bad Recipes::" + name + "(): Recipe does not exist");
  }
  EXPECT_TRUE(m_log.events.isEmpty());

  const Recipe invalid;
  EXPECT_EQ(thrownMessage([&] { recipes.checkSaveOk(invalid, {}, messages); }),
            "Bad Recipes::checkSaveOk(): Invalid recipe");
  EXPECT_EQ(thrownMessage([&] { recipes.prepareSave(invalid, {}); }), "Bad Recipes::prepareSave(): Invalid recipe");
  EXPECT_EQ(thrownMessage([&] { recipes.save(invalid, {}); }), "Bad Recipes::save(): Invalid recipe");
  EXPECT_EQ(thrownMessage([&] { recipes.update(invalid); }), "Bad Recipes::update(): Invalid recipe");
  EXPECT_EQ(thrownMessage([&] { recipes.update(newRecipe("new")); }), "Bad Recipes::update(): Recipe does not exist");
  EXPECT_EQ(thrownMessage([&] { recipes.copy(newRecipe("c"), QUuid()); }), "Bad Recipes::copy(): Invalid source ID");
  EXPECT_EQ(thrownMessage([&] { recipes.copy(newRecipe("c"), unknown); }),
            "Bad Recipes::copy(): Source does not exist");
  EXPECT_EQ(thrownMessage([&] { recipes.moveToArchive(QUuid(), QUuid()); }), "Invalid recipe ID");
  EXPECT_EQ(thrownMessage([&] { recipes.moveToArchive(unknown, QUuid()); }),
            "Recipe does not exist or is already archived");
  EXPECT_TRUE(m_log.events.isEmpty());
  EXPECT_FALSE(QFileInfo::exists(folder() + "/toc.xml"));
}

TEST_F(RecipesTest, FailedSavesChangeNothing)
{
  TestContext* a = addContext(QStringLiteral("A"), 0);
  addContext(QStringLiteral("B"), 0);
  Recipes recipes(folder());
  Recipe kept = newRecipe(QStringLiteral("kept"));
  recipes.save(kept, {});
  recipes.moveToArchive(kept.id, QUuid());
  const QByteArray toc = fileBytes(folder() + "/toc.xml");
  m_log.take();

  // Archived recipes cannot be saved, prepared or checked.
  Recipe archived = recipes.recipe(kept.id, Which::Any);
  const QString archivedText = "Bad Recipes::checkSaveOk(): Recipe is archived and can't be changed";
  QStringList messages;
  EXPECT_EQ(thrownMessage([&] { recipes.checkSaveOk(archived, {}, messages); }), archivedText);
  EXPECT_EQ(thrownMessage([&] { recipes.prepareSave(archived, {}); }), archivedText);
  EXPECT_EQ(thrownMessage([&] { recipes.save(archived, {}); }), archivedText);
  EXPECT_EQ(thrownMessage([&] { recipes.update(archived); }), archivedText);
  archived.archived = false;
  EXPECT_EQ(thrownMessage([&] { recipes.save(archived, {}); }), archivedText);
  EXPECT_TRUE(m_log.events.isEmpty());

  // A context that fails leaves list and table of contents as they were.
  a->failSave = true;
  const Recipe failing = newRecipe(QStringLiteral("failing"));
  EXPECT_EQ(thrownMessage([&] { recipes.save(failing, {}); }), "context failed");
  a->failSave = false;

  // A recipe folder that is a file: no context folder can be made.
  const Recipe blocked = newRecipe(QStringLiteral("blocked"), QStringLiteral("blocked"));
  QFile file(folder() + "/blocked");
  ASSERT_TRUE(file.open(QIODevice::WriteOnly));
  file.close();
  EXPECT_EQ(thrownMessage([&] { recipes.save(blocked, {}); }),
            "Can't create directory '" + folder() + "/blocked/A' for context 'A context'");

  // A table of contents that cannot be written: the list in memory stays.
  EXPECT_EQ(recipes.allRecipes(Which::Any), QList<QUuid>{kept.id});
  EXPECT_EQ(fileBytes(folder() + "/toc.xml"), toc);
  Recipe active = newRecipe(QStringLiteral("active"));
  recipes.save(active, {});
  ASSERT_TRUE(QFile::remove(folder() + "/toc.xml"));
  ASSERT_TRUE(QDir().mkdir(folder() + "/toc.xml"));
  Recipe changed = active;
  changed.label = QStringLiteral("changed");
  EXPECT_EQ(thrownMessage([&] { recipes.update(changed); }), "Can't write '" + folder() + "/toc.xml'");
  EXPECT_EQ(recipes.recipe(active.id, Which::Any).label, QStringLiteral("active"));
  EXPECT_EQ(thrownMessage([&] { recipes.remove(active.id); }), "Can't write '" + folder() + "/toc.xml'");
  EXPECT_TRUE(recipes.hasRecipe(active.id, Which::Active));
  EXPECT_TRUE(QFileInfo(recipes.recipeFolder(active)).isDir());
}

TEST_F(RecipesTest, UpdateCopyRenameArchiveRemove)
{
  addContext(QStringLiteral("A"), 0);
  Recipes recipes(folder());
  Recipe first = newRecipe(QStringLiteral("first"));
  recipes.save(first, {{QStringLiteral("A"), QStringLiteral("one"), 1}});
  Recipe second = newRecipe(QStringLiteral("second"), QStringLiteral("Second"));
  recipes.save(second, {});

  first.comment = QStringLiteral("updated");
  recipes.update(first);
  EXPECT_EQ(Recipes(folder()).recipe(first.id, Which::Active).comment, QStringLiteral("updated"));

  // copy: fresh id, the given texts and the source's content.
  Recipe request = newRecipe(QStringLiteral("copied"), QStringLiteral("Copy"));
  request.archived = true;
  request.successor = second.id;
  const QUuid copyId = recipes.copy(request, first.id);
  EXPECT_NE(copyId, request.id);
  const Recipe copied = recipes.recipe(copyId, Which::Active);
  EXPECT_EQ(copied.label, QStringLiteral("copied"));
  EXPECT_EQ(copied.folderName, QStringLiteral("Copy"));
  EXPECT_FALSE(copied.archived);
  EXPECT_TRUE(copied.successor.isNull());
  EXPECT_EQ(TestContext::read(folder() + "/Copy/A"), QStringLiteral("one"));
  EXPECT_EQ(metaOf(folder() + "/Copy").id, copyId);
  EXPECT_EQ(recipes.allRecipes(Which::Any), (QList<QUuid>{first.id, second.id, copyId}));
  // The destination already holds a file of the same name.
  EXPECT_TRUE(thrownMessage([&] { recipes.copy(newRecipe("again", "Copy"), first.id); })
                  .startsWith("Can't copy file '" + recipes.recipeFolder(first) + "/"));
  EXPECT_EQ(recipes.allRecipes(Which::Any).size(), 3);

  // rename: the folder follows the name; meta.xml keeps the old label.
  recipes.rename(QStringLiteral("Renamed"), first.id);
  EXPECT_FALSE(QFileInfo::exists(folder() + "/" + first.id.toString(QUuid::WithBraces)));
  EXPECT_EQ(TestContext::read(folder() + "/Renamed/A"), QStringLiteral("one"));
  EXPECT_EQ(metaOf(folder() + "/Renamed").label, QStringLiteral("first"));
  const Recipe renamed = Recipes(folder()).recipe(first.id, Which::Any);
  EXPECT_EQ(renamed.label, QStringLiteral("Renamed"));
  EXPECT_EQ(renamed.folderName, QStringLiteral("Renamed"));
  // An existing target, even empty, and a name that is no folder name are refused.
  ASSERT_TRUE(QDir().mkdir(folder() + "/Empty"));
  for (const QString& bad :
       {QStringLiteral("Empty"), QStringLiteral("Second"), QStringLiteral("a/b"), QStringLiteral(".."), QString()})
    EXPECT_EQ(thrownMessage([&] { recipes.rename(bad, first.id); }),
              "Bad Recipes::rename(): Failed to rename directory")
        << bad.toStdString();
  EXPECT_EQ(recipes.recipe(first.id, Which::Any).folderName, QStringLiteral("Renamed"));
  recipes.rename(QStringLiteral("X"), QUuid::createUuid());
  EXPECT_FALSE(QFileInfo::exists(folder() + "/X"));

  // moveToArchive: successor must be active; the folder stays.
  EXPECT_EQ(thrownMessage([&] { recipes.moveToArchive(first.id, QUuid::createUuid()); }),
            "Recipe successor does not exist or is archived");
  const QDateTime before = QDateTime::currentDateTimeUtc().addMSecs(-1);
  recipes.moveToArchive(second.id, copyId);
  const Recipe archived = Recipes(folder()).recipe(second.id, Which::Archived);
  EXPECT_GE(archived.archivedTime, before);
  EXPECT_LE(archived.archivedTime, QDateTime::currentDateTimeUtc());
  EXPECT_EQ(archived.successor, copyId);
  EXPECT_TRUE(metaOf(folder() + "/Second").archived);
  EXPECT_EQ(thrownMessage([&] { recipes.moveToArchive(second.id, QUuid()); }),
            "Recipe does not exist or is already archived");
  EXPECT_EQ(thrownMessage([&] { recipes.moveToArchive(first.id, second.id); }),
            "Recipe successor does not exist or is archived");
  EXPECT_EQ(thrownMessage([&] { recipes.copy(newRecipe("c"), second.id); }), "Recipe does not exist.");

  // Archived recipes are neither renamed nor removed.
  recipes.rename(QStringLiteral("Other"), second.id);
  recipes.remove(second.id);
  EXPECT_TRUE(QFileInfo(folder() + "/Second").isDir());
  EXPECT_TRUE(recipes.hasRecipe(second.id, Which::Archived));

  recipes.remove(first.id);
  EXPECT_FALSE(QFileInfo::exists(folder() + "/Renamed"));
  EXPECT_EQ(Recipes(folder()).allRecipes(Which::Any), (QList<QUuid>{second.id, copyId}));
}

TEST_F(RecipesTest, SavingAgainReplacesTheEntry)
{
  addContext(QStringLiteral("A"), 0);
  Recipes recipes(folder());
  Recipe recipe = newRecipe(QStringLiteral("r"));
  const Recipe other = newRecipe(QStringLiteral("o"));
  recipes.save(recipe, {{QStringLiteral("A"), QStringLiteral("v1"), 0}});
  recipes.save(other, {});

  // Without a folder name the entry is replaced in place.
  recipe.comment = QStringLiteral("second");
  recipes.save(recipe, {{QStringLiteral("A"), QStringLiteral("v2"), 0}});
  EXPECT_EQ(recipes.allRecipes(Which::Any), (QList<QUuid>{recipe.id, other.id}));
  EXPECT_EQ(TestContext::read(recipes.recipeFolder(recipe) + "/A"), QStringLiteral("v2"));

  // With a folder name the old entry goes, with its folder, and the new one is appended.
  const QString oldFolder = recipes.recipeFolder(recipe);
  recipe.folderName = QStringLiteral("Named");
  recipes.save(recipe, {{QStringLiteral("A"), QStringLiteral("v3"), 0}});
  EXPECT_FALSE(QFileInfo::exists(oldFolder));
  EXPECT_EQ(recipes.allRecipes(Which::Any), (QList<QUuid>{other.id, recipe.id}));

  // Saved again into the same folder: the folder just written stays.
  recipes.save(recipe, {{QStringLiteral("A"), QStringLiteral("v4"), 0}});
  EXPECT_EQ(TestContext::read(folder() + "/Named/A"), QStringLiteral("v4"));
  EXPECT_EQ(metaOf(folder() + "/Named").id, recipe.id);
  EXPECT_EQ(Recipes(folder()).allRecipes(Which::Any), (QList<QUuid>{other.id, recipe.id}));
}
