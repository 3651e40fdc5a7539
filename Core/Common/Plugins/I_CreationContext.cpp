#include <Core/Common/Plugins/I_CreationContext.h>

namespace RTE
{

// Out of line: the type information must live in this library (see I_Plugin).
I_CreationContext::~I_CreationContext() = default;

} // namespace RTE
