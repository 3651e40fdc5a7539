#include <Core/Common/Plugins/C_PluginFactory.h>

#include <Core/Common/Plugins/I_CreationContext.h>
#include <Core/Common/Plugins/LibraryManager.h>

#include <algorithm>

namespace RTE
{

C_PluginFactory& C_PluginFactory::GetInstance()
{
  // Never destroyed: static destructors of plug-in libraries may still deregister
  // after this library's own statics are gone.
  static C_PluginFactory* const instance = new C_PluginFactory;
  return *instance;
}

C_PluginFactory::C_PluginFactory() = default;

C_PluginFactory::~C_PluginFactory()
{
  deregisterAllPlugins();
}

unsigned int C_PluginFactory::GetNumberOfPlugins()
{
  return static_cast<unsigned int>(m_plugins.size());
}

std::vector<std::string> C_PluginFactory::GetListOfPlugins()
{
  std::vector<std::string> domains;
  domains.reserve(m_plugins.size());
  for (const auto& plugin : m_plugins)
    domains.push_back(plugin->GetDomain());
  return domains;
}

std::vector<std::string> C_PluginFactory::GetListOfPluginTypes(const std::string& domain)
{
  std::vector<std::string> names;
  for (const auto& plugin : m_plugins)
    if (plugin->GetDomain() == domain)
      names.push_back(plugin->GetName());
  return names;
}

std::vector<std::string> C_PluginFactory::GetListOfPluginDescriptions(const std::string& domain)
{
  std::vector<std::string> descriptions;
  for (const auto& plugin : m_plugins)
    if (plugin->GetDomain() == domain)
      descriptions.push_back(plugin->GetDescription());
  return descriptions;
}

std::shared_ptr<I_Plugin> C_PluginFactory::CreatePluginObject(const std::string& domain, const std::string& name,
                                                              I_CreationContext& context)
{
  const C_PluginObject* plugin = Find(domain, name);
  if (!plugin || context.GetDomain() != domain || context.GetName() != name)
    return {};
  return plugin->Create(&context);
}

std::shared_ptr<I_Plugin> C_PluginFactory::CreatePluginObject(const std::string& domain, const std::string& name)
{
  const C_PluginObject* plugin = Find(domain, name);
  if (!plugin)
    return {};
  return plugin->Create(nullptr);
}

std::unique_ptr<I_Plugin> C_PluginFactory::CreatePluginObjectPtr(const std::string& domain, const std::string& name)
{
  const C_PluginObject* plugin = Find(domain, name);
  if (!plugin)
    return {};
  return plugin->Create(nullptr);
}

bool C_PluginFactory::RegisterPlugin(const std::string& domain, const std::string& name, const std::string& description,
                                     PluginCreator creator)
{
  if (Find(domain, name))
    return false;
  m_plugins.push_back(std::make_unique<C_PluginObject>(domain, name, description, creator));
  LibraryManager::instance().currentLibraryRegistered(LibraryManager::PluginInfo{domain, name});
  return true;
}

void C_PluginFactory::DeregisterPlugin(const std::string& domain, const std::string& name)
{
  std::erase_if(m_plugins, [&](const std::unique_ptr<C_PluginObject>& plugin)
                { return plugin->GetDomain() == domain && plugin->GetName() == name; });
}

void C_PluginFactory::AddRegistrationError(const std::string& message)
{
  m_registrationErrors.push_back(message);
}

std::vector<std::string> C_PluginFactory::GetRegistrationErrors() const
{
  return m_registrationErrors;
}

void C_PluginFactory::ClearRegistrationErrors()
{
  m_registrationErrors.clear();
}

C_PluginObject* C_PluginFactory::Find(const std::string& domain, const std::string& name)
{
  const auto it = std::find_if(m_plugins.begin(), m_plugins.end(),
                               [&](const std::unique_ptr<C_PluginObject>& plugin)
                               { return plugin->GetDomain() == domain && plugin->GetName() == name; });
  return it == m_plugins.end() ? nullptr : it->get();
}

void C_PluginFactory::deregisterAllPlugins()
{
  m_plugins.clear();
}

} // namespace RTE
