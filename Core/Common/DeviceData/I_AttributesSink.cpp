#include <Core/Common/DeviceData/I_AttributesSink.h>

namespace RTE
{

I_AttributesSink::~I_AttributesSink() = default;

} // namespace RTE
