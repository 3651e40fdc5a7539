// The process-wide parameter server: one tree per pair of definition name and instance
// number, made from its registered definition on first request, so that every part of
// the application asking for the same pair gets the same tree.
//
//   auto& server = RTE::Parameter::C_ParameterServer::GetInstance();
//   auto camera0 = server.Get("Camera", 0); // made by the "Camera" definition
//   auto again = server.Get("Camera", 0);   // the same tree
//   auto camera1 = server.Get("Camera", 1); // another tree of that definition
#pragma once

#include <Core/Common/Parameter/C_Tree.h>

#include <memory>
#include <string>
#include <vector>

namespace RTE::Parameter
{

class CORECOMMON_EXPORT C_ParameterServer
{
public:
  C_ParameterServer(const C_ParameterServer&) = delete;
  C_ParameterServer& operator=(const C_ParameterServer&) = delete;

  // Made on first use, thread-safe; lives until the process ends.
  static C_ParameterServer& GetInstance();

  // The tree for the key, made on first request. Throws RTE::Exception "No definition
  // for <name> found in parameter definition registry." for an unknown definition, and
  // then holds nothing new. A definition's factory must not call the server.
  std::shared_ptr<C_Tree> Get(const std::string& definitionName, int instance);
  // Whether the key holds a tree.
  bool Contains(const std::string& definitionName, int instance);
  // Whether this tree object is held under any key.
  bool Contains(std::shared_ptr<C_Tree> tree) const;
  // The instance number the tree is held under; throws RTE::Exception "Given tree not
  // found" for a tree the server does not hold.
  int GetKey(std::shared_ptr<C_Tree> tree) const;
  // The definition name the tree is held under; throws as GetKey.
  std::string GetDefinitionName(std::shared_ptr<C_Tree> tree);
  // All trees of that definition, in instance order.
  std::vector<std::shared_ptr<C_Tree>> GetList(const std::string& definitionName) const;
  // Forgets the tree of the key; whoever holds it keeps it.
  void Remove(const std::string& definitionName, int instance);

private:
  C_ParameterServer();
  ~C_ParameterServer();
};

} // namespace RTE::Parameter
