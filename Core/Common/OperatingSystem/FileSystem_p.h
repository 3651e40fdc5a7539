// Platform pieces of the file functions and the logging category "Core.FileSystem";
// not installed.
#pragma once

#include <Core/Common/OperatingSystem/FileSystem.h>

#include <QLoggingCategory>

Q_DECLARE_LOGGING_CATEGORY(lcFileSystem)

namespace RTE::FileSystem::detail
{

// Drive class of the file system that holds path (which exists).
E_DriveType DeviceTypeOf(const QString& path);
// Version our builds record in a library's file name; invalid for anything else.
FileVersion ReadFileVersion(const QString& path);
bool RemoveNative(const QString& path);
// Copies up to length bytes from in to out at their current offsets, by the kernel where
// it can. Returns the bytes copied (0 at end of input) or -1 with errno set.
std::int64_t CopyRange(int in, int out, std::int64_t length);
// Pause between the retries of folder creation and waiting for access (100 ms); tests
// shorten it so that a give-up case does not take half a minute.
CORECOMMON_EXPORT void SetRetryPause(int milliseconds);

} // namespace RTE::FileSystem::detail
