// Whether a shared library file is already mapped into the process; not installed.
#pragma once

#include <QString>

namespace RTE::detail
{

// True when the file at path is loaded in the process (by any means). Does not load it.
bool isLibraryResident(const QString& path);

} // namespace RTE::detail
