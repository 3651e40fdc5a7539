// The service visibility level of the running application: who is looking.
// 0 = customer, 1 = service engineer, 2 = developer. The host sets it once at start-up
// (for example from its command line); the library only asks.
//
//   Service::SetVisibilityLevel(2);
//   if (Service::IsVisibilityLevel(1)) showServicePage();
#pragma once

#include <Core/Common/CoreCommonExport.h>

namespace Service
{

// Sets the current level; values below 0 become 0, above 2 become 2. Thread-safe.
CORECOMMON_EXPORT void SetVisibilityLevel(int level);

// The current level; 0 until the host sets another.
CORECOMMON_EXPORT int GetVisibilityLevel();

// Whether content meant for the given audience may be shown: level 0 always; level 1
// when the current level is not 0; level 2 only when the current level is exactly 2.
// Levels below 0 count as 0 and above 2 as 2.
CORECOMMON_EXPORT bool IsVisibilityLevel(int level);

} // namespace Service
