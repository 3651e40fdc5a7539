#include <Core/Common/Plugins/PluginConfiguration.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/ParseError.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Plugins/PluginExtension.h>

#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>

#include <pugixml.hpp>

namespace RTE
{

namespace
{

[[noreturn]] void raiseParseError(const QString& message)
{
  ParseError error;
  error.setMessage(message);
  Raise(std::move(error));
}

QString requiredAttribute(const pugi::xml_node& node, const char* attribute)
{
  const pugi::xml_attribute value = node.attribute(attribute);
  if (!value)
    raiseParseError(PluginConfiguration::tr("Node with tag name '%1' has no attribute named '%2'")
                        .arg(QString::fromUtf8(node.name()), QString::fromUtf8(attribute)));
  return QString::fromUtf8(value.value());
}

} // namespace

PluginConfiguration::PluginConfiguration() = default;

PluginConfiguration::PluginConfiguration(const QString& path)
{
  if (!QFileInfo::exists(path))
    Raise(FileIOError(tr("The file with the given path '%1' does not exists.").arg(path)));
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly))
    Raise(FileIOError(tr("Unable to open the file with the given path '%1' to read the content.").arg(path)));
  const QByteArray content = file.readAll();

  pugi::xml_document document;
  const pugi::xml_parse_result parsed = document.load_buffer(content.constData(), static_cast<size_t>(content.size()),
                                                             pugi::parse_default, pugi::encoding_utf8);
  if (!parsed)
    raiseParseError(tr("XML error in file %1: %2").arg(path, QString::fromUtf8(parsed.description())));

  const QDir folder = QFileInfo(path).absoluteDir();
  const std::string query = std::string("plugin-config") + "/" + "plugin";
  for (const pugi::xpath_node& selected : document.select_nodes(query.c_str()))
  {
    const pugi::xml_node node = selected.node();
    Plugin plugin;
    plugin.name = requiredAttribute(node, "name");
    plugin.path = QDir::cleanPath(folder.filePath(requiredAttribute(node, "path")));
    plugin.recursive = requiredAttribute(node, "recursive") == QLatin1String("true");
    m_plugins.push_back(std::move(plugin));
  }
}

PluginConfiguration::PluginConfiguration(const PluginConfiguration&) = default;
PluginConfiguration::PluginConfiguration(PluginConfiguration&&) noexcept = default;
PluginConfiguration& PluginConfiguration::operator=(const PluginConfiguration&) = default;
PluginConfiguration& PluginConfiguration::operator=(PluginConfiguration&&) noexcept = default;
PluginConfiguration::~PluginConfiguration() = default;

std::vector<PluginConfiguration::Plugin> PluginConfiguration::plugins() const
{
  return m_plugins;
}

std::vector<QString> PluginConfiguration::librariesFor(const Plugin& plugin) const
{
  const QString folder = QDir::toNativeSeparators(QDir::cleanPath(plugin.path));
  QDirIterator it(folder, QDir::Files | QDir::Dirs | QDir::NoDotAndDotDot | QDir::NoSymLinks,
                  plugin.recursive ? QDirIterator::Subdirectories : QDirIterator::NoIteratorFlags);
  const QString extension = pluginExtension();
  std::vector<QString> libraries;
  while (it.hasNext())
  {
    it.next();
    const QFileInfo entry = it.fileInfo();
    if (entry.isFile() && entry.fileName().endsWith(extension))
      libraries.push_back(entry.filePath());
  }
  return libraries;
}

} // namespace RTE
