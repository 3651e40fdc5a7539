#include <Core/Common/OperatingSystem/I_ThreadExceptionHandler.h>

#include <Core/Common/Exceptions/ThreadExceptionReport.h>
#include <Core/Common/OperatingSystem/ThreadHandle.h>

#include "ThreadsLog_p.h"

namespace RTE
{

I_ThreadExceptionHandler::~I_ThreadExceptionHandler() = default;

namespace
{

class DefaultThreadExceptionHandler final : public I_ThreadExceptionHandler
{
public:
  void HandleException(std::exception_ptr /*exception*/, const QString& text) override
  {
    ThreadExceptionReport::Add(text);
    qCWarning(lcThreads).noquote() << "Thread" << ThreadHandle::GetThreadId() << "ended by an exception:" << text;
  }
};

} // namespace

std::shared_ptr<I_ThreadExceptionHandler> CreateDefaultThreadExeptionHandler()
{
  return std::make_shared<DefaultThreadExceptionHandler>();
}

} // namespace RTE
