#include <Core/Common/Plugins/LibraryManager.h>

#include <Core/Common/Plugins/C_PluginFactory.h>
#include <Core/Common/Plugins/PluginExtension.h>

#include "LibraryResidency_p.h"
#include "PluginsLog_p.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <utility>

// Debug level, off unless enabled ("Core.LibraryManager.debug=true"): a host loads its
// libraries at every start and should not see each one on its console.
Q_LOGGING_CATEGORY(lcLibraryManager, "Core.LibraryManager", QtInfoMsg)

namespace RTE
{

namespace
{

// The same file reached through different spellings or links is one library.
QString libraryKey(const QString& path)
{
  const QFileInfo info(path);
  const QString canonical = info.canonicalFilePath();
  return canonical.isEmpty() ? QDir::cleanPath(info.absoluteFilePath()) : canonical;
}

bool isResident(const QString& path)
{
  const QFileInfo info(path);
  return info.exists() && detail::isLibraryResident(info.absoluteFilePath());
}

} // namespace

LibraryManager& LibraryManager::instance()
{
  static LibraryManager manager;
  return manager;
}

LibraryManager::LibraryManager()
{
  qCDebug(lcLibraryManager) << "LibraryManager created";
}

LibraryManager::~LibraryManager()
{
  // Plug-in objects made from these libraries may still be destroyed by later static
  // destructors, so their code must stay.
  for (LibraryInfo& info : m_libraries)
    info.library->stayLoaded();
  qCDebug(lcLibraryManager) << "LibraryManager destroyed";
}

unsigned int LibraryManager::scanFolderForLibraries(const QString& folder, bool enforceUnload, bool recursive,
                                                    const QString& namePattern)
{
  const QString filter = (namePattern.isEmpty() ? QStringLiteral("*") : namePattern) + pluginExtension();
  qCDebug(lcLibraryManager).noquote() << QStringLiteral("LibraryManager scanning ") + folder + QStringLiteral(" for ") +
                                             filter;
  // AllDirs: the name filter is for library files, sub-folders are listed whatever their name.
  const QFileInfoList entries = QDir(folder).entryInfoList(
      QStringList{filter}, QDir::Files | QDir::AllDirs | QDir::NoDotAndDotDot, QDir::Unsorted);
  unsigned int loaded = 0;
  for (const QFileInfo& entry : entries)
  {
    if (entry.isDir())
    {
      // A linked folder may lead back up the tree.
      if (recursive && !entry.isSymLink())
        loaded += scanFolderForLibraries(entry.filePath(), enforceUnload, recursive, namePattern);
    }
    else if (registerLibrary(entry.filePath(), enforceUnload) == LoadingResult::Success)
    {
      ++loaded;
    }
  }
  return loaded;
}

bool LibraryManager::loadLibrary(const QString& path)
{
  return registerLibrary(path, true) != LoadingResult::Failed;
}

LibraryManager::LoadingResult LibraryManager::loadPluginLibrary(const QString& path)
{
  return registerLibrary(path, true);
}

LibraryManager::LoadingResult LibraryManager::registerLibrary(const QString& path, bool enforceUnload)
{
  const std::lock_guard lock(m_mutex);
  const bool residentBefore = isResident(path);

  // A library may load another one from its static initialisation; each load collects
  // its own registrations.
  std::optional<std::vector<PluginInfo>> outer = std::exchange(m_loading, std::vector<PluginInfo>{});
  struct Restore
  {
    std::optional<std::vector<PluginInfo>>& loading;
    std::optional<std::vector<PluginInfo>>& outer;
    ~Restore() { loading = std::move(outer); }
  };
  std::vector<PluginInfo> registered;
  std::unique_ptr<Library> library;
  {
    const Restore restore{m_loading, outer};
    library = std::make_unique<Library>(path, enforceUnload);
    registered = std::move(*m_loading);
  }

  const bool loaded = library->isLoaded();
  qCDebug(lcLibraryManager).noquote() << QStringLiteral("%1 registered:%2 loaded:%3 error=%4")
                                             .arg(path, QString::number(registered.size()),
                                                  loaded ? QStringLiteral("true") : QStringLiteral("false"),
                                                  library->getError());
  if (!loaded)
  {
    m_lastError = library->getError();
    return LoadingResult::Failed;
  }

  const auto held = findLibrary(path);
  if (residentBefore && registered.empty())
  {
    // Give back the hold this load took, so that unloading the first load can still
    // remove the code.
    library->unload();
    m_lastError = tr("Library loaded before and didn't register a new plugin.");
    return LoadingResult::LoadedBefore;
  }
  if (held != m_libraries.end())
  {
    library->unload();
    held->plugins.insert(held->plugins.end(), registered.begin(), registered.end());
    return LoadingResult::Success;
  }
  m_libraries.push_back(LibraryInfo{std::move(library), std::move(registered)});
  return LoadingResult::Success;
}

bool LibraryManager::unloadLibrary(const QString& path, bool enforceUnload)
{
  const std::lock_guard lock(m_mutex);
  const auto it = findLibrary(path);
  if (it == m_libraries.end())
    return false;
  LibraryInfo info = std::move(*it);
  m_libraries.erase(it);

  const QString name = info.library->getName();
  if (enforceUnload || info.library->enforcesUnload())
    info.library->unload();
  info.library->setEnforceUnload(false);
  // A library whose code is gone leaves creators pointing nowhere; one that stayed (not
  // enforced, pinned, or held elsewhere in the process) keeps its plug-ins usable.
  const bool codeRemoved = !isResident(name);
  if (codeRemoved)
  {
    for (const PluginInfo& plugin : info.plugins)
      C_PluginFactory::GetInstance().DeregisterPlugin(plugin.domain, plugin.name);
  }
  qCDebug(lcLibraryManager).noquote() << QStringLiteral("%1 unloaded code removed:%2")
                                             .arg(name, codeRemoved ? QStringLiteral("true") : QStringLiteral("false"));
  return true;
}

void LibraryManager::unloadAllLibraries()
{
  const std::lock_guard lock(m_mutex);
  // Latest first: a library loaded later may use one loaded before it.
  while (!m_libraries.empty())
    unloadLibrary(m_libraries.back().library->getName(), false);
}

void LibraryManager::currentLibraryRegistered(const PluginInfo& plugin)
{
  const std::lock_guard lock(m_mutex);
  if (m_loading)
    m_loading->push_back(plugin);
}

std::vector<LibraryManager::PluginInfo> LibraryManager::getPluginsOfLibrary(const QString& path) const
{
  const std::lock_guard lock(m_mutex);
  const auto it = findLibrary(path);
  return it == m_libraries.end() ? std::vector<PluginInfo>{} : it->plugins;
}

std::vector<QString> LibraryManager::getLibraryNames() const
{
  const std::lock_guard lock(m_mutex);
  std::vector<QString> names;
  names.reserve(m_libraries.size());
  for (const LibraryInfo& info : m_libraries)
    names.push_back(info.library->getName());
  return names;
}

unsigned int LibraryManager::getNumberOfLibraries() const
{
  const std::lock_guard lock(m_mutex);
  return static_cast<unsigned int>(m_libraries.size());
}

bool LibraryManager::isLoaded(const QString& path)
{
  const LibraryManager& manager = instance();
  const std::lock_guard lock(manager.m_mutex);
  return manager.findLibrary(path) != manager.m_libraries.end();
}

QString LibraryManager::getLastError()
{
  const std::lock_guard lock(m_mutex);
  return m_lastError;
}

std::vector<LibraryManager::LibraryInfo>::iterator LibraryManager::findLibrary(const QString& path)
{
  const QString key = libraryKey(path);
  return std::find_if(m_libraries.begin(), m_libraries.end(),
                      [&](const LibraryInfo& info) { return libraryKey(info.library->getName()) == key; });
}

std::vector<LibraryManager::LibraryInfo>::const_iterator LibraryManager::findLibrary(const QString& path) const
{
  return const_cast<LibraryManager*>(this)->findLibrary(path);
}

} // namespace RTE
