// `rte recipes`: the recipes of a folder, saved and activated through the tool's two
// demonstration contexts ("Camera" and "Laser").
//
//   rte recipes list --folder DIR [--all | --archived]
//   rte recipes save "Cold start" --folder DIR --select camera=fast --comment "12 bar"
//   rte recipes show "Cold start" --folder DIR
//   rte recipes activate "Cold start" --folder DIR [--context laser]
//   rte recipes archive "Cold start" --folder DIR [--successor "Warm start"]
//   rte recipes remove "Cold start" --folder DIR
//
// A recipe is named by its id (with or without braces) or by its label.
#include "Command.h"
#include "RecipesTool.h"

#include <Core/Common/Exceptions/Exception.h>
#include <Core/Common/Recipes/RecipeContextRegistry.h>
#include <Core/Common/Recipes/Recipes.h>

#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>

#include <optional>

namespace
{

using RTE::Recipe;
using RTE::Recipes;
using CheckResult = RTE::RecipeContext::CheckResult;
using Which = RTE::Recipes::WhichRecipe;

// The recipe named by text: an id, or the label of exactly one recipe (active ones
// first). Prints why not and gives nothing otherwise.
std::optional<Recipe> findRecipe(const Recipes& recipes, const QString& text)
{
  const QUuid id =
      QUuid::fromString(text.startsWith(QLatin1Char('{')) ? text : QLatin1Char('{') + text + QLatin1Char('}'));
  if (!id.isNull() && recipes.hasRecipe(id, Which::Any))
    return recipes.recipe(id, Which::Any);
  for (const Which which : {Which::Active, Which::Archived})
  {
    QList<Recipe> matches;
    for (const QUuid& each : recipes.allRecipes(which))
      if (recipes.recipe(each, which).label == text)
        matches.append(recipes.recipe(each, which));
    if (matches.size() == 1)
      return matches.first();
    if (matches.size() > 1)
    {
      rte::err() << "rte recipes: " << matches.size() << " recipes are labelled '" << text << "'; name one by id\n";
      return std::nullopt;
    }
  }
  rte::err() << "rte recipes: no recipe '" << text << "'\n";
  return std::nullopt;
}

QString describe(const Recipe& recipe)
{
  QString text = recipe.id.toString(QUuid::WithBraces) + QStringLiteral("  ") + recipe.label;
  if (recipe.archived)
    text += QStringLiteral("  [archived %1]").arg(recipe.archivedTime.toString(Qt::ISODate));
  return text;
}

void printMessages(const QStringList& messages)
{
  for (const QString& message : messages)
    rte::out() << "  " << message << "\n";
}

int list(const Recipes& recipes, const QCommandLineParser& parser)
{
  const Which which = parser.isSet(QStringLiteral("all"))        ? Which::Any
                      : parser.isSet(QStringLiteral("archived")) ? Which::Archived
                                                                 : Which::Active;
  const QList<QUuid> ids = recipes.allRecipes(which);
  for (const QUuid& id : ids)
    rte::out() << describe(recipes.recipe(id, Which::Any)) << "\n";
  rte::out() << ids.size() << " recipe(s) in " << recipes.recipesFolder() << "\n";
  return 0;
}

int show(const Recipes& recipes, const Recipe& recipe, const QCommandLineParser& parser)
{
  QTextStream& out = rte::out();
  out << "Id:        " << recipe.id.toString(QUuid::WithBraces) << "\n"
      << "Label:     " << recipe.label << "\n"
      << "Comment:   " << recipe.comment << "\n"
      << "Archived:  " << (recipe.archived ? recipe.archivedTime.toString(Qt::ISODate) : QStringLiteral("no")) << "\n"
      << "Successor: " << (recipe.successor.isNull() ? QString() : recipe.successor.toString(QUuid::WithBraces)) << "\n"
      << "Folder:    " << recipes.recipeFolder(recipe) << "\n"
      << recipes.contextSummary(recipe.id, parser.values(QStringLiteral("context")));
  return 0;
}

int save(Recipes& recipes, const QString& label, const QCommandLineParser& parser)
{
  Recipe recipe;
  recipe.id = QUuid::createUuid();
  recipe.label = label;
  recipe.comment = parser.value(QStringLiteral("comment"));
  recipe.folderName = parser.value(QStringLiteral("folder-name"));
  std::vector<Recipes::ContextSelection> selections;
  for (const QString& select : parser.values(QStringLiteral("select")))
  {
    const qsizetype equals = select.indexOf(QLatin1Char('='));
    if (equals <= 0)
    {
      rte::err() << "rte recipes: --select wants CONTEXT=PRESET, not '" << select << "'\n";
      return 2;
    }
    if (!RTE::recipeContextRegistry().contains(select.left(equals)))
    {
      rte::err() << "rte recipes: no context '" << select.left(equals) << "' ("
                 << RTE::recipeContextRegistry().entries().join(QStringLiteral(", ")) << ")\n";
      return 2;
    }
    selections.push_back({select.left(equals), select.mid(equals + 1), -1});
  }
  QStringList messages;
  const CheckResult check = recipes.checkSaveOk(recipe, selections, messages);
  printMessages(messages);
  if (check == CheckResult::Error)
  {
    rte::err() << "rte recipes: the contexts refuse the save\n";
    return 1;
  }
  recipes.prepareSave(recipe, selections);
  printMessages(recipes.save(recipe, selections));
  rte::out() << "saved " << describe(recipe) << "\n";
  return 0;
}

int activate(Recipes& recipes, const Recipe& recipe, const QCommandLineParser& parser)
{
  bool ok = true;
  const int flag = parser.value(QStringLiteral("flag")).toInt(&ok);
  if (!ok)
  {
    rte::err() << "rte recipes: --flag wants a number\n";
    return 2;
  }
  const QStringList names = parser.values(QStringLiteral("context"));
  QStringList messages;
  const CheckResult check = recipes.checkActivateOk(recipe.id, flag, names, messages);
  printMessages(messages);
  if (check == CheckResult::Error)
  {
    rte::err() << "rte recipes: the contexts refuse the activation\n";
    return 1;
  }
  recipes.prepareActivate(recipe.id, flag, names);
  recipes.activate(recipe.id, flag, names);
  rte::out() << "activated " << describe(recipe) << "\n";
  return 0;
}

int runRecipes(const QStringList& arguments)
{
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Lists, shows, saves, activates, archives and removes the recipes of a folder.\n"
                     "Contexts: Camera and Laser, with presets default, fast and precise."));
  parser.addHelpOption();
  parser.addPositionalArgument(QStringLiteral("ACTION"),
                               QStringLiteral("list, show, save, activate, archive or remove."));
  parser.addPositionalArgument(QStringLiteral("RECIPE"), QStringLiteral("Id or label (the new label for save)."),
                               QStringLiteral("[RECIPE]"));
  parser.addOptions({
      {QStringLiteral("folder"), QStringLiteral("The recipes folder (default: the user's)."), QStringLiteral("DIR")},
      {QStringLiteral("all"), QStringLiteral("list: active and archived recipes.")},
      {QStringLiteral("archived"), QStringLiteral("list: archived recipes only.")},
      {QStringLiteral("comment"), QStringLiteral("save: the comment."), QStringLiteral("TEXT")},
      {QStringLiteral("folder-name"), QStringLiteral("save: the folder name (default: the id)."),
       QStringLiteral("NAME")},
      {QStringLiteral("select"), QStringLiteral("save: a context's preset, repeatable."),
       QStringLiteral("CONTEXT=PRESET")},
      {QStringLiteral("context"), QStringLiteral("activate, show: only this context, repeatable."),
       QStringLiteral("NAME")},
      {QStringLiteral("flag"), QStringLiteral("activate: the context flag."), QStringLiteral("N"), QStringLiteral("0")},
      {QStringLiteral("successor"), QStringLiteral("archive: the recipe that replaces it."), QStringLiteral("RECIPE")},
  });
  if (const std::optional<int> stop = rte::parseCommandLine(parser, arguments))
    return *stop;
  const QStringList positional = parser.positionalArguments();
  static const QStringList actions{QStringLiteral("list"),     QStringLiteral("show"),    QStringLiteral("save"),
                                   QStringLiteral("activate"), QStringLiteral("archive"), QStringLiteral("remove")};
  const QString action = positional.value(0);
  if (!actions.contains(action) || positional.size() != (action == QLatin1String("list") ? 1 : 2))
  {
    rte::err() << "Usage: rte recipes list|show|save|activate|archive|remove [RECIPE] --folder DIR\n";
    return 2;
  }
  // Relative folders are taken from the working folder, as users of a shell expect.
  const QString folder = parser.value(QStringLiteral("folder"));

  rte::registerDemoRecipeContexts();
  try
  {
    Recipes recipes(folder.isEmpty() ? folder : QFileInfo(folder).absoluteFilePath());
    rte::showRecipeProgress(recipes, rte::out());
    if (action == QLatin1String("list"))
      return list(recipes, parser);
    if (action == QLatin1String("save"))
      return save(recipes, positional[1], parser);
    const std::optional<Recipe> recipe = findRecipe(recipes, positional[1]);
    if (!recipe)
      return 1;
    if (action == QLatin1String("show"))
      return show(recipes, *recipe, parser);
    if (action == QLatin1String("activate"))
      return activate(recipes, *recipe, parser);
    if (action == QLatin1String("archive"))
    {
      std::optional<Recipe> successor = Recipe{};
      if (parser.isSet(QStringLiteral("successor")))
        successor = findRecipe(recipes, parser.value(QStringLiteral("successor")));
      if (!successor)
        return 1;
      recipes.moveToArchive(recipe->id, successor->id);
      rte::out() << "archived " << describe(recipes.recipe(recipe->id, Which::Any)) << "\n";
      return 0;
    }
    if (recipe->archived)
    {
      rte::err() << "rte recipes: archived recipes are kept; only active ones can be removed\n";
      return 1;
    }
    recipes.remove(recipe->id);
    rte::out() << "removed " << describe(*recipe) << "\n";
    return 0;
  }
  catch (const RTE::Exception& e)
  {
    rte::err() << "rte recipes: " << e.message() << "\n";
    return 1;
  }
}

const rte::CommandRegistration reg{
    {QStringLiteral("recipes"), QStringLiteral("List, save, activate and archive recipes"), &runRecipes}};

} // namespace
