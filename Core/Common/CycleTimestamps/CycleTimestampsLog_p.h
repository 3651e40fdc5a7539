// Logging category of the cycle timestamp files; not installed.
#pragma once

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcCycleTimestamps)
