#include <Core/Common/Plugins/Library.h>
#include <Core/Common/Plugins/LibraryManager.h>
#include <Core/Common/Plugins/PluginExtension.h>

#include "LogCapture.h"
#include "PluginTestSupport.h"

#include <QCoreApplication>
#include <QProcess>

#include <algorithm>

using RTE::LibraryManager;
using Result = RTE::LibraryManager::LoadingResult;
using Plugins = std::vector<RTE::LibraryManager::PluginInfo>;

namespace
{

const QString loadedBefore = QStringLiteral("Library loaded before and didn't register a new plugin.");

} // namespace

TEST(PluginExtension, IsTheSharedLibrarySuffix)
{
  EXPECT_EQ(RTE::pluginExtension(), QStringLiteral(".so"));
  EXPECT_TRUE(shapesLibrary().endsWith(RTE::pluginExtension()));
}

TEST(LibraryManagerLifetime, CreationAndDestructionAreLogged)
{
  // The manager lives as long as the process, so only a process of its own shows both
  // ends: this program again, running one small test with the category enabled.
  QProcess child;
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.insert(QStringLiteral("QT_LOGGING_RULES"), QStringLiteral("Core.LibraryManager.debug=true"));
  environment.insert(QStringLiteral("QT_MESSAGE_PATTERN"), QStringLiteral("[%{category}] %{message}"));
  child.setProcessEnvironment(environment);
  child.start(QCoreApplication::applicationFilePath(), {QStringLiteral("--gtest_filter=PluginExtension.*")});
  ASSERT_TRUE(child.waitForFinished(60000));
  EXPECT_EQ(child.exitCode(), 0);
  const QString log = QString::fromLocal8Bit(child.readAllStandardError());
  const qsizetype created = log.indexOf(QStringLiteral("[Core.LibraryManager] LibraryManager created\n"));
  const qsizetype destroyed = log.indexOf(QStringLiteral("[Core.LibraryManager] LibraryManager destroyed\n"));
  EXPECT_GE(created, 0) << log.toStdString();
  EXPECT_GT(destroyed, created) << log.toStdString();
}

using LibraryManagerTest = PluginLibraryTest;

TEST_F(LibraryManagerTest, LoadingByPathRecordsTheRegisteredPluginsOnce)
{
  auto& manager = LibraryManager::instance();
  const QString path = copy(shapesLibrary(), QStringLiteral("libShapes.so"));
  LogCapture log("Core.LibraryManager");

  ASSERT_EQ(manager.loadPluginLibrary(path), Result::Success) << manager.getLastError().toStdString();

  EXPECT_EQ(manager.getPluginsOfLibrary(path), shapesPlugins());
  EXPECT_EQ(manager.getLibraryNames(), std::vector<QString>{path});
  EXPECT_TRUE(LibraryManager::isLoaded(path));
  EXPECT_TRUE(LibraryManager::isLoaded(m_dir.path() + QStringLiteral("/./libShapes.so")));
  EXPECT_FALSE(LibraryManager::isLoaded(shapesLibrary()));
  EXPECT_TRUE(manager.getPluginsOfLibrary(shapesLibrary()).empty());
  EXPECT_EQ(log.messages(), QStringList{path + QStringLiteral(" registered:3 loaded:true error=")});

  auto& factory = RTE::C_PluginFactory::GetInstance();
  EXPECT_EQ(factory.GetListOfPluginTypes("Test.Shapes"), (std::vector<std::string>{"Point", "Circle", "Square"}));
  const auto circle = factory.CreatePluginObject("Test.Shapes", "Circle");
  ASSERT_TRUE(circle);
  EXPECT_EQ(circle->GetDescription(), "round, from the shapes library");

  // Loading it again, by any spelling of the path, registers nothing.
  struct Case
  {
    const char* what;
    QString path;
  };
  const Case cases[] = {
      {"same path", path},
      {"other spelling of the path", m_dir.path() + QStringLiteral("/./libShapes.so")},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.what);
    LogCapture again("Core.LibraryManager");
    EXPECT_EQ(manager.loadPluginLibrary(c.path), Result::LoadedBefore);
    EXPECT_EQ(manager.getLastError(), loadedBefore);
    EXPECT_EQ(again.messages(), QStringList{c.path + QStringLiteral(" registered:0 loaded:true error=")});
  }
  // The library is in the process: loadLibrary says so without a second record.
  EXPECT_TRUE(manager.loadLibrary(path));
  EXPECT_EQ(manager.getNumberOfLibraries(), 1u);
  EXPECT_EQ(manager.getPluginsOfLibrary(path), shapesPlugins());
  EXPECT_EQ(RTE::C_PluginFactory::GetInstance().GetListOfPluginTypes("Test.Shapes").size(), 3u);
}

TEST_F(LibraryManagerTest, TakenNameIsNotRecordedForTheLibrary)
{
  auto& manager = LibraryManager::instance();
  auto& factory = RTE::C_PluginFactory::GetInstance();
  const QString path = copy(moreShapesLibrary(), QStringLiteral("libMoreShapes.so"));

  ASSERT_EQ(manager.loadPluginLibrary(path), Result::Success);
  EXPECT_EQ(manager.getPluginsOfLibrary(path), moreShapesPlugins());
  EXPECT_EQ(factory.GetListOfPluginDescriptions("Test.Shapes"),
            (std::vector<std::string>{"the test program's point", "three corners"}));
  EXPECT_EQ(factory.GetRegistrationErrors(), std::vector<std::string>{"MoreShapes: Test.Shapes/Point is taken"});
}

TEST_F(LibraryManagerTest, FileThatIsNotALibraryFails)
{
  auto& manager = LibraryManager::instance();
  const QString text = write(QStringLiteral("broken.so"), "not a shared library\n");
  const QString missing = m_dir.filePath(QStringLiteral("missing.so"));

  for (const QString& path : {text, missing})
  {
    SCOPED_TRACE(path.toStdString());
    LogCapture log("Core.LibraryManager");
    EXPECT_EQ(manager.loadPluginLibrary(path), Result::Failed);
    const QString error = manager.getLastError();
    // The loader's own text, which names the file.
    EXPECT_TRUE(error.contains(QFileInfo(path).fileName())) << error.toStdString();
    EXPECT_NE(error, loadedBefore);
    EXPECT_EQ(log.messages(), QStringList{path + QStringLiteral(" registered:0 loaded:false error=") + error});
    EXPECT_FALSE(manager.loadLibrary(path));
    EXPECT_FALSE(LibraryManager::isLoaded(path));
  }
  EXPECT_EQ(manager.getNumberOfLibraries(), 0u);

  RTE::Library library(text, true);
  EXPECT_FALSE(library.isLoaded());
  EXPECT_FALSE(library.getError().isEmpty());
  EXPECT_EQ(library.getProcAddress("shapesPluginAnswer"), nullptr);
}

TEST_F(LibraryManagerTest, FolderScanLoadsMatchingFiles)
{
  auto& manager = LibraryManager::instance();
  const QString shapes = copy(shapesLibrary(), QStringLiteral("libShapes.so"));
  const QString more = copy(moreShapesLibrary(), QStringLiteral("nested/libMoreShapes.so"));
  write(QStringLiteral("broken.so"), "not a shared library\n");
  write(QStringLiteral("readme.txt"), "not a library either\n");
  copy(moreShapesLibrary(), QStringLiteral("libMoreShapes.so.disabled"));

  struct Case
  {
    const char* what;
    bool recursive;
    QString pattern;
    unsigned int loaded;
    std::vector<QString> libraries;
  };
  const Case cases[] = {
      {"top folder only", false, QString(), 1, {shapes}},
      {"with sub-folders", true, QString(), 2, {shapes, more}},
      {"pattern, sub-folder name not filtered", true, QStringLiteral("libMore*"), 1, {more}},
      {"pattern matching nothing", true, QStringLiteral("libNone*"), 0, {}},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.what);
    LogCapture log("Core.LibraryManager");
    EXPECT_EQ(manager.scanFolderForLibraries(m_dir.path(), true, c.recursive, c.pattern), c.loaded);
    EXPECT_EQ(sorted(manager.getLibraryNames()), c.libraries);
    const QString filter = (c.pattern.isEmpty() ? QStringLiteral("*") : c.pattern) + QStringLiteral(".so");
    ASSERT_FALSE(log.messages().isEmpty());
    EXPECT_EQ(log.messages().first(),
              QStringLiteral("LibraryManager scanning ") + m_dir.path() + QStringLiteral(" for ") + filter);
    manager.unloadAllLibraries();
    EXPECT_EQ(manager.getNumberOfLibraries(), 0u);
  }

  // A second scan finds everything loaded already: nothing new counts.
  EXPECT_EQ(manager.scanFolderForLibraries(m_dir.path(), true, true, QString()), 2u);
  EXPECT_EQ(manager.scanFolderForLibraries(m_dir.path(), true, true, QString()), 0u);
  EXPECT_EQ(manager.getPluginsOfLibrary(more), moreShapesPlugins());
  EXPECT_EQ(manager.getPluginsOfLibrary(shapes), shapesPlugins());
}

TEST_F(LibraryManagerTest, UnloadingRemovesCodeAndPlugins)
{
  auto& manager = LibraryManager::instance();
  auto& factory = RTE::C_PluginFactory::GetInstance();
  const QString path = copy(shapesLibrary(), QStringLiteral("libShapes.so"));

  ASSERT_EQ(manager.loadPluginLibrary(path), Result::Success);
  EXPECT_TRUE(manager.unloadLibrary(path, false));
  EXPECT_FALSE(manager.unloadLibrary(path, false));
  EXPECT_FALSE(LibraryManager::isLoaded(path));
  EXPECT_TRUE(factory.GetListOfPluginTypes("Test.Colors").empty());

  // Gone from the process: loading runs its registrations again.
  ASSERT_EQ(manager.loadPluginLibrary(path), Result::Success);
  EXPECT_EQ(manager.getPluginsOfLibrary(path), shapesPlugins());
  EXPECT_EQ(factory.GetListOfPluginTypes("Test.Colors"), std::vector<std::string>{"Red"});
}

TEST_F(LibraryManagerTest, LibraryScannedWithoutEnforceUnloadStaysInTheProcess)
{
  auto& manager = LibraryManager::instance();
  auto& factory = RTE::C_PluginFactory::GetInstance();
  const QString path = copy(shapesLibrary(), QStringLiteral("kept/libShapes.so"));

  ASSERT_EQ(manager.scanFolderForLibraries(m_dir.filePath(QStringLiteral("kept")), false, false, QString()), 1u);
  EXPECT_TRUE(manager.unloadLibrary(path, false));
  EXPECT_FALSE(LibraryManager::isLoaded(path));
  // The code stayed, so its plug-ins stay usable, and loading it again registers nothing.
  EXPECT_TRUE(factory.CreatePluginObject("Test.Colors", "Red"));
  EXPECT_EQ(manager.loadPluginLibrary(path), Result::LoadedBefore);
  EXPECT_EQ(manager.getLastError(), loadedBefore);

  // Enforced unloading of a library scanned without the flag removes it.
  const QString other = copy(moreShapesLibrary(), QStringLiteral("forced/libMoreShapes.so"));
  ASSERT_EQ(manager.scanFolderForLibraries(m_dir.filePath(QStringLiteral("forced")), false, false, QString()), 1u);
  EXPECT_TRUE(manager.unloadLibrary(other, true));
  EXPECT_EQ(manager.loadPluginLibrary(other), Result::Success);
  EXPECT_EQ(manager.getPluginsOfLibrary(other), moreShapesPlugins());

  // The kept copy cannot be unloaded any more; forget its plug-ins for the other tests.
  deregisterTestPlugins();
}

TEST_F(LibraryManagerTest, LibraryObjectUnloadsOnlyWhenAskedTo)
{
  const QString path = copy(shapesLibrary(), QStringLiteral("libShapes.so"));
  auto& manager = LibraryManager::instance();
  {
    RTE::Library library(path, true);
    ASSERT_TRUE(library.isLoaded()) << library.getError().toStdString();
    EXPECT_EQ(library.getName(), path);
    EXPECT_TRUE(library.getError().isEmpty());
    const RTE::Library::Function answer = library.getProcAddress("shapesPluginAnswer");
    ASSERT_NE(answer, nullptr);
    EXPECT_EQ(answer(), 42);
    EXPECT_EQ(library.getProcAddress("noSuchSymbol"), nullptr);
  }
  // Destroyed with enforced unloading: the code went, its registrations are stale.
  deregisterTestPlugins();
  ASSERT_EQ(manager.loadPluginLibrary(path), Result::Success);
  EXPECT_EQ(manager.getPluginsOfLibrary(path), shapesPlugins());
  ASSERT_TRUE(manager.unloadLibrary(path, true));

  {
    RTE::Library library(path, true);
    library.stayLoaded();
    library.setEnforceUnload(true);
    EXPECT_FALSE(library.unload());
  }
  EXPECT_EQ(manager.loadPluginLibrary(path), Result::LoadedBefore);
  deregisterTestPlugins();
}
