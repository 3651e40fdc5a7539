#include <Core/Common/Parameter/DefinitionRegistry.h>

#include "ParameterLog_p.h"

namespace RTE::Parameter
{

DefinitionRegistry::DefinitionRegistry() = default;
DefinitionRegistry::~DefinitionRegistry() = default;

DefinitionRegistry& DefinitionRegistry::Instance()
{
  static DefinitionRegistry instance;
  return instance;
}

void DefinitionRegistry::Register(const QString& name, Factory factory)
{
  std::lock_guard guard(m_mutex);
  m_factories[name] = std::move(factory);
}

void DefinitionRegistry::Deregister(const QString& name)
{
  std::lock_guard guard(m_mutex);
  m_factories.erase(name);
}

bool DefinitionRegistry::Contains(const QString& name)
{
  std::lock_guard guard(m_mutex);
  return m_factories.contains(name);
}

std::shared_ptr<C_Tree> DefinitionRegistry::Create(const QString& name)
{
  Factory factory;
  {
    std::lock_guard guard(m_mutex);
    const auto found = m_factories.find(name);
    if (found != m_factories.end())
      factory = found->second;
  }
  if (!factory)
    RTE::Raise(
        RTE::Exception(QCoreApplication::translate("RTE::Parameter::DefinitionRegistry",
                                                   "No definition for %1 found in parameter definition registry.")
                           .arg(name)));
  return factory();
}

void DefinitionRegistry::Clear()
{
  std::lock_guard guard(m_mutex);
  m_factories.clear();
}

} // namespace RTE::Parameter
