#include <Core/Common/Parameter/DefinitionAutoRegistration.h>

namespace RTE::Parameter
{

DefinitionAutoRegistration::DefinitionAutoRegistration(const QString& name,
                                                       std::function<std::shared_ptr<C_Tree>()> factory)
{
  DefinitionRegistry::Instance().Register(name, std::move(factory));
}

} // namespace RTE::Parameter
