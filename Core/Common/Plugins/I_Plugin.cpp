#include <Core/Common/Plugins/I_Plugin.h>

namespace RTE
{

// Out of line so that the type information lives in this library and dynamic_cast
// works across plug-in libraries.
I_Plugin::~I_Plugin() = default;

} // namespace RTE
