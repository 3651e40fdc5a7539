#include <Core/Common/Plugins/PluginExtension.h>

namespace RTE
{

QString pluginExtension()
{
#if defined(Q_OS_WIN)
  return QStringLiteral(".dll");
#elif defined(Q_OS_MACOS)
  return QStringLiteral(".dylib");
#else
  return QStringLiteral(".so");
#endif
}

} // namespace RTE
