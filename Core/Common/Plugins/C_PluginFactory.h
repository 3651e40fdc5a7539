// The plug-in factory: registrations in registration order and the registration
// errors that registering code reported.
//
//   auto& factory = RTE::C_PluginFactory::GetInstance();
//   for (const std::string& name : factory.GetListOfPluginTypes("Tarvell.Compression"))
//     auto codec = factory.CreatePluginObject("Tarvell.Compression", name);
//
// Registering code normally goes through C_PluginRegistry. Every successful
// registration is reported to the library manager, which records it for the library
// being loaded at that moment (if any).
//
// No lock: registration and deregistration happen while code is loaded or unloaded
// and must not overlap with each other or with lookups; creation may run on any
// thread once registration is finished.
#pragma once

#include <Core/Common/Plugins/I_PluginFactory.h>

namespace RTE
{

class CORECOMMON_EXPORT C_PluginFactory : public I_PluginFactory
{
public:
  // The process-wide factory, made on first use and kept until the process ends (plug-in
  // libraries may still deregister while the process shuts down).
  static C_PluginFactory& GetInstance();

  C_PluginFactory();
  ~C_PluginFactory() override;

  unsigned int GetNumberOfPlugins() override;
  std::vector<std::string> GetListOfPlugins() override;
  std::vector<std::string> GetListOfPluginTypes(const std::string& domain) override;
  std::vector<std::string> GetListOfPluginDescriptions(const std::string& domain) override;
  std::shared_ptr<I_Plugin> CreatePluginObject(const std::string& domain, const std::string& name,
                                               I_CreationContext& context) override;
  std::shared_ptr<I_Plugin> CreatePluginObject(const std::string& domain, const std::string& name) override;
  std::unique_ptr<I_Plugin> CreatePluginObjectPtr(const std::string& domain, const std::string& name) override;
  bool RegisterPlugin(const std::string& domain, const std::string& name, const std::string& description,
                      PluginCreator creator) override;
  void DeregisterPlugin(const std::string& domain, const std::string& name) override;
  void AddRegistrationError(const std::string& message) override;
  std::vector<std::string> GetRegistrationErrors() const override;
  void ClearRegistrationErrors() override;

private:
  // The first registration with exactly this domain and name, or null.
  C_PluginObject* Find(const std::string& domain, const std::string& name);
  void deregisterAllPlugins();

  std::vector<std::unique_ptr<C_PluginObject>> m_plugins;
  std::vector<std::string> m_registrationErrors;
};

} // namespace RTE
