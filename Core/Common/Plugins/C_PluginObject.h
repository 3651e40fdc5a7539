// One registration of the plug-in factory: domain, name, description and the function
// that makes the plug-in.
#pragma once

#include <Core/Common/Plugins/I_Plugin.h>

#include <memory>
#include <string>

namespace RTE
{

class I_CreationContext;

// Makes a plug-in; receives the caller's context or a null pointer.
using PluginCreator = std::unique_ptr<I_Plugin> (*)(I_CreationContext*);

class CORECOMMON_EXPORT C_PluginObject
{
public:
  C_PluginObject(std::string domain, std::string name, std::string description, PluginCreator creator);
  C_PluginObject(const C_PluginObject&) = default;
  C_PluginObject& operator=(const C_PluginObject&) = default;
  virtual ~C_PluginObject();

  const std::string& GetDomain() const { return m_domain; }
  const std::string& GetName() const { return m_name; }
  const std::string& GetDescription() const { return m_description; }
  PluginCreator GetCreator() const { return m_creator; }

  // Calls the creator with the context (may be null). An empty pointer when the
  // registration has no creator; what the creator throws passes on.
  std::unique_ptr<I_Plugin> Create(I_CreationContext* context) const;

private:
  std::string m_domain;
  std::string m_name;
  std::string m_description;
  PluginCreator m_creator = nullptr;
};

} // namespace RTE
