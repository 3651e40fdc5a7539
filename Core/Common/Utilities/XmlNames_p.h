// The one failure of the XML object model: an element without a name. Kept apart from
// the XML code so that the fuzz target can build that code on its own.
#pragma once

#include <QString>

namespace Common::Private
{

// Raises InvalidArgumentError with message.
[[noreturn]] void raiseEmptyName(const QString& message);

} // namespace Common::Private
