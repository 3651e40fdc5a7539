// Recipes folders that were damaged or edited by hand: the store loads what it can and
// never throws from reload.
#include "RecipesTestHelpers.h"
#include "TestFiles.h"

#include <Core/Common/Storage/ValueSerialization.h>

#include <QDir>
#include <QFile>

#include <unistd.h>

using RTE::Recipe;
using RTE::Recipes;
using Which = RTE::Recipes::WhichRecipe;

using RecipesHostileTest = RecipesFixture;

TEST_F(RecipesHostileTest, TableOfContentsThatIsNoXml)
{
  addContext(QStringLiteral("A"), 0);
  Recipe valid = newRecipe(QStringLiteral("valid"));
  QByteArray validToc;
  {
    Recipes recipes(folder());
    recipes.save(valid, {});
    QFile toc(folder() + "/toc.xml");
    ASSERT_TRUE(toc.open(QIODevice::ReadOnly));
    validToc = toc.readAll();
  }
  for (const QByteArray& bad : {QByteArray(), QByteArray("not xml <<<"), QByteArray("\0\xff\xfe garbage", 12),
                                validToc.left(validToc.size() / 2), QByteArray("<other><Recipes/></other>")})
  {
    ASSERT_TRUE(writeFile(folder() + "/toc.xml", bad));
    std::unique_ptr<Recipes> recipes;
    ASSERT_NO_THROW(recipes = std::make_unique<Recipes>(folder()));
    EXPECT_TRUE(recipes->allRecipes(Which::Any).isEmpty());
  }
  // A table of contents that is a folder reads as none.
  ASSERT_TRUE(QFile::remove(folder() + "/toc.xml"));
  ASSERT_TRUE(QDir().mkdir(folder() + "/toc.xml"));
  EXPECT_TRUE(Recipes(folder()).allRecipes(Which::Any).isEmpty());
}

TEST_F(RecipesHostileTest, ItemsWithMissingKeysOrDuplicateIds)
{
  addContext(QStringLiteral("A"), 0);
  Recipes recipes(folder());
  const Recipe first = newRecipe(QStringLiteral("first"));
  const Recipe second = newRecipe(QStringLiteral("second"), QStringLiteral("Second"));
  recipes.save(first, {});
  recipes.save(second, {});
  recipes.moveToArchive(first.id, second.id);
  const Recipe archived = recipes.recipe(first.id, Which::Any);
  {
    Storage::SettingsDocument toc(folder() + "/toc.xml", Storage::AutoSync::Off);
    ASSERT_TRUE(toc.Load());
    toc.AppendCollectionNode(QStringLiteral("Recipes"))->Set(QStringLiteral("Label"), QStringLiteral("label only"));
    const auto duplicate = toc.AppendCollectionNode(QStringLiteral("Recipes"));
    Storage::SerializeTo(*duplicate->CreateNode(QStringLiteral("Id")), second.id);
    duplicate->Set(QStringLiteral("Label"), QStringLiteral("duplicate"));
    // Keys of the wrong kind: an id that is a collection, a time that is a text.
    const auto wrong = toc.AppendCollectionNode(QStringLiteral("Recipes"));
    wrong->AppendCollectionItem(QStringLiteral("Id"), 5);
    const auto badTime = toc.AppendCollectionNode(QStringLiteral("Recipes"));
    Storage::SerializeTo(*badTime->CreateNode(QStringLiteral("Id")), QUuid::createUuid());
    badTime->Set(QStringLiteral("ArchivedTime"), QStringLiteral("yesterday"));
    badTime->Set(QStringLiteral("Archived"), QStringLiteral("maybe"));
    ASSERT_TRUE(toc.Save());
  }

  Recipes reloaded(folder());
  const QList<QUuid> ids = reloaded.allRecipes(Which::Any);
  ASSERT_EQ(ids.size(), 6);
  EXPECT_EQ(reloaded.recipe(first.id, Which::Any), archived);
  EXPECT_EQ(reloaded.recipe(second.id, Which::Any), second); // the first of the two
  EXPECT_TRUE(ids[2].isNull());
  EXPECT_EQ(ids[3], second.id);
  EXPECT_TRUE(ids[4].isNull());
  ASSERT_FALSE(ids[5].isNull());
  const Recipe timeless = reloaded.recipe(ids[5], Which::Any);
  EXPECT_TRUE(timeless.archivedTime.isNull());
  EXPECT_TRUE(timeless.label.isEmpty());

  // Changing the valid recipes keeps every entry.
  Recipe changed = second;
  changed.comment = QStringLiteral("changed");
  reloaded.update(changed);
  Recipes again(folder());
  EXPECT_EQ(again.allRecipes(Which::Any), ids);
  EXPECT_EQ(again.recipe(second.id, Which::Any).comment, QStringLiteral("changed"));
  EXPECT_EQ(again.recipe(first.id, Which::Any), archived);
}

TEST_F(RecipesHostileTest, FoldersThatAreFilesEscapeOrAreLocked)
{
  TestContext* a = addContext(QStringLiteral("A"), 0);
  Recipes recipes(folder());
  const Recipe asFile = newRecipe(QStringLiteral("file"));
  const Recipe escaping = newRecipe(QStringLiteral("escaping"), QStringLiteral("Escaping"));
  const Recipe locked = newRecipe(QStringLiteral("locked"));
  const Recipe intact = newRecipe(QStringLiteral("intact"));
  for (const Recipe& recipe : {asFile, escaping, locked, intact})
    recipes.save(recipe, {{QStringLiteral("A"), recipe.label, 0}});

  // The folder of one recipe becomes a file; another points outside the recipes folder.
  const QString fileFolder = recipes.recipeFolder(asFile);
  ASSERT_TRUE(QDir(fileFolder).removeRecursively());
  ASSERT_TRUE(writeFile(fileFolder, "not a folder"));
  const QString outside = folder() + "/../" + QFileInfo(folder()).fileName() + "-outside";
  ASSERT_TRUE(QDir().mkpath(outside + "/A"));
  {
    Storage::SettingsDocument toc(folder() + "/toc.xml", Storage::AutoSync::Off);
    ASSERT_TRUE(toc.Load());
    std::const_pointer_cast<Storage::Settings>(toc.GetCollectionNode(QStringLiteral("Recipes"), 1))
        ->Set(QStringLiteral("FolderName"), "../" + QFileInfo(outside).fileName());
    ASSERT_TRUE(toc.Save());
  }
  const QString lockedContext = recipes.recipeFolder(locked) + "/A";
  ASSERT_TRUE(QFile::setPermissions(lockedContext, QFileDevice::Permissions()));

  std::unique_ptr<Recipes> reloaded;
  ASSERT_NO_THROW(reloaded = std::make_unique<Recipes>(folder()));
  EXPECT_EQ(reloaded->allRecipes(Which::Any), (QList<QUuid>{asFile.id, escaping.id, locked.id, intact.id}));

  // Neither folder has context data to activate.
  m_log.take();
  reloaded->activate(asFile.id, 0, {});
  reloaded->activate(escaping.id, 0, {});
  EXPECT_TRUE(m_log.take().isEmpty());
  EXPECT_EQ(thrownMessage([&] { reloaded->save(reloaded->recipe(escaping.id, Which::Any), {}); }),
            "Bad Recipes::save(): Invalid recipe");
  reloaded->remove(escaping.id);
  EXPECT_TRUE(QFileInfo(outside + "/A").isDir());
  QDir(outside).removeRecursively();
  reloaded->remove(asFile.id);

  // The locked context folder: the context is still asked; whatever it manages, a failed
  // save leaves the entry as it was.
  reloaded->activate(locked.id, 0, {});
  EXPECT_EQ(m_log.take().value(0), QStringLiteral("activate A A 0"));
  Recipe relabelled = locked;
  relabelled.label = QStringLiteral("relabelled");
  const QString failure = thrownMessage([&] { reloaded->save(relabelled, {}); });
  EXPECT_EQ(reloaded->recipe(locked.id, Which::Any).label,
            failure.isEmpty() ? QStringLiteral("relabelled") : QStringLiteral("locked"));
  if (geteuid() != 0)
  {
    EXPECT_EQ(failure, QStringLiteral("cannot write"));
  }
  QFile::setPermissions(lockedContext, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);

  Recipes last(folder());
  EXPECT_EQ(last.allRecipes(Which::Any), (QList<QUuid>{locked.id, intact.id}));
  a->activated.clear();
  last.activate(intact.id, 0, {});
  EXPECT_EQ(a->activated, QStringLiteral("intact"));

  // A link back to the recipe's own folder is not followed by copy.
  ASSERT_TRUE(QFile::link(last.recipeFolder(intact), last.recipeFolder(intact) + "/loop"));
  Recipe request = newRecipe(QStringLiteral("copy"), QStringLiteral("Copy"));
  last.copy(request, intact.id);
  EXPECT_EQ(TestContext::read(folder() + "/Copy/A"), QStringLiteral("intact"));
}
