// Demo step: a recipe store in a scratch folder, driven through the two demonstration
// contexts of the tool.
#include "Command.h"
#include "RecipesTool.h"

#include <Core/Common/Exceptions/Exception.h>
#include <Core/Common/Recipes/Recipes.h>

#include <QDir>
#include <QTemporaryDir>

namespace
{

using RTE::Recipe;
using RTE::Recipes;
using Which = RTE::Recipes::WhichRecipe;

Recipe makeRecipe(const QString& label, const QString& folderName)
{
  Recipe recipe;
  recipe.id = QUuid::createUuid();
  recipe.label = label;
  recipe.folderName = folderName;
  return recipe;
}

void listFolder(QTextStream& out, const QString& root)
{
  QDir dir(root);
  for (const QString& name : dir.entryList(QDir::AllEntries | QDir::NoDotAndDotDot, QDir::Name | QDir::DirsFirst))
  {
    out << "  " << name;
    if (QFileInfo(dir.filePath(name)).isDir())
      out << "/  "
          << QDir(dir.filePath(name)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).join(QStringLiteral(" "));
    out << "\n";
  }
}

void demoRecipes(QTextStream& out)
{
  QTemporaryDir scratch;
  if (!scratch.isValid())
  {
    out << "No scratch folder: " << scratch.errorString() << "\n";
    return;
  }
  rte::registerDemoRecipeContexts();
  Recipes recipes(scratch.path());
  rte::showRecipeProgress(recipes, out);

  out << "Saving \"Cold start\" (camera preset fast, laser default): every context checks, prepares and writes "
         "its subfolder:\n";
  const Recipe cold = makeRecipe(QStringLiteral("Cold start"), QStringLiteral("Cold start"));
  const std::vector<Recipes::ContextSelection> fast{{QStringLiteral("camera"), QStringLiteral("fast"), -1}};
  QStringList messages;
  recipes.checkSaveOk(cold, fast, messages);
  recipes.prepareSave(cold, fast);
  recipes.save(cold, fast);
  out << "Saving \"Warm start\" (both precise, no folder name):\n";
  const Recipe warm = makeRecipe(QStringLiteral("Warm start"), QString());
  const std::vector<Recipes::ContextSelection> precise{{QStringLiteral("Laser"), QStringLiteral("precise"), -1},
                                                       {QStringLiteral("Camera"), QStringLiteral("precise"), -1}};
  recipes.prepareSave(warm, precise);
  recipes.save(warm, precise);
  out << "\nThe folder now holds (a recipe without folder name lives under its id):\n";
  listFolder(out, scratch.path());

  out << "\nA preset the camera does not know is refused by the save check:\n";
  messages.clear();
  const auto check = recipes.checkSaveOk(makeRecipe(QStringLiteral("Bad"), QString()),
                                         {{QStringLiteral("Camera"), QStringLiteral("turbo"), -1}}, messages);
  out << "  result " << static_cast<int>(check) << " (2 = Error): " << messages.join(QStringLiteral("; ")) << "\n";

  out << "\nActivating \"Cold start\": the camera (order 10) before the laser (order 5):\n";
  recipes.prepareActivate(cold.id, 0, {});
  recipes.activate(cold.id, 0, {});
  out << recipes.contextSummary(cold.id, {});

  out << "\nArchiving \"Cold start\" with \"Warm start\" as its successor, then trying to save it again:\n";
  recipes.moveToArchive(cold.id, warm.id);
  const Recipe archived = recipes.recipe(cold.id, Which::Any);
  out << "  archived " << archived.archivedTime.toString(Qt::ISODate) << ", successor "
      << archived.successor.toString(QUuid::WithBraces) << "\n";
  try
  {
    recipes.save(archived, {});
  }
  catch (const RTE::Exception& e)
  {
    out << "  " << e.message() << "\n";
  }

  out << "\nCopying \"Warm start\" as \"Warm copy\", renaming it, and reloading from disk:\n";
  const QUuid copyId = recipes.copy(makeRecipe(QStringLiteral("Warm copy"), QString()), warm.id);
  recipes.rename(QStringLiteral("Warm start 2"), copyId);
  Recipes reloaded(scratch.path());
  for (const QUuid& id : reloaded.allRecipes(Which::Any))
  {
    const Recipe recipe = reloaded.recipe(id, Which::Any);
    out << "  " << recipe.label << (recipe.archived ? "  [archived]" : "") << "  in "
        << QFileInfo(reloaded.recipeFolder(recipe)).fileName() << "\n";
  }
  reloaded.remove(copyId);
  out << "After removing the copy: " << reloaded.allRecipes(Which::Any).size() << " recipes; archived ones stay.\n";
}

const rte::DemoStepRegistration step{{75, QStringLiteral("Recipes"), &demoRecipes}};

} // namespace
