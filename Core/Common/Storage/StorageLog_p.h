// Logging category of the settings storage ("Core.Serialization"); not installed.
// Reports of lenient readers go out at info level, failed loads and saves as warnings.
#pragma once

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcSerialization)
