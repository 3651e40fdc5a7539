#include <Core/Common/Parameter/C_ParameterServer.h>

#include <Core/Common/Parameter/Detail/C_ParameterServerImpl.h>

namespace RTE::Parameter
{

namespace
{

Detail::C_ParameterServerImpl& impl()
{
  return Detail::C_ParameterServerImpl::GetInstance();
}

} // namespace

C_ParameterServer::C_ParameterServer() = default;
C_ParameterServer::~C_ParameterServer() = default;

C_ParameterServer& C_ParameterServer::GetInstance()
{
  static C_ParameterServer instance;
  return instance;
}

std::shared_ptr<C_Tree> C_ParameterServer::Get(const std::string& definitionName, int instance)
{
  return impl().Get(definitionName, instance);
}

bool C_ParameterServer::Contains(const std::string& definitionName, int instance)
{
  return impl().Contains(definitionName, instance);
}

bool C_ParameterServer::Contains(std::shared_ptr<C_Tree> tree) const
{
  return impl().Contains(std::move(tree));
}

int C_ParameterServer::GetKey(std::shared_ptr<C_Tree> tree) const
{
  return impl().GetKey(std::move(tree));
}

std::string C_ParameterServer::GetDefinitionName(std::shared_ptr<C_Tree> tree)
{
  return impl().GetDefinitionName(std::move(tree));
}

std::vector<std::shared_ptr<C_Tree>> C_ParameterServer::GetList(const std::string& definitionName) const
{
  return impl().GetList(definitionName);
}

void C_ParameterServer::Remove(const std::string& definitionName, int instance)
{
  impl().Remove(definitionName, instance);
}

} // namespace RTE::Parameter
