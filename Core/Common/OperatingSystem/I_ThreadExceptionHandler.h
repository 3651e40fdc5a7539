// Receives the exceptions that escape the work of an RTE::Thread.
//
//   class Reporter : public RTE::I_ThreadExceptionHandler
//   {
//     void HandleException(std::exception_ptr, const QString& text) override { emit failed(text); }
//   };
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>

#include <exception>
#include <memory>

namespace RTE
{

class CORECOMMON_EXPORT I_ThreadExceptionHandler
{
public:
  virtual ~I_ThreadExceptionHandler();

  // Called on the failing thread with the exception and its text: the message of an
  // RTE::Exception, what() of a standard exception, "Unknown exception" otherwise.
  // Must not throw.
  virtual void HandleException(std::exception_ptr exception, const QString& text) = 0;
};

// The default handler: records the text in RTE::ThreadExceptionReport for the failing
// thread (so crash reports show it) and logs it as a warning to "Core.Threads".
CORECOMMON_EXPORT std::shared_ptr<I_ThreadExceptionHandler> CreateDefaultThreadExeptionHandler();

} // namespace RTE
