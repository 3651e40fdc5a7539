// The file suffix of shared libraries on this platform, used to recognise plug-in
// library files: ".dll" on Windows, ".dylib" on macOS, ".so" elsewhere.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>

namespace RTE
{

CORECOMMON_EXPORT QString pluginExtension();

} // namespace RTE
