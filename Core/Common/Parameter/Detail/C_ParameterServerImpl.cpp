#include <Core/Common/Parameter/Detail/C_ParameterServerImpl.h>

#include "../ParameterLog_p.h"

#include <Core/Common/Parameter/DefinitionRegistry.h>

#include <algorithm>
#include <limits>

namespace RTE::Parameter::Detail
{

namespace
{

[[noreturn]] void raiseTreeNotFound(const std::source_location& where = std::source_location::current())
{
  RTE::Raise(RTE::Exception(QCoreApplication::translate("RTE::Parameter::C_ParameterServer", "Given tree not found")),
             where);
}

} // namespace

C_ParameterServerImpl::C_ParameterServerImpl() = default;
C_ParameterServerImpl::~C_ParameterServerImpl() = default;

C_ParameterServerImpl& C_ParameterServerImpl::GetInstance()
{
  static C_ParameterServerImpl instance;
  return instance;
}

std::shared_ptr<C_Tree> C_ParameterServerImpl::Get(const std::string& definitionName, int instance)
{
  std::lock_guard guard(m_mutex);
  S_InstanceKey key{definitionName, instance};
  const auto found = m_trees.find(key);
  if (found != m_trees.end())
    return found->second;
  auto tree = DefinitionRegistry::Instance().Create(QString::fromStdString(definitionName));
  // A factory that made nothing is not remembered, so the next request asks it again.
  if (tree)
    m_trees.emplace(std::move(key), tree);
  return tree;
}

bool C_ParameterServerImpl::Contains(const std::string& definitionName, int instance)
{
  std::lock_guard guard(m_mutex);
  return m_trees.contains(S_InstanceKey{definitionName, instance});
}

C_ParameterServerImpl::Trees::const_iterator C_ParameterServerImpl::Find(const std::shared_ptr<C_Tree>& tree) const
{
  return std::find_if(m_trees.begin(), m_trees.end(),
                      [&tree](const auto& entry) { return tree && entry.second == tree; });
}

bool C_ParameterServerImpl::Contains(std::shared_ptr<C_Tree> tree) const
{
  std::lock_guard guard(m_mutex);
  return Find(tree) != m_trees.end();
}

int C_ParameterServerImpl::GetKey(std::shared_ptr<C_Tree> tree) const
{
  std::lock_guard guard(m_mutex);
  const auto found = Find(tree);
  if (found == m_trees.end())
    raiseTreeNotFound();
  return found->first.instance;
}

std::string C_ParameterServerImpl::GetDefinitionName(std::shared_ptr<C_Tree> tree)
{
  std::lock_guard guard(m_mutex);
  const auto found = Find(tree);
  if (found == m_trees.end())
    raiseTreeNotFound();
  return found->first.definitionName;
}

std::vector<std::shared_ptr<C_Tree>> C_ParameterServerImpl::GetList(const std::string& definitionName) const
{
  std::lock_guard guard(m_mutex);
  std::vector<std::shared_ptr<C_Tree>> trees;
  for (auto it = m_trees.lower_bound(S_InstanceKey{definitionName, std::numeric_limits<int>::min()});
       it != m_trees.end() && it->first.definitionName == definitionName; ++it)
    trees.push_back(it->second);
  return trees;
}

void C_ParameterServerImpl::Remove(const std::string& definitionName, int instance)
{
  std::lock_guard guard(m_mutex);
  m_trees.erase(S_InstanceKey{definitionName, instance});
}

void C_ParameterServerImpl::Clear()
{
  std::lock_guard guard(m_mutex);
  m_trees.clear();
}

} // namespace RTE::Parameter::Detail
