// Constants and error helpers shared by the readers of the cycle timestamp files; not
// installed.
#pragma once

#include <Core/Common/Exceptions/FileOpenError.h>
#include <Core/Common/Exceptions/FileReadError.h>
#include <Core/Common/Exceptions/Raise.h>

#include <QFileDevice>
#include <QUuid>

#include <source_location>

namespace RTE::CycleTimestampsFile
{

inline const QUuid formatId{0x11539ace, 0xe11d, 0x4fda, 0x8e, 0x92, 0x48, 0xae, 0x93, 0x85, 0x85, 0xca};
constexpr int streamVersion = 19; // QDataStream::Qt_5_13
constexpr qint32 currentVersion = 4;

// The file name behind a device, or an empty text for buffers and sockets.
inline QString nameOf(const QIODevice& device)
{
  const auto* file = qobject_cast<const QFileDevice*>(&device);
  return file ? file->fileName() : QString();
}

[[noreturn]] inline void raiseReadError(const QIODevice& device, const QString& message,
                                        const std::source_location& where = std::source_location::current())
{
  FileReadError error(nameOf(device));
  error.setMessage(message);
  Raise(std::move(error), where);
}

[[noreturn]] inline void raiseOpenError(const QString& fileName, const QString& message,
                                        const std::source_location& where = std::source_location::current())
{
  FileOpenError error(fileName);
  error.setMessage(message);
  Raise(std::move(error), where);
}

} // namespace RTE::CycleTimestampsFile
