// The implementation behind C_ParameterServer: one tree per pair of definition name and
// instance number, made from the definition registry on first request. Use
// C_ParameterServer; this class is public only for Clear (tests, shutdown).
#pragma once

#include <Core/Common/Parameter/C_Tree.h>

#include <compare>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <vector>

namespace RTE::Parameter::Detail
{

// Ordered by definition name, then instance number.
struct CORECOMMON_EXPORT S_InstanceKey
{
  std::string definitionName;
  int instance = 0;

  friend auto operator<=>(const S_InstanceKey&, const S_InstanceKey&) = default;
};

class CORECOMMON_EXPORT C_ParameterServerImpl
{
public:
  C_ParameterServerImpl(const C_ParameterServerImpl&) = delete;
  C_ParameterServerImpl& operator=(const C_ParameterServerImpl&) = delete;

  static C_ParameterServerImpl& GetInstance();

  // The tree of the key, made by DefinitionRegistry::Create on first request while the
  // server's lock is held (a definition's factory must not call the server). A registry
  // failure propagates and stores nothing.
  std::shared_ptr<C_Tree> Get(const std::string& definitionName, int instance);
  bool Contains(const std::string& definitionName, int instance);
  // Whether this tree object is held under any key.
  bool Contains(std::shared_ptr<C_Tree> tree) const;
  // Throw RTE::Exception "Given tree not found" for a tree the server does not hold.
  int GetKey(std::shared_ptr<C_Tree> tree) const;
  std::string GetDefinitionName(std::shared_ptr<C_Tree> tree);
  // The trees of one definition in instance order.
  std::vector<std::shared_ptr<C_Tree>> GetList(const std::string& definitionName) const;
  // Forgets the tree of the key; holders keep it.
  void Remove(const std::string& definitionName, int instance);
  // Forgets all trees.
  void Clear();

private:
  using Trees = std::map<S_InstanceKey, std::shared_ptr<C_Tree>>;

  C_ParameterServerImpl();
  ~C_ParameterServerImpl();

  Trees::const_iterator Find(const std::shared_ptr<C_Tree>& tree) const;

  mutable std::mutex m_mutex;
  Trees m_trees;
};

} // namespace RTE::Parameter::Detail
