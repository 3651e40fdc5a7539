// Loads plug-in libraries, keeps them, and records which plug-ins each one registered
// while it was being loaded.
//
//   auto& manager = RTE::LibraryManager::instance();
//   if (manager.loadPluginLibrary(path) == RTE::LibraryManager::LoadingResult::Failed)
//     qWarning() << manager.getLastError();
//   manager.scanFolderForLibraries(folder, false, true, QString());  // every "*.so" below folder
//
// A plug-in library needs no entry point: static objects in it register plug-ins with
// C_PluginRegistry while the loader runs its static initialisation, and the factory
// reports each registration here (currentLibraryRegistered).
//
// The unnamed flags:
// - scanFolderForLibraries(folder, enforceUnload, ...) hands enforceUnload to each
//   Library it makes: whether dropping the library from the manager also unloads its
//   code. loadLibrary and loadPluginLibrary load with enforceUnload set.
// - unloadLibrary(path, enforceUnload): true unloads the code even when the library was
//   loaded without enforceUnload; false leaves that to the library's own setting.
// A library's code is never unloaded when the manager itself goes at process end. When
// unloading really removed a library's code from the process, the plug-ins it
// registered are deregistered from the process-wide factory (their creators are gone).
//
// Messages go to the logging category "Core.LibraryManager" (debug level).
// Thread-safe; loading on one thread while another registers plug-ins is not (see
// C_PluginFactory).
#pragma once

#include <Core/Common/Plugins/Library.h>

#include <QCoreApplication>
#include <QString>

#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <vector>

namespace RTE
{

class CORECOMMON_EXPORT LibraryManager
{
  Q_DECLARE_TR_FUNCTIONS(RTE::LibraryManager)

public:
  // One plug-in as given to RegisterPlugin.
  struct PluginInfo
  {
    std::string domain;
    std::string name;
    bool operator==(const PluginInfo&) const = default;
  };

  // One library the manager holds, with the plug-ins it registered when it was loaded.
  struct LibraryInfo
  {
    std::unique_ptr<Library> library;
    std::vector<PluginInfo> plugins;
  };

  enum class LoadingResult
  {
    Success = 0,      // loaded and kept
    Failed = 1,       // not loaded, or its loading failed; see getLastError()
    LoadedBefore = 2, // loaded before and registered no new plug-in; see getLastError()
  };

  static LibraryManager& instance();

  LibraryManager(const LibraryManager&) = delete;
  LibraryManager& operator=(const LibraryManager&) = delete;

  // Loads every file of the folder whose name matches namePattern + pluginExtension()
  // ("*" when namePattern is empty), and with recursive every such file of the
  // sub-folders (sub-folder names are not filtered; linked folders are not followed).
  // Returns the number of libraries loaded with LoadingResult::Success.
  unsigned int scanFolderForLibraries(const QString& folder, bool enforceUnload, bool recursive,
                                      const QString& namePattern);
  // Loads one library file; true when it is in the process afterwards (loaded now or
  // before).
  [[nodiscard]] bool loadLibrary(const QString& path);
  // Loads one plug-in library file.
  [[nodiscard]] LoadingResult loadPluginLibrary(const QString& path);
  // Drops the library from the manager (see the flags above); false when the manager
  // does not hold it.
  bool unloadLibrary(const QString& path, bool enforceUnload);
  // unloadLibrary(path, false) for every library held.
  void unloadAllLibraries();

  // Records a registration for the library being loaded; ignored when none is.
  void currentLibraryRegistered(const PluginInfo& plugin);

  // The plug-ins the library registered when the manager loaded it; empty when the
  // manager does not hold it.
  std::vector<PluginInfo> getPluginsOfLibrary(const QString& path) const;
  // The paths of the libraries held, in loading order, as they were given.
  std::vector<QString> getLibraryNames() const;
  unsigned int getNumberOfLibraries() const;
  // Whether the manager holds the library at that path.
  static bool isLoaded(const QString& path);
  // The error text of the last load that did not give Success.
  QString getLastError();

private:
  LibraryManager();
  ~LibraryManager();

  LoadingResult registerLibrary(const QString& path, bool enforceUnload);
  std::vector<LibraryInfo>::iterator findLibrary(const QString& path);
  std::vector<LibraryInfo>::const_iterator findLibrary(const QString& path) const;

  mutable std::recursive_mutex m_mutex;
  std::vector<LibraryInfo> m_libraries;
  // The registrations of the load in progress; empty optional when nothing is loading.
  std::optional<std::vector<PluginInfo>> m_loading;
  QString m_lastError;
};

} // namespace RTE
