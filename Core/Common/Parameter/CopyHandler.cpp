#include <Core/Common/Parameter/CopyHandler.h>

namespace RTE::Parameter
{

CopyHandler::~CopyHandler() = default;

} // namespace RTE::Parameter
