#include "ThreadsLog_p.h"

#include <Core/Common/Exceptions/Exception.h>

#include <exception>

Q_LOGGING_CATEGORY(lcThreads, "Core.Threads", QtInfoMsg)

namespace RTE::detail
{

QString currentExceptionText()
{
  try
  {
    throw;
  }
  catch (const Exception& e)
  {
    return e.message();
  }
  catch (const std::exception& e)
  {
    return QString::fromLocal8Bit(e.what());
  }
  catch (...)
  {
    return QStringLiteral("Unknown exception");
  }
}

} // namespace RTE::detail
