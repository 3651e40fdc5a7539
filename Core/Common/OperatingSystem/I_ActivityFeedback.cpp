#include <Core/Common/OperatingSystem/I_ActivityFeedback.h>

namespace RTE
{

// Out of line so that the class's type information lives in the library.
I_ActivityFeedback::~I_ActivityFeedback() = default;

} // namespace RTE
