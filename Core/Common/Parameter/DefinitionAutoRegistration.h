// Declares a parameter definition at static initialisation, so that it is registered
// before the application uses the registry:
//
//   namespace {
//   const RTE::Parameter::DefinitionAutoRegistration camera("Camera", [] {
//     auto tree = RTE::Parameter::CreateTree();
//     tree->AddChild(RTE::Parameter::CreateDouble("ExposureTime", 10.0));
//     return tree;
//   });
//   }
#pragma once

#include <Core/Common/Parameter/DefinitionRegistry.h>

namespace RTE::Parameter
{

class CORECOMMON_EXPORT DefinitionAutoRegistration
{
public:
  // Registers the factory with DefinitionRegistry::Instance(); the definition stays
  // registered when this object goes.
  DefinitionAutoRegistration(const QString& name, std::function<std::shared_ptr<C_Tree>()> factory);
  DefinitionAutoRegistration(const DefinitionAutoRegistration&) = delete;
  DefinitionAutoRegistration& operator=(const DefinitionAutoRegistration&) = delete;
};

} // namespace RTE::Parameter
