#include <Core/Common/Parameter/LegacySignalBridge.h>

namespace RTE::Parameter
{

LegacySignalBridge::LegacySignalBridge() = default;
LegacySignalBridge::~LegacySignalBridge() = default;

} // namespace RTE::Parameter
