// The plug-in configuration file: where a host looks for plug-in libraries.
//
//   <?xml version="1.0" encoding="UTF-8"?>
//   <plugin-config>
//     <plugin name="Codecs" path="plugins/codecs" recursive="true"/>
//     <plugin name="Cameras" path="/opt/app/cameras" recursive="false"/>
//   </plugin-config>
//
//   RTE::PluginConfiguration config(configFile);
//   for (const auto& plugin : config.plugins())
//     for (const QString& library : config.librariesFor(plugin))
//       RTE::LibraryManager::instance().loadPluginLibrary(library);
//
// Every "plugin" element needs all three attributes. "recursive" is true only for the
// exact text "true" ("TRUE", "1" and "yes" are false). A relative "path" is taken
// relative to the folder of the configuration file, so a configuration can be moved
// together with its plug-in folders; plugins() returns the resolved paths. A relative
// path in a default-constructed configuration's records is taken relative to the
// working directory.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QCoreApplication>
#include <QString>

#include <vector>

namespace RTE
{

class CORECOMMON_EXPORT PluginConfiguration
{
  Q_DECLARE_TR_FUNCTIONS(RTE::PluginConfiguration)

public:
  struct Plugin
  {
    QString name;
    QString path;
    bool recursive = false;
    bool operator==(const Plugin&) const = default;
  };

  // No plug-ins.
  PluginConfiguration();
  // Reads the UTF-8 file. Throws RTE::FileIOError when the file does not exist or
  // cannot be read, RTE::ParseError when it is not well-formed XML or a "plugin"
  // element lacks an attribute; the message names the file, or the element and the
  // attribute.
  explicit PluginConfiguration(const QString& path);
  PluginConfiguration(const PluginConfiguration&);
  PluginConfiguration(PluginConfiguration&&) noexcept;
  PluginConfiguration& operator=(const PluginConfiguration&);
  PluginConfiguration& operator=(PluginConfiguration&&) noexcept;
  ~PluginConfiguration();

  // The "plugin" elements of the root "plugin-config", in document order.
  std::vector<Plugin> plugins() const;

  // The files below the plug-in's path whose names end in pluginExtension(), found by a
  // walk that skips links and enters sub-folders only for a recursive plug-in; in the
  // order the file system lists them. Empty when the path is not a folder.
  std::vector<QString> librariesFor(const Plugin& plugin) const;

private:
  std::vector<Plugin> m_plugins;
};

} // namespace RTE
