#include <Core/Common/Plugins/I_PluginFactory.h>

namespace RTE
{

I_PluginFactory::~I_PluginFactory() = default;

} // namespace RTE
