#include <Core/Common/Units/I_StringToTimeConverter.h>

namespace RTE
{

I_StringToTimeConverter::~I_StringToTimeConverter() = default;

} // namespace RTE
