// The recipes of one recipes folder: table of contents, metadata, saving and activating
// through the registered recipe contexts, archiving, copying, renaming and removal.
//
//   RTE::Recipes recipes(folder);                     // reads folder + "/toc.xml"
//   RTE::Recipe recipe{QUuid::createUuid(), "Cylinder head", "12 bar"};
//   QStringList messages;
//   if (recipes.checkSaveOk(recipe, {}, messages) != RTE::RecipeContext::CheckResult::Error)
//   {
//     recipes.prepareSave(recipe, {});
//     const QStringList warnings = recipes.save(recipe, {});
//   }
//   recipes.activate(recipe.id, 0, {});                // every context with data in it
//
// Layout below the folder R: R/toc.xml, and per recipe R/D/meta.xml and R/D/<context>/,
// D being the folder name or the id in braces. Failures are RTE::Exception; the list in
// memory changes only after every step that can fail has succeeded. "toc.xml" and
// "meta.xml" are replaced atomically, so a crash leaves the previous or the next state.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Recipes/Recipe.h>
#include <Core/Common/Recipes/RecipeContext.h>

#include <QList>
#include <QObject>
#include <QString>
#include <QStringList>
#include <QUuid>

#include <vector>

namespace RTE
{

class CORECOMMON_EXPORT Recipes : public QObject
{
  Q_OBJECT

public:
  // The caller's choice for one context when saving.
  struct ContextSelection
  {
    QString contextName; // matched without regard to case
    QString selectionText;
    int selectionIndex = -1; // -1: nothing selected
  };

  enum class WhichRecipe
  {
    Active = 0,
    Archived = 1,
    Any = 2
  };

  // Calls setRecipesFolder(folder).
  explicit Recipes(const QString& folder = QString(), QObject* parent = nullptr);
  ~Recipes() override;

  // Empty: systemDefaultRecipesFolder(). Throws RTE::Exception for a relative path.
  // Reloads.
  void setRecipesFolder(const QString& folder);
  QString recipesFolder() const;
  // The user settings folder + "Recipes".
  static QString systemDefaultRecipesFolder();

  // Reads "toc.xml" again. Never throws for bad content: an unreadable item gives a
  // default recipe, a missing file an empty list.
  void reload();

  QList<QUuid> allRecipes(WhichRecipe which) const;
  bool hasRecipe(const QUuid& id, WhichRecipe which) const;
  // A copy; a default recipe (null id) when none matches.
  Recipe recipe(const QUuid& id, WhichRecipe which) const;
  // The absolute folder of the recipe: folderName, or the id in braces, below the
  // recipes folder.
  QString recipeFolder(const Recipe& recipe) const;

  // Activation phases over the contexts named in names (all when empty) that have a
  // subfolder in the recipe, highest activation order first.
  RecipeContext::CheckResult checkActivateOk(const QUuid& id, int contextFlag, const QStringList& names,
                                             QStringList& messages);
  void prepareActivate(const QUuid& id, int contextFlag, const QStringList& names);
  void activate(const QUuid& id, int contextFlag, const QStringList& names);

  // Save phases over every registered context, in registration order.
  RecipeContext::CheckResult checkSaveOk(const Recipe& recipe, const std::vector<ContextSelection>& selections,
                                         QStringList& messages);
  void prepareSave(const Recipe& recipe, const std::vector<ContextSelection>& selections);
  // Returns the contexts' warnings.
  QStringList save(const Recipe& recipe, const std::vector<ContextSelection>& selections);
  // Only the contexts named in selections, into recipeFolder; returns their warnings.
  QStringList saveSelectedContexts(const QString& recipeFolder, const std::vector<ContextSelection>& selections);

  // Rewrites the metadata of an existing active recipe; no context is asked.
  void update(const Recipe& recipe);
  // A new active recipe with label, comment and folderName of recipe and the folder
  // content of the source; returns its id.
  QUuid copy(const Recipe& recipe, const QUuid& sourceId);
  // Renames the folder of an active recipe to newName; label and folderName follow.
  // Unknown and archived ids are ignored; an existing target folder is refused.
  void rename(const QString& newName, const QUuid& id);
  void moveToArchive(const QUuid& id, const QUuid& successorId);
  // Deletes an active recipe with its folder; unknown and archived ids are ignored.
  void remove(const QUuid& id);
  // Each context's summary followed by "\n".
  QString contextSummary(const QUuid& id, const QStringList& names) const;

signals:
  void activationProgess(unsigned count, unsigned index, const QString& contextName);
  void activationWarning(const QString& contextName, const QString& warning);
  void prepareProgess(unsigned count, unsigned index, const QString& contextName);
  void prepareWarning(const QString& contextName, const QString& warning);

private:
  struct Selected
  {
    RecipeContext* context;
    QString folder;
  };

  const Recipe* find(const QUuid& id, WhichRecipe which) const;
  const Recipe& existing(const QUuid& id, const char* operation) const;
  std::vector<Selected> selectForActivation(const Recipe& recipe, const QStringList& names) const;
  void writeMeta(const Recipe& recipe) const;
  void writeToc(const QList<Recipe>& list) const;
  void repairMovedFolders();

  QString m_folder;
  QList<Recipe> m_recipes;
};

} // namespace RTE
