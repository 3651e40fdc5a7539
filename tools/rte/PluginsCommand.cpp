// `rte plugins`: loads plug-in libraries named by a configuration file or found in a
// folder, reports each library's result, and lists the registered plug-ins by domain.
#include "PluginsCommand.h"

#include "Command.h"

#include <Core/Common/Exceptions/Exception.h>
#include <Core/Common/Plugins/C_PluginFactory.h>
#include <Core/Common/Plugins/PluginConfiguration.h>

#include <QCommandLineParser>

#include <algorithm>

namespace rte
{

void printRegisteredPlugins(QTextStream& out)
{
  auto& factory = RTE::C_PluginFactory::GetInstance();
  std::vector<std::string> domains;
  for (const std::string& domain : factory.GetListOfPlugins())
    if (std::find(domains.begin(), domains.end(), domain) == domains.end())
      domains.push_back(domain);

  out << "Registered plug-ins: " << factory.GetNumberOfPlugins() << "\n";
  for (const std::string& domain : domains)
  {
    out << "  " << QString::fromStdString(domain) << "\n";
    const auto names = factory.GetListOfPluginTypes(domain);
    const auto descriptions = factory.GetListOfPluginDescriptions(domain);
    for (std::size_t i = 0; i < names.size() && i < descriptions.size(); ++i)
      out << "    " << QString::fromStdString(names[i]).leftJustified(20) << " "
          << QString::fromStdString(descriptions[i]) << "\n";
  }
  const auto errors = factory.GetRegistrationErrors();
  if (!errors.empty())
  {
    out << "Registration errors:\n";
    for (const std::string& error : errors)
      out << "  " << QString::fromStdString(error) << "\n";
  }
}

RTE::LibraryManager::LoadingResult loadAndReport(const QString& path, QTextStream& out)
{
  auto& manager = RTE::LibraryManager::instance();
  const RTE::LibraryManager::LoadingResult result = manager.loadPluginLibrary(path);
  out << "  " << path << "\n    result " << static_cast<int>(result);
  if (result == RTE::LibraryManager::LoadingResult::Success)
  {
    const auto plugins = manager.getPluginsOfLibrary(path);
    out << ", " << plugins.size() << " plug-in(s) registered\n";
    for (const auto& plugin : plugins)
      out << "      " << QString::fromStdString(plugin.domain) << " / " << QString::fromStdString(plugin.name) << "\n";
  }
  else
  {
    out << ": " << manager.getLastError() << "\n";
  }
  return result;
}

} // namespace rte

namespace
{

int runPlugins(const QStringList& arguments)
{
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Loads plug-in libraries and lists the registered plug-ins by domain.\n"
                     "Result of a load: 0 loaded, 1 failed, 2 loaded before without new plug-ins."));
  parser.addHelpOption();
  const QCommandLineOption configOption(QStringList{QStringLiteral("c"), QStringLiteral("config")},
                                        QStringLiteral("Load the libraries named by the plug-in configuration <file>."),
                                        QStringLiteral("file"));
  const QCommandLineOption folderOption(QStringList{QStringLiteral("f"), QStringLiteral("folder")},
                                        QStringLiteral("Load the plug-in libraries of <folder>."),
                                        QStringLiteral("folder"));
  const QCommandLineOption recursiveOption(QStringList{QStringLiteral("r"), QStringLiteral("recursive")},
                                           QStringLiteral("With --folder, also load those of its sub-folders."));
  parser.addOption(configOption);
  parser.addOption(folderOption);
  parser.addOption(recursiveOption);
  if (const std::optional<int> stop = rte::parseCommandLine(parser, arguments))
    return *stop;
  if (!parser.positionalArguments().isEmpty())
  {
    rte::err() << "rte plugins: unexpected argument '" << parser.positionalArguments().first() << "'\n";
    return 2;
  }
  if (parser.isSet(recursiveOption) && !parser.isSet(folderOption))
  {
    rte::err() << "rte plugins: --recursive needs --folder\n";
    return 2;
  }

  QTextStream& out = rte::out();
  std::vector<RTE::PluginConfiguration::Plugin> entries;
  RTE::PluginConfiguration config;
  try
  {
    if (parser.isSet(configOption))
    {
      config = RTE::PluginConfiguration(parser.value(configOption));
      entries = config.plugins();
    }
  }
  catch (const RTE::Exception& e)
  {
    rte::err() << "rte plugins: " << e.message() << "\n";
    return 1;
  }
  if (parser.isSet(folderOption))
    entries.push_back({parser.value(folderOption), parser.value(folderOption), parser.isSet(recursiveOption)});

  bool failed = false;
  for (const auto& entry : entries)
  {
    const std::vector<QString> libraries = config.librariesFor(entry);
    out << entry.name << " (" << entry.path << (entry.recursive ? ", with sub-folders" : "")
        << "): " << libraries.size() << " librar" << (libraries.size() == 1 ? "y" : "ies") << "\n";
    for (const QString& library : libraries)
      failed |= rte::loadAndReport(library, out) == RTE::LibraryManager::LoadingResult::Failed;
  }
  if (!entries.empty())
    out << "\n";
  rte::printRegisteredPlugins(out);
  return failed ? 1 : 0;
}

const rte::CommandRegistration registration{{QStringLiteral("plugins"),
                                             QStringLiteral("Load plug-in libraries and list the registered plug-ins"),
                                             &runPlugins}};

} // namespace
