// Demo step: the plug-in factory, the plug-in configuration file and the library
// manager's results.
#include "PluginsCommand.h"

#include "Command.h"

#include <Core/Common/Exceptions/Exception.h>
#include <Core/Common/Plugins/C_PluginFactory.h>
#include <Core/Common/Plugins/C_PluginRegistry.h>
#include <Core/Common/Plugins/I_CreationContext.h>
#include <Core/Common/Plugins/PluginConfiguration.h>
#include <Core/Common/Plugins/PluginExtension.h>

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <memory>

#if defined(Q_OS_UNIX)
#include <dlfcn.h>
#endif

namespace
{

class Greeting : public RTE::I_Plugin
{
public:
  Greeting(std::string name, std::string text) : m_name(std::move(name)), m_text(std::move(text)) {}
  std::string GetDomain() const override { return "Demo.Greetings"; }
  std::string GetName() const override { return m_name; }
  std::string GetDescription() const override { return m_text; }

private:
  std::string m_name;
  std::string m_text;
};

// A context that asks for a personal greeting.
struct Addressee : RTE::I_CreationContext
{
  Addressee(std::string plugin, std::string person) : plugin(std::move(plugin)), person(std::move(person)) {}
  std::string GetDomain() const override { return "Demo.Greetings"; }
  std::string GetName() const override { return plugin; }
  std::string plugin;
  std::string person;
};

std::unique_ptr<RTE::I_Plugin> makeHello(RTE::I_CreationContext* context)
{
  const auto* addressee = dynamic_cast<Addressee*>(context);
  return std::make_unique<Greeting>("Hello", addressee ? "Hello, " + addressee->person + "!" : "Hello, world!");
}

std::unique_ptr<RTE::I_Plugin> makeMoin(RTE::I_CreationContext*)
{
  return std::make_unique<Greeting>("Moin", "Moin!");
}

// The file of the library that holds this function, or empty.
QString libraryOf(const void* function)
{
#if defined(Q_OS_UNIX)
  Dl_info info{};
  if (dladdr(function, &info) != 0 && info.dli_fname)
    return QFile::decodeName(info.dli_fname);
#endif
  Q_UNUSED(function);
  return {};
}

void demoPlugins(QTextStream& out)
{
  auto& factory = RTE::C_PluginFactory::GetInstance();
  auto& registry = RTE::C_PluginRegistry::GetInstance();
  // Plug-in code registers from static initialisation; the demo registers here so that
  // `rte plugins` lists only what really was loaded.
  const bool hello = registry.RegisterPlugin("Demo.Greetings", "Hello", "says hello", &makeHello);
  const bool moin = registry.RegisterPlugin("Demo.Greetings", "Moin", "says moin", &makeMoin);
  out << "Plug-ins register by domain and name when their code is loaded (usually from static\n"
         "initialisation). Two greetings registered: "
      << (hello && moin ? "both accepted" : "refused") << ".\n\n";
  rte::printRegisteredPlugins(out);

  out << "\nA second registration of a taken name is refused, the first one stays: "
      << (RTE::C_PluginRegistry::GetInstance().RegisterPlugin("Demo.Greetings", "Hello", "impostor", &makeMoin)
              ? "accepted"
              : "refused")
      << "\n";

  out << "\nMaking plug-ins by name:\n";
  out << "  without a context:                  "
      << QString::fromStdString(factory.CreatePluginObject("Demo.Greetings", "Hello")->GetDescription()) << "\n";
  Addressee forHello("Hello", "Ada");
  out << "  with a context for Hello:           "
      << QString::fromStdString(factory.CreatePluginObject("Demo.Greetings", "Hello", forHello)->GetDescription())
      << "\n";
  Addressee forMoin("Moin", "Ada");
  out << "  with a context meant for Moin:      "
      << (factory.CreatePluginObject("Demo.Greetings", "Hello", forMoin) ? "made" : "nothing made (creator not called)")
      << "\n";
  out << "  an unknown name:                    "
      << (factory.CreatePluginObject("Demo.Greetings", "Servus") ? "made" : "nothing made") << "\n";

  QTemporaryDir dir;
  if (!dir.isValid())
  {
    out << "\n(no temporary folder for the rest of the step)\n";
    return;
  }
  const QString configPath = dir.filePath(QStringLiteral("plugin-config.xml"));
  QFile config(configPath);
  if (config.open(QIODevice::WriteOnly))
  {
    config.write(R"(<?xml version="1.0" encoding="UTF-8"?>
<plugin-config>
  <plugin name="Codecs" path="plugins/codecs" recursive="true"/>
  <plugin name="Cameras" path="plugins/cameras" recursive="TRUE"/>
</plugin-config>
)");
    config.close();
  }
  out << "\nA plug-in configuration file (paths relative to its folder; only \"true\" is true):\n";
  const RTE::PluginConfiguration configuration(configPath);
  for (const auto& plugin : configuration.plugins())
    out << "  " << plugin.name.leftJustified(8) << " " << QDir(dir.path()).relativeFilePath(plugin.path)
        << "  recursive=" << (plugin.recursive ? "true" : "false") << "\n";

  QDir().mkpath(dir.filePath(QStringLiteral("plugins/codecs")));
  const QString broken = dir.filePath(QStringLiteral("plugins/codecs/broken") + RTE::pluginExtension());
  QFile fake(broken);
  if (fake.open(QIODevice::WriteOnly))
    fake.write("this is text, not a shared library\n");
  fake.close();
  out << "\nLoading what the first entry names (the folder holds a text file with a library name):\n";
  for (const QString& library : configuration.librariesFor(configuration.plugins().front()))
    rte::loadAndReport(library, out);
  const QString core = libraryOf(reinterpret_cast<const void*>(&RTE::pluginExtension));
  if (!core.isEmpty())
  {
    out << "Loading the library itself, which this tool loaded at start:\n";
    rte::loadAndReport(core, out);
  }
  out << "Results: 0 loaded, 1 failed (with the loader's text), 2 loaded before without new plug-ins.\n";

  registry.DeregisterPlugin("Demo.Greetings", "Hello");
  registry.DeregisterPlugin("Demo.Greetings", "Moin");
}

const rte::DemoStepRegistration step{{70, QStringLiteral("Plug-ins and libraries"), &demoPlugins}};

} // namespace
