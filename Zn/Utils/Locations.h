// Folders the operating system assigns to the current user.
//
//   const QString dataFolder = Zn::Locations::appDataPath().toString();
#pragma once

#include <Zn/Utils/Path.h>
#include <Zn/Utils/ZnUtilsExport.h>

namespace Zn::Locations
{

// The user's own application-data folder (on Linux $XDG_DATA_HOME, else ~/.local/share),
// not specific to one application.
ZN_UTILS_EXPORT Path appDataPath();

} // namespace Zn::Locations
