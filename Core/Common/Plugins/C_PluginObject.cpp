#include <Core/Common/Plugins/C_PluginObject.h>

#include <utility>

namespace RTE
{

C_PluginObject::C_PluginObject(std::string domain, std::string name, std::string description, PluginCreator creator) :
    m_domain(std::move(domain)),
    m_name(std::move(name)),
    m_description(std::move(description)),
    m_creator(creator)
{
}

C_PluginObject::~C_PluginObject() = default;

std::unique_ptr<I_Plugin> C_PluginObject::Create(I_CreationContext* context) const
{
  if (!m_creator)
    return {};
  return m_creator(context);
}

} // namespace RTE
