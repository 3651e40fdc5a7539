#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/OperatingSystem/Locations.h>
#include <Core/Common/Recipes/RecipeContextRegistry.h>
#include <Core/Common/Recipes/Recipes.h>
#include <Core/Common/Recipes/RecipesLog_p.h>
#include <Core/Common/Storage/SettingsDocument.h>
#include <Core/Common/Storage/ValueSerialization.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>

#include <algorithm>

Q_LOGGING_CATEGORY(lcRecipes, "Core.Recipes")

namespace RTE
{

namespace
{

using Storage::Settings;

const QString kToc = QStringLiteral("toc.xml");
const QString kMeta = QStringLiteral("meta.xml");
const QString kCollection = QStringLiteral("Recipes");
const QString kRecipeNode = QStringLiteral("Recipe");
const QString kId = QStringLiteral("Id");
const QString kLabel = QStringLiteral("Label");
const QString kComment = QStringLiteral("Comment");
const QString kArchived = QStringLiteral("Archived");
const QString kArchivedTime = QStringLiteral("ArchivedTime");
const QString kSuccessor = QStringLiteral("Successor");
const QString kFolderName = QStringLiteral("FolderName");
const QString kMsSinceEpoch = QStringLiteral("msSinceEpoch");

QString archivedText()
{
  return QObject::tr("Bad Recipes::checkSaveOk(): Recipe is archived and can't be changed");
}

// A folder name that stays one level below the recipes folder.
bool isPlainFolderName(const QString& name)
{
  return RecipeContextRegistry::isValidContextName(name) && name != QLatin1String(".") && name != QLatin1String("..");
}

void writeKeys(Settings& node, const Recipe& recipe)
{
  Storage::SerializeTo(*node.CreateNode(kId), recipe.id);
  node.Set(kLabel, recipe.label);
  node.Set(kComment, recipe.comment);
  node.Set(kArchived, recipe.archived);
  // The value form of a date has no null: a null time is the bare node, and reads back
  // as null.
  const std::shared_ptr<Settings> time = node.CreateNode(kArchivedTime);
  if (recipe.archivedTime.isValid())
    Storage::SerializeTo(*time, recipe.archivedTime);
  else
  {
    time->SetClass(QStringLiteral("datetime"));
    time->SetVersion(1);
  }
  Storage::SerializeTo(*node.CreateNode(kSuccessor), recipe.successor);
  node.Set(kFolderName, recipe.folderName);
}

QUuid readUuid(const Settings& node, const QString& key)
{
  // A key of another kind (a leaf, a collection) is no id; asking for it as a node would
  // throw.
  QUuid id;
  if (node.GetClass(key) == QLatin1String("uuid"))
    Storage::DeserializeFrom(*node.GetNode(key), id);
  return id;
}

QDateTime readTime(const Settings& node, const QString& key)
{
  if (node.GetClass(key) != QLatin1String("datetime"))
    return {};
  const std::shared_ptr<Settings> child = node.GetNode(key);
  if (!child->Contains(kMsSinceEpoch))
    return {};
  QDateTime time;
  Storage::DeserializeFrom(*child, time);
  return time.isValid() ? time.toUTC() : time;
}

// Throws for content that is no recipe at all (a collection where a leaf belongs).
Recipe readKeys(const Settings& node)
{
  Recipe recipe;
  recipe.id = readUuid(node, kId);
  recipe.label = node.Get<QString>(kLabel, QString());
  recipe.comment = node.Get<QString>(kComment, QString());
  recipe.archived = node.Get<bool>(kArchived, false);
  recipe.archivedTime = readTime(node, kArchivedTime);
  recipe.successor = readUuid(node, kSuccessor);
  recipe.folderName = node.Get<QString>(kFolderName, QString());
  return recipe;
}

bool matches(const Recipe& recipe, Recipes::WhichRecipe which)
{
  switch (which)
  {
  case Recipes::WhichRecipe::Active:
    return !recipe.archived;
  case Recipes::WhichRecipe::Archived:
    return recipe.archived;
  case Recipes::WhichRecipe::Any:
    break;
  }
  return true;
}

// The subfolder of a context inside folder: the exact name if present, otherwise one
// that differs only in letter case (written on a case-insensitive file system); the
// exact path when there is neither.
QString contextFolder(const QString& folder, const QStringList& subfolders, const QString& name, bool* found)
{
  QString match;
  for (const QString& sub : subfolders)
  {
    if (sub == name)
    {
      match = sub;
      break;
    }
    if (match.isEmpty() && sub.compare(name, Qt::CaseInsensitive) == 0)
      match = sub;
  }
  if (found)
    *found = !match.isEmpty();
  return folder + QLatin1Char('/') + (match.isEmpty() ? name : match);
}

QStringList subfoldersOf(const QString& folder)
{
  return QDir(folder).entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden);
}

const Recipes::ContextSelection* selectionFor(const std::vector<Recipes::ContextSelection>& selections,
                                              const QString& name)
{
  for (const Recipes::ContextSelection& selection : selections)
    if (selection.contextName.compare(name, Qt::CaseInsensitive) == 0)
      return &selection;
  return nullptr;
}

// Plain files, then subfolders; the destination is created one level at a time.
void copyFolder(const QString& source, const QString& destination)
{
  if (!QFileInfo(destination).isDir() && !QDir().mkdir(destination))
    Raise(Exception(QObject::tr("Can't create destination directory")));
  const QDir sourceDir(source);
  for (const QString& name : sourceDir.entryList(QDir::Files | QDir::Hidden | QDir::System))
  {
    const QString from = source + QLatin1Char('/') + name;
    const QString to = destination + QLatin1Char('/') + name;
    QFile file(from);
    if (!file.copy(to))
      Raise(Exception(QObject::tr("Can't copy file '%1' to '%2': %3").arg(from, to, file.errorString())));
  }
  // Linked folders are not followed: a link to a parent would never end.
  for (const QString& name : sourceDir.entryList(QDir::Dirs | QDir::NoDotAndDotDot | QDir::Hidden | QDir::NoSymLinks))
    copyFolder(source + QLatin1Char('/') + name, destination + QLatin1Char('/') + name);
}

} // namespace

Recipes::Recipes(const QString& folder, QObject* parent) : QObject(parent)
{
  setRecipesFolder(folder);
}

Recipes::~Recipes() = default;

void Recipes::setRecipesFolder(const QString& folder)
{
  const QString chosen = folder.isEmpty() ? systemDefaultRecipesFolder() : folder;
  if (QDir::isRelativePath(chosen))
    Raise(Exception(tr("Bad Recipes::setRecipesFolder(): Relative path")));
  m_folder = QDir::cleanPath(chosen);
  reload();
}

QString Recipes::recipesFolder() const
{
  return m_folder;
}

QString Recipes::systemDefaultRecipesFolder()
{
  return QFileInfo(Locations::getUserSettingsPath() + QStringLiteral("Recipes")).absoluteFilePath();
}

void Recipes::reload()
{
  m_recipes.clear();
  const QString path = m_folder + QLatin1Char('/') + kToc;
  if (!QFileInfo(path).isFile())
    return;
  QList<Recipe> list;
  try
  {
    Storage::SettingsDocument toc(path, Storage::AutoSync::Off);
    if (!toc.Load())
      qCWarning(lcRecipes) << "Table of contents" << path << "cannot be read";
    const unsigned long long count = toc.IsCollection(kCollection) ? toc.Count(kCollection) : 0;
    list.reserve(static_cast<qsizetype>(count));
    for (unsigned long long index = 0; index < count; ++index)
    {
      try
      {
        list.append(readKeys(*toc.GetCollectionNode(kCollection, index)));
      }
      catch (const Exception&)
      {
        qCWarning(lcRecipes) << "Item" << index << "of" << path << "is no recipe";
        list.append(Recipe{});
      }
    }
  }
  catch (const Exception& e)
  {
    qCWarning(lcRecipes) << "Table of contents" << path << "cannot be read:" << e.message();
  }
  m_recipes = std::move(list);
  repairMovedFolders();
}

// A rename moves the folder before the table of contents names it. A process that dies
// in between leaves an entry whose folder is gone and a folder that nobody names; the
// folder's "meta.xml" tells whose it is.
void Recipes::repairMovedFolders()
{
  QHash<QUuid, qsizetype> missing;
  QSet<QString> claimed;
  for (qsizetype index = 0; index < m_recipes.size(); ++index)
  {
    const Recipe& recipe = m_recipes[index];
    const QString folder = recipeFolder(recipe);
    claimed.insert(QFileInfo(folder).fileName());
    if (!recipe.id.isNull() && !folder.isEmpty() && !QFileInfo(folder).isDir())
      missing.insert(recipe.id, index);
  }
  if (missing.isEmpty())
    return;
  for (const QString& name : subfoldersOf(m_folder))
  {
    if (claimed.contains(name))
      continue;
    const QString metaPath = m_folder + QLatin1Char('/') + name + QLatin1Char('/') + kMeta;
    if (!QFileInfo(metaPath).isFile())
      continue;
    try
    {
      Storage::SettingsDocument meta(metaPath, Storage::AutoSync::LoadOnly);
      if (!meta.Contains(kRecipeNode))
        continue;
      const QUuid id = readUuid(*meta.GetNode(kRecipeNode), kId);
      const auto it = missing.find(id);
      if (it == missing.end())
        continue;
      Recipe& recipe = m_recipes[it.value()];
      recipe.folderName = name == id.toString(QUuid::WithBraces) ? QString() : name;
      qCInfo(lcRecipes) << "Recipe" << id << "found in folder" << name;
      missing.erase(it);
    }
    catch (const Exception&)
    {
    }
  }
}

const Recipe* Recipes::find(const QUuid& id, WhichRecipe which) const
{
  for (const Recipe& recipe : m_recipes)
    if (recipe.id == id && matches(recipe, which))
      return &recipe;
  return nullptr;
}

const Recipe& Recipes::existing(const QUuid& id, const char* operation) const
{
  const QString name = QString::fromLatin1(operation);
  if (id.isNull())
    Raise(Exception(tr("Bad Recipes::%1(): Invalid recipe ID").arg(name)));
  const Recipe* recipe = find(id, WhichRecipe::Any);
  if (!recipe)
    Raise(Exception(tr("Bad Recipes::%1(): Recipe does not exist").arg(name)));
  return *recipe;
}

QList<QUuid> Recipes::allRecipes(WhichRecipe which) const
{
  QList<QUuid> ids;
  for (const Recipe& recipe : m_recipes)
    if (matches(recipe, which))
      ids.append(recipe.id);
  return ids;
}

bool Recipes::hasRecipe(const QUuid& id, WhichRecipe which) const
{
  return find(id, which) != nullptr;
}

Recipe Recipes::recipe(const QUuid& id, WhichRecipe which) const
{
  const Recipe* found = find(id, which);
  return found ? *found : Recipe{};
}

QString Recipes::recipeFolder(const Recipe& recipe) const
{
  const QString name = recipe.folderName.isEmpty() ? recipe.id.toString(QUuid::WithBraces) : recipe.folderName;
  // A name from a foreign table of contents must never reach outside the recipes folder.
  if (!isPlainFolderName(name))
    return {};
  return m_folder + QLatin1Char('/') + name;
}

std::vector<Recipes::Selected> Recipes::selectForActivation(const Recipe& recipe, const QStringList& names) const
{
  std::vector<Selected> selected;
  const QString folder = recipeFolder(recipe);
  if (folder.isEmpty())
    return selected;
  const QStringList subfolders = subfoldersOf(folder);
  for (const std::unique_ptr<RecipeContext>& context : recipeContextRegistry().contexts())
  {
    const QString name = context->name();
    if (!names.isEmpty() && !names.contains(name, Qt::CaseInsensitive))
      continue;
    bool found = false;
    const QString path = contextFolder(folder, subfolders, name, &found);
    if (found)
      selected.push_back({context.get(), path});
  }
  std::stable_sort(selected.begin(), selected.end(),
                   [](const Selected& a, const Selected& b)
                   { return a.context->activationOrder() > b.context->activationOrder(); });
  return selected;
}

RecipeContext::CheckResult Recipes::checkActivateOk(const QUuid& id, int contextFlag, const QStringList& names,
                                                    QStringList& messages)
{
  const Recipe& recipe = existing(id, "checkActivateOk");
  RecipeContext::CheckResult result = RecipeContext::CheckResult::Ok;
  for (const Selected& selected : selectForActivation(recipe, names))
  {
    result = std::max(result, selected.context->checkActivateOk(selected.folder, contextFlag, messages));
    if (result == RecipeContext::CheckResult::Error)
      break;
  }
  return result;
}

void Recipes::prepareActivate(const QUuid& id, int contextFlag, const QStringList& names)
{
  const std::vector<Selected> selection = selectForActivation(existing(id, "prepareActivate"), names);
  const auto count = static_cast<unsigned>(selection.size());
  unsigned index = 0;
  for (const Selected& selected : selection)
  {
    const QStringList warnings = selected.context->prepareActivate(selected.folder, contextFlag);
    emit prepareProgess(count, ++index, selected.context->displayName());
    const QString name = selected.context->name();
    for (const QString& warning : warnings)
      emit prepareWarning(name, warning);
  }
}

void Recipes::activate(const QUuid& id, int contextFlag, const QStringList& names)
{
  const std::vector<Selected> selection = selectForActivation(existing(id, "activate"), names);
  const auto count = static_cast<unsigned>(selection.size());
  unsigned index = 0;
  for (const Selected& selected : selection)
  {
    const QStringList warnings = selected.context->activate(selected.folder, contextFlag);
    const QString name = selected.context->name();
    emit activationProgess(count, ++index, name);
    for (const QString& warning : warnings)
      emit activationWarning(name, warning);
  }
}

RecipeContext::CheckResult Recipes::checkSaveOk(const Recipe& recipe, const std::vector<ContextSelection>& selections,
                                                QStringList& messages)
{
  if (recipe.id.isNull())
    Raise(Exception(tr("Bad Recipes::checkSaveOk(): Invalid recipe")));
  if (recipe.archived)
    Raise(Exception(archivedText()));
  RecipeContext::CheckResult result = RecipeContext::CheckResult::Ok;
  for (const std::unique_ptr<RecipeContext>& context : recipeContextRegistry().contexts())
  {
    const ContextSelection* selection = selectionFor(selections, context->name());
    result =
        std::max(result, selection ? context->checkSaveOk(selection->selectionText, selection->selectionIndex, messages)
                                   : context->checkSaveOk(QString(), -1, messages));
    if (result == RecipeContext::CheckResult::Error)
      break;
  }
  return result;
}

void Recipes::prepareSave(const Recipe& recipe, const std::vector<ContextSelection>& selections)
{
  if (recipe.id.isNull())
    Raise(Exception(tr("Bad Recipes::prepareSave(): Invalid recipe")));
  if (recipe.archived)
    Raise(Exception(archivedText()));
  const auto& contexts = recipeContextRegistry().contexts();
  const auto count = static_cast<unsigned>(contexts.size());
  unsigned index = 0;
  for (const std::unique_ptr<RecipeContext>& context : contexts)
  {
    const QString name = context->name();
    const ContextSelection* selection = selectionFor(selections, name);
    const QStringList warnings = selection ? context->prepareSave(selection->selectionText, selection->selectionIndex)
                                           : context->prepareSave(QString(), -1);
    emit prepareProgess(count, ++index, name);
    for (const QString& warning : warnings)
      emit prepareWarning(name, warning);
  }
}

QStringList Recipes::saveSelectedContexts(const QString& recipeFolder, const std::vector<ContextSelection>& selections)
{
  QStringList warnings;
  const QStringList subfolders = subfoldersOf(recipeFolder);
  for (const std::unique_ptr<RecipeContext>& context : recipeContextRegistry().contexts())
  {
    const QString name = context->name();
    const ContextSelection* selection = selectionFor(selections, name);
    if (!selection)
      continue;
    const QString folder = contextFolder(recipeFolder, subfolders, name, nullptr);
    // No retries: a folder that cannot be made now will not appear by waiting on Linux.
    if (!QDir().mkpath(folder))
      Raise(Exception(tr("Can't create directory '%1' for context '%2'").arg(folder, context->displayName())));
    warnings += context->save(folder, selection->selectionText, selection->selectionIndex);
  }
  return warnings;
}

QStringList Recipes::save(const Recipe& recipe, const std::vector<ContextSelection>& selections)
{
  if (recipe.id.isNull())
    Raise(Exception(tr("Bad Recipes::save(): Invalid recipe")));
  // A caller's copy that lost its archived flag must not overwrite the archived folder.
  if (recipe.archived || (find(recipe.id, WhichRecipe::Archived) && !find(recipe.id, WhichRecipe::Active)))
    Raise(Exception(archivedText()));
  const QString folder = recipeFolder(recipe);
  if (folder.isEmpty())
    Raise(Exception(tr("Bad Recipes::save(): Invalid recipe")));

  // Every context is handed a selection, the default one where the caller gave none.
  std::vector<ContextSelection> all;
  for (const std::unique_ptr<RecipeContext>& context : recipeContextRegistry().contexts())
  {
    const ContextSelection* selection = selectionFor(selections, context->name());
    all.push_back(selection ? *selection : ContextSelection{context->name(), QString(), -1});
  }
  const QStringList warnings = saveSelectedContexts(folder, all);

  QList<Recipe> list = m_recipes;
  // A recipe saved again under a folder name of its own replaces the old entry, whose
  // folder goes unless it is the one just written.
  QString obsoleteFolder;
  if (!recipe.folderName.isEmpty() && find(recipe.id, WhichRecipe::Any))
  {
    const auto old =
        std::find_if(list.begin(), list.end(), [&](const Recipe& r) { return r.id == recipe.id && !r.archived; });
    if (old != list.end())
    {
      const QString oldFolder = recipeFolder(*old);
      if (oldFolder != folder)
        obsoleteFolder = oldFolder;
      list.erase(old);
    }
  }
  writeMeta(recipe);
  const auto active =
      std::find_if(list.begin(), list.end(), [&](const Recipe& r) { return r.id == recipe.id && !r.archived; });
  if (active != list.end())
    *active = recipe;
  else
    list.append(recipe);
  writeToc(list);
  m_recipes = std::move(list);
  if (!obsoleteFolder.isEmpty())
    QDir(obsoleteFolder).removeRecursively();
  return warnings;
}

void Recipes::update(const Recipe& recipe)
{
  if (recipe.id.isNull())
    Raise(Exception(tr("Bad Recipes::update(): Invalid recipe")));
  if (recipe.archived)
    Raise(Exception(archivedText()));
  if (!find(recipe.id, WhichRecipe::Active))
    Raise(Exception(tr("Bad Recipes::update(): Recipe does not exist")));
  if (recipeFolder(recipe).isEmpty())
    Raise(Exception(tr("Bad Recipes::update(): Invalid recipe")));
  writeMeta(recipe);
  QList<Recipe> list = m_recipes;
  for (Recipe& entry : list)
    if (entry.id == recipe.id && !entry.archived)
    {
      entry = recipe;
      break;
    }
  writeToc(list);
  m_recipes = std::move(list);
}

QUuid Recipes::copy(const Recipe& recipe, const QUuid& sourceId)
{
  if (sourceId.isNull())
    Raise(Exception(tr("Bad Recipes::copy(): Invalid source ID")));
  const Recipe* source = find(sourceId, WhichRecipe::Any);
  if (!source)
    Raise(Exception(tr("Bad Recipes::copy(): Source does not exist")));
  if (source->archived)
    Raise(Exception(tr("Recipe does not exist.")));

  Recipe created;
  created.id = QUuid::createUuid();
  created.label = recipe.label;
  created.comment = recipe.comment;
  created.folderName = recipe.folderName;
  const QString sourceFolder = recipeFolder(*source);
  const QString destination = recipeFolder(created);
  if (destination.isEmpty())
    Raise(Exception(tr("Can't create destination directory")));
  const bool existed = QFileInfo(destination).isDir();
  try
  {
    if (!sourceFolder.isEmpty())
      copyFolder(sourceFolder, destination);
    writeMeta(created);
    QList<Recipe> list = m_recipes;
    list.append(created);
    writeToc(list);
    m_recipes = std::move(list);
  }
  catch (const Exception&)
  {
    // Nothing half-copied stays behind in a folder this call made.
    if (!existed)
      QDir(destination).removeRecursively();
    throw;
  }
  return created.id;
}

void Recipes::rename(const QString& newName, const QUuid& id)
{
  const auto it =
      std::find_if(m_recipes.cbegin(), m_recipes.cend(), [&](const Recipe& r) { return r.id == id && !r.archived; });
  if (id.isNull() || it == m_recipes.cend())
    return;
  const QString source = recipeFolder(*it);
  const QString target = m_folder + QLatin1Char('/') + newName;
  const QFileInfo targetInfo(target);
  // An existing target is refused even when empty: it may belong to another recipe.
  if (!isPlainFolderName(newName) || source.isEmpty() || targetInfo.exists() || targetInfo.isSymLink() ||
      !QDir().rename(source, target))
    Raise(Exception(tr("Bad Recipes::rename(): Failed to rename directory")));
  QList<Recipe> list = m_recipes;
  Recipe& renamed = list[it - m_recipes.cbegin()];
  renamed.label = newName;
  renamed.folderName = newName;
  try
  {
    writeToc(list);
  }
  catch (const Exception&)
  {
    QDir().rename(target, source);
    throw;
  }
  m_recipes = std::move(list);
}

void Recipes::moveToArchive(const QUuid& id, const QUuid& successorId)
{
  if (id.isNull())
    Raise(Exception(tr("Invalid recipe ID")));
  if (!find(id, WhichRecipe::Active))
    Raise(Exception(tr("Recipe does not exist or is already archived")));
  if (!successorId.isNull() && !find(successorId, WhichRecipe::Active))
    Raise(Exception(tr("Recipe successor does not exist or is archived")));
  QList<Recipe> list = m_recipes;
  for (Recipe& entry : list)
    if (entry.id == id && !entry.archived)
    {
      entry.archived = true;
      entry.archivedTime = QDateTime::currentDateTimeUtc();
      entry.successor = successorId;
      writeMeta(entry);
      break;
    }
  writeToc(list);
  m_recipes = std::move(list);
}

void Recipes::remove(const QUuid& id)
{
  const auto it =
      std::find_if(m_recipes.cbegin(), m_recipes.cend(), [&](const Recipe& r) { return r.id == id && !r.archived; });
  if (id.isNull() || it == m_recipes.cend())
    return;
  const QString folder = recipeFolder(*it);
  QList<Recipe> list = m_recipes;
  list.removeAt(it - m_recipes.cbegin());
  // The table of contents first: a crash then leaves an unnamed folder, never a named
  // recipe without one.
  writeToc(list);
  m_recipes = std::move(list);
  if (!folder.isEmpty())
    QDir(folder).removeRecursively();
}

QString Recipes::contextSummary(const QUuid& id, const QStringList& names) const
{
  const Recipe& recipe = existing(id, "contextSummary");
  const QString folder = recipeFolder(recipe);
  const QStringList subfolders = folder.isEmpty() ? QStringList() : subfoldersOf(folder);
  QString text;
  for (const std::unique_ptr<RecipeContext>& context : recipeContextRegistry().contexts())
  {
    const QString name = context->name();
    if (!names.isEmpty() && !names.contains(name, Qt::CaseInsensitive))
      continue;
    // A recipe without a usable folder has no data to summarise.
    text += context->summary(folder.isEmpty() ? QString() : contextFolder(folder, subfolders, name, nullptr));
    text += QLatin1Char('\n');
  }
  return text;
}

void Recipes::writeMeta(const Recipe& recipe) const
{
  Storage::SettingsDocument meta;
  writeKeys(*meta.CreateNode(kRecipeNode), recipe);
  const QString path = recipeFolder(recipe) + QLatin1Char('/') + kMeta;
  if (!meta.SaveAs(path))
    Raise(Exception(tr("Can't write '%1'").arg(path)));
}

void Recipes::writeToc(const QList<Recipe>& list) const
{
  Storage::SettingsDocument toc;
  for (const Recipe& recipe : list)
    writeKeys(*toc.AppendCollectionNode(kCollection), recipe);
  const QString path = m_folder + QLatin1Char('/') + kToc;
  if (!toc.SaveAs(path))
    Raise(Exception(tr("Can't write '%1'").arg(path)));
}

} // namespace RTE
