// Logging category of the units subsystem; not installed.
#pragma once

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcUnits)
