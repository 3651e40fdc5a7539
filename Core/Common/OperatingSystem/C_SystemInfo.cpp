#include <Core/Common/OperatingSystem/C_SystemInfo.h>

namespace RTE
{

C_SystemInfo& C_SystemInfo::GetInstance()
{
  static C_SystemInfo instance;
  return instance;
}

} // namespace RTE
