// Logging category "Core.OperatingSystem" of the operating-system services and the
// system information; not installed.
#pragma once

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcOperatingSystem)
