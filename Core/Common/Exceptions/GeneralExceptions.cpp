#include <Core/Common/Exceptions/GeneralExceptions.h>

namespace RTE
{

LogicError::~LogicError() = default;
OutOfRangeError::~OutOfRangeError() = default;
InvalidArgumentError::~InvalidArgumentError() = default;
FileIOError::~FileIOError() = default;
AssertionFailed::~AssertionFailed() = default;
PreconditionFailed::~PreconditionFailed() = default;
PostconditionFailed::~PostconditionFailed() = default;
VerificationFailed::~VerificationFailed() = default;
NotImplemented::~NotImplemented() = default;
InvalidRequest::~InvalidRequest() = default;
Timeout::~Timeout() = default;

} // namespace RTE
