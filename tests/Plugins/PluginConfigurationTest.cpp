#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/ParseError.h>
#include <Core/Common/Plugins/PluginConfiguration.h>

#include "LogCapture.h"
#include "PluginTestSupport.h"

#include <algorithm>

using Plugin = RTE::PluginConfiguration::Plugin;
using Result = RTE::LibraryManager::LoadingResult;

namespace
{

// The message of the E that reading the configuration at path throws, or "no exception".
template <typename E>
QString readingFails(const QString& path)
{
  try
  {
    RTE::PluginConfiguration config(path);
  }
  catch (const E& e)
  {
    EXPECT_FALSE(e.sourceFile().isEmpty()); // raised through the library's one path
    return e.message();
  }
  return QStringLiteral("no exception");
}

} // namespace

inline void PrintTo(const Plugin& plugin, std::ostream* os)
{
  *os << plugin.name.toStdString() << " " << plugin.path.toStdString() << (plugin.recursive ? " recursive" : "");
}

using PluginConfigurationTest = PluginLibraryTest;

TEST_F(PluginConfigurationTest, ReadsPluginsInDocumentOrder)
{
  const QString file = write(QStringLiteral("config/plugins.xml"), R"(<?xml version="1.0" encoding="UTF-8"?>
<plugin-config>
  <plugin name="Codecs" path="codecs" recursive="true"/>
  <plugin name="Kameras äöü" path="/opt/app/cameras" recursive="TRUE"/>
  <group><plugin name="Nested" path="nested" recursive="true"/></group>
  <plugin name="Up" path="../shared/./lasers" recursive="false"/>
  <plugin name="Here" path="" recursive="yes"/>
</plugin-config>
<!-- a trailing comment -->
)");
  const QString folder = m_dir.filePath(QStringLiteral("config"));

  const RTE::PluginConfiguration config(file);
  const std::vector<Plugin> expected{
      {QStringLiteral("Codecs"), folder + QStringLiteral("/codecs"), true},
      {QString::fromUtf8("Kameras äöü"), QStringLiteral("/opt/app/cameras"), false},
      {QStringLiteral("Up"), m_dir.filePath(QStringLiteral("shared/lasers")), false},
      {QStringLiteral("Here"), folder, false},
  };
  EXPECT_EQ(config.plugins(), expected);

  // Copies and moves keep the records; a default configuration has none.
  RTE::PluginConfiguration copy = config;
  EXPECT_EQ(copy.plugins(), expected);
  RTE::PluginConfiguration moved = std::move(copy);
  EXPECT_EQ(moved.plugins(), expected);
  EXPECT_TRUE(RTE::PluginConfiguration().plugins().empty());

  const QString other = write(QStringLiteral("other.xml"), R"(<x><plugin name="a" path="b" recursive="true"/></x>)");
  EXPECT_TRUE(RTE::PluginConfiguration(other).plugins().empty());
}

TEST_F(PluginConfigurationTest, BadFilesThrowWithTheirMessages)
{
  const QString missing = m_dir.filePath(QStringLiteral("missing.xml"));
  EXPECT_EQ(readingFails<RTE::FileIOError>(missing),
            QStringLiteral("The file with the given path '%1' does not exists.").arg(missing));
  // A folder exists but cannot be read as a file.
  EXPECT_EQ(readingFails<RTE::FileIOError>(m_dir.path()),
            QStringLiteral("Unable to open the file with the given path '%1' to read the content.").arg(m_dir.path()));

  struct Case
  {
    const char* what;
    const char* content;
    QString message; // after "XML error in file <path>: " when xml, else complete
    bool xml;
  };
  const Case cases[] = {
      {"mismatched tags", "<plugin-config><plugin></plugin-config>", QStringLiteral("Start-end tags mismatch"), true},
      {"empty file", "", QStringLiteral("No document element found"), true},
      {"no path", R"(<plugin-config><plugin name="a" recursive="true"/></plugin-config>)",
       QStringLiteral("Node with tag name 'plugin' has no attribute named 'path'"), false},
      {"no name", R"(<plugin-config><plugin path="a" recursive="true"/></plugin-config>)",
       QStringLiteral("Node with tag name 'plugin' has no attribute named 'name'"), false},
      {"no recursive, after a good element",
       R"(<plugin-config><plugin name="a" path="a" recursive="true"/><plugin name="b" path="b"/></plugin-config>)",
       QStringLiteral("Node with tag name 'plugin' has no attribute named 'recursive'"), false},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.what);
    const QString file = write(QStringLiteral("bad.xml"), c.content);
    EXPECT_EQ(readingFails<RTE::ParseError>(file),
              c.xml ? QStringLiteral("XML error in file %1: %2").arg(file, c.message) : c.message);
  }
}

TEST_F(PluginConfigurationTest, LibrariesForWalksTheFolder)
{
  const QString top = copy(shapesLibrary(), QStringLiteral("plugins/libShapes.so"));
  const QString sub = copy(moreShapesLibrary(), QStringLiteral("plugins/more/libMoreShapes.so"));
  const QString deep = write(QStringLiteral("plugins/more/deeper/libDeep.so"), "not loaded here");
  write(QStringLiteral("plugins/readme.txt"), "text");
  write(QStringLiteral("plugins/libShapes.so.1"), "versioned name");
  write(QStringLiteral("plugins/folder.so/inside.txt"), "a folder whose name ends in .so");
  ASSERT_TRUE(QFile::link(top, m_dir.filePath(QStringLiteral("plugins/link.so"))));
  ASSERT_TRUE(QFile::link(m_dir.filePath(QStringLiteral("plugins/more")),
                          m_dir.filePath(QStringLiteral("plugins/linked-folder"))));

  const RTE::PluginConfiguration config;
  const QString folder = m_dir.filePath(QStringLiteral("plugins"));
  struct Case
  {
    const char* what;
    Plugin plugin;
    std::vector<QString> libraries;
  };
  const Case cases[] = {
      {"top folder", {QStringLiteral("p"), folder, false}, {top}},
      {"recursive", {QStringLiteral("p"), folder, true}, sorted({top, sub, deep})},
      {"unclean path", {QStringLiteral("p"), folder + QStringLiteral("/more/..//"), false}, {top}},
      {"missing folder", {QStringLiteral("p"), m_dir.filePath(QStringLiteral("none")), true}, {}},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(sorted(config.librariesFor(c.plugin)), c.libraries);
  }
}

TEST_F(PluginConfigurationTest, LoadsTheConfiguredLibraries)
{
  copy(shapesLibrary(), QStringLiteral("app/plugins/libShapes.so"));
  copy(moreShapesLibrary(), QStringLiteral("app/plugins/extra/libMoreShapes.so"));
  copy(moreShapesLibrary(), QStringLiteral("app/ignored/libMoreShapes.so"));
  const QString file = write(QStringLiteral("app/config/plugin-config.xml"), R"(<plugin-config>
  <plugin name="All" path="../plugins" recursive="true"/>
</plugin-config>)");

  auto& manager = RTE::LibraryManager::instance();
  const RTE::PluginConfiguration config(file);
  ASSERT_EQ(config.plugins().size(), 1u);
  const std::vector<QString> libraries = config.librariesFor(config.plugins().front());
  ASSERT_EQ(libraries.size(), 2u);
  for (const QString& library : libraries)
    EXPECT_EQ(manager.loadPluginLibrary(library), Result::Success) << manager.getLastError().toStdString();

  auto& factory = RTE::C_PluginFactory::GetInstance();
  std::vector<std::string> shapes = factory.GetListOfPluginTypes("Test.Shapes");
  std::sort(shapes.begin(), shapes.end());
  EXPECT_EQ(shapes, (std::vector<std::string>{"Circle", "Point", "Square", "Triangle"}));
  EXPECT_EQ(manager.getNumberOfLibraries(), 2u);
}
