// The plug-in factory's interface: what is registered, making plug-ins by domain and
// name, registering and deregistering, and the registration errors that registering
// code collected. The process-wide implementation is C_PluginFactory::GetInstance().
//
// Nothing here throws: an unknown plug-in gives an empty pointer, a duplicate
// registration gives false. The operations keep this declaration order (the order
// of the virtual table); add new ones only at the end.
#pragma once

#include <Core/Common/Plugins/C_PluginObject.h>

#include <memory>
#include <string>
#include <vector>

namespace RTE
{

class I_CreationContext;

class CORECOMMON_EXPORT I_PluginFactory
{
public:
  I_PluginFactory() = default;
  I_PluginFactory(const I_PluginFactory&) = delete;
  I_PluginFactory& operator=(const I_PluginFactory&) = delete;

  // The number of registrations.
  virtual unsigned int GetNumberOfPlugins() = 0;
  // The domain of every registration in registration order; a domain appears once per
  // registration, not once per domain.
  virtual std::vector<std::string> GetListOfPlugins() = 0;
  // The names registered in the domain, in registration order; empty for an unknown domain.
  virtual std::vector<std::string> GetListOfPluginTypes(const std::string& domain) = 0;
  // The descriptions of the same registrations, in the same order.
  virtual std::vector<std::string> GetListOfPluginDescriptions(const std::string& domain) = 0;
  // Makes the plug-in, handing the context to its creator, only when the context names
  // this domain and name; otherwise, or for an unknown plug-in, an empty pointer and the
  // creator is not called.
  virtual std::shared_ptr<I_Plugin> CreatePluginObject(const std::string& domain, const std::string& name,
                                                       I_CreationContext& context) = 0;
  // Makes the plug-in with a null context; an empty pointer for an unknown plug-in.
  virtual std::shared_ptr<I_Plugin> CreatePluginObject(const std::string& domain, const std::string& name) = 0;
  // As above, as a unique pointer.
  virtual std::unique_ptr<I_Plugin> CreatePluginObjectPtr(const std::string& domain, const std::string& name) = 0;
  // Appends a registration; false (and the earlier registration stays) when the domain
  // and name are taken. Domain and name compare exactly, case-sensitive.
  virtual bool RegisterPlugin(const std::string& domain, const std::string& name, const std::string& description,
                              PluginCreator creator) = 0;
  // Removes every registration of that domain and name; an unknown pair is ignored.
  virtual void DeregisterPlugin(const std::string& domain, const std::string& name) = 0;
  // Collects a text describing a registration that failed; never raised.
  virtual void AddRegistrationError(const std::string& message) = 0;
  // The collected texts in the order reported (a copy).
  virtual std::vector<std::string> GetRegistrationErrors() const = 0;
  virtual void ClearRegistrationErrors() = 0;

  virtual ~I_PluginFactory();
};

} // namespace RTE
