// The entry point for code that registers plug-ins, usually from a static object of a
// library so that loading the library is enough to offer its plug-ins:
//
//   namespace {
//   std::unique_ptr<RTE::I_Plugin> makeZlib(RTE::I_CreationContext*) { return std::make_unique<Zlib>(); }
//   const bool registered = RTE::C_PluginRegistry::GetInstance().RegisterPlugin(
//       "Tarvell.Compression", "Zlib", "zlib deflate", &makeZlib);
//   }
//
// Every operation forwards to the process-wide C_PluginFactory. Code that catches a
// problem while registering reports it with AddError; a host shows the collected
// texts (C_PluginFactory::GetRegistrationErrors) after loading.
#pragma once

#include <Core/Common/Plugins/C_PluginObject.h>

#include <string>

namespace RTE
{

class CORECOMMON_EXPORT C_PluginRegistry
{
public:
  static C_PluginRegistry& GetInstance();

  // C_PluginFactory::RegisterPlugin: false when the domain and name are taken.
  bool RegisterPlugin(const std::string& domain, const std::string& name, const std::string& description,
                      PluginCreator creator);
  // C_PluginFactory::DeregisterPlugin.
  void DeregisterPlugin(const std::string& domain, const std::string& name);
  // C_PluginFactory::AddRegistrationError.
  void AddError(const std::string& message);
};

} // namespace RTE
