// Shared by the plug-in tests: copies of the test plug-in libraries in a temporary
// folder, and a clean factory and manager after every test, so that the tests do not
// depend on each other when they run in one process.
#pragma once

#include "Units/QStringPrinter.h"

#include <Core/Common/Plugins/C_PluginFactory.h>
#include <Core/Common/Plugins/C_PluginRegistry.h>
#include <Core/Common/Plugins/LibraryManager.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>
#include <ostream>
#include <string>
#include <vector>

namespace RTE
{
inline void PrintTo(const LibraryManager::PluginInfo& plugin, std::ostream* os)
{
  *os << plugin.domain << "/" << plugin.name;
}
} // namespace RTE

inline std::vector<QString> sorted(std::vector<QString> names)
{
  std::sort(names.begin(), names.end());
  return names;
}

inline QString shapesLibrary()
{
  return QStringLiteral(SHAPES_PLUGIN_PATH);
}

inline QString moreShapesLibrary()
{
  return QStringLiteral(MORE_SHAPES_PLUGIN_PATH);
}

// What the test libraries register when nothing else holds the names.
inline const std::vector<RTE::LibraryManager::PluginInfo>& shapesPlugins()
{
  static const std::vector<RTE::LibraryManager::PluginInfo> plugins{
      {"Test.Shapes", "Circle"}, {"Test.Shapes", "Square"}, {"Test.Colors", "Red"}};
  return plugins;
}

inline const std::vector<RTE::LibraryManager::PluginInfo>& moreShapesPlugins()
{
  static const std::vector<RTE::LibraryManager::PluginInfo> plugins{{"Test.Shapes", "Triangle"}};
  return plugins;
}

class PluginLibraryTest : public ::testing::Test
{
protected:
  void SetUp() override { ASSERT_TRUE(m_dir.isValid()); }

  void TearDown() override
  {
    auto& manager = RTE::LibraryManager::instance();
    for (const QString& name : manager.getLibraryNames())
      manager.unloadLibrary(name, true);
    auto& factory = RTE::C_PluginFactory::GetInstance();
    factory.ClearRegistrationErrors();
    // Unloading removed the libraries' code and with it their plug-ins.
    EXPECT_EQ(factory.GetListOfPluginTypes("Test.Shapes"), std::vector<std::string>{"Point"});
    EXPECT_TRUE(factory.GetListOfPluginTypes("Test.Colors").empty());
  }

  // Copies a library (or writes text) to the relative path inside the test folder.
  QString copy(const QString& library, const QString& relative)
  {
    const QString target = m_dir.filePath(relative);
    QDir().mkpath(QFileInfo(target).absolutePath());
    EXPECT_TRUE(QFile::copy(library, target)) << target.toStdString();
    return target;
  }
  QString write(const QString& relative, const QByteArray& content)
  {
    const QString target = m_dir.filePath(relative);
    QDir().mkpath(QFileInfo(target).absolutePath());
    QFile file(target);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(content);
    return target;
  }

  // Forgets plug-ins registered outside the manager (code it does not track).
  static void deregisterTestPlugins()
  {
    for (const auto* plugins : {&shapesPlugins(), &moreShapesPlugins()})
      for (const auto& plugin : *plugins)
        RTE::C_PluginRegistry::GetInstance().DeregisterPlugin(plugin.domain, plugin.name);
  }

  QTemporaryDir m_dir;
};
