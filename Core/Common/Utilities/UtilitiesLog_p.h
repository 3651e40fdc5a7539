// Logging category of the general utilities; not installed.
#pragma once

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcUtilities)
