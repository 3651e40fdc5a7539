// Logging category and shared helpers of the thread services; not installed.
#pragma once

#include <QLoggingCategory>
#include <QString>

Q_DECLARE_LOGGING_CATEGORY(lcThreads)

namespace RTE::detail
{

// The text of the exception being handled; call only inside a catch block. The message
// of an RTE::Exception, what() of a standard exception, "Unknown exception" otherwise.
QString currentExceptionText();

} // namespace RTE::detail
