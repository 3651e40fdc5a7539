#include <Core/Common/Plugins/C_PluginRegistry.h>

#include <Core/Common/Plugins/C_PluginFactory.h>

namespace RTE
{

C_PluginRegistry& C_PluginRegistry::GetInstance()
{
  static C_PluginRegistry instance;
  return instance;
}

bool C_PluginRegistry::RegisterPlugin(const std::string& domain, const std::string& name,
                                      const std::string& description, PluginCreator creator)
{
  return C_PluginFactory::GetInstance().RegisterPlugin(domain, name, description, creator);
}

void C_PluginRegistry::DeregisterPlugin(const std::string& domain, const std::string& name)
{
  C_PluginFactory::GetInstance().DeregisterPlugin(domain, name);
}

void C_PluginRegistry::AddError(const std::string& message)
{
  C_PluginFactory::GetInstance().AddRegistrationError(message);
}

} // namespace RTE
