// The fuzz build's stand-in for the library's empty-name error (XmlNames.cpp raises it
// through RTE::Raise, which Debian's clang cannot compile). The targets never create
// nodes, so reaching it is a fault.
#include <Core/Common/Utilities/XmlNames_p.h>

namespace Common::Private
{

void raiseEmptyName(const QString&)
{
  __builtin_trap();
}

} // namespace Common::Private
