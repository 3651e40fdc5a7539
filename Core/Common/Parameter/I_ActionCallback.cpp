#include <Core/Common/Parameter/I_ActionCallback.h>

namespace RTE::Parameter
{

I_ActionCallback::~I_ActionCallback() = default;

} // namespace RTE::Parameter
