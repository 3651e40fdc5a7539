// The process-wide registry of parameter definitions: factories that make a tree, each
// under a name. Definitions normally register during static initialisation through a
// DefinitionAutoRegistration object; the parameter server creates trees from them.
//
//   auto tree = RTE::Parameter::DefinitionRegistry::Instance().Create("Camera");
#pragma once

#include <Core/Common/Parameter/C_Tree.h>

#include <QString>

#include <functional>
#include <map>
#include <memory>
#include <mutex>

namespace RTE::Parameter
{

class CORECOMMON_EXPORT DefinitionRegistry
{
public:
  using Factory = std::function<std::shared_ptr<C_Tree>()>;

  DefinitionRegistry(const DefinitionRegistry&) = delete;
  DefinitionRegistry& operator=(const DefinitionRegistry&) = delete;

  // Made on first use, thread-safe; lives until the process ends.
  static DefinitionRegistry& Instance();

  // Stores the factory under the name, replacing an earlier one of that name.
  void Register(const QString& name, Factory factory);
  // Forgets the name; an absent name is ignored.
  void Deregister(const QString& name);
  bool Contains(const QString& name);
  // A new tree from the named factory on each call. Throws RTE::Exception "No definition
  // for <name> found in parameter definition registry." for an unknown name. The factory
  // runs outside the registry's lock, so it may create other definitions.
  std::shared_ptr<C_Tree> Create(const QString& name);
  void Clear();

private:
  DefinitionRegistry();
  ~DefinitionRegistry();

  std::mutex m_mutex;
  std::map<QString, Factory> m_factories;
};

} // namespace RTE::Parameter
