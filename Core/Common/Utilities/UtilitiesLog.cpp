#include "UtilitiesLog_p.h"

Q_LOGGING_CATEGORY(lcUtilities, "Core.Utilities")
