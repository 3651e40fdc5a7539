#include <Core/Common/Units/I_TimeToStringConverter.h>

namespace RTE
{

I_TimeToStringConverter::~I_TimeToStringConverter() = default;

} // namespace RTE
