#include <Core/Common/OperatingSystem/I_ActivityControl.h>

namespace RTE
{

// Out of line so that the class's type information lives in the library.
I_ActivityControl::~I_ActivityControl() = default;

} // namespace RTE
