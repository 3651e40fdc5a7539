#include <Core/Common/Utilities/CipherError.h>

namespace RTE
{

CipherError::~CipherError() = default;
CipherFormatError::~CipherFormatError() = default;
CipherAuthenticationError::~CipherAuthenticationError() = default;

} // namespace RTE
