#include "XmlNames_p.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>

namespace Common::Private
{

void raiseEmptyName(const QString& message)
{
  RTE::Raise(RTE::InvalidArgumentError(message));
}

} // namespace Common::Private
