// A C stream (FILE*) for a path given as QString, for C libraries that want a FILE*.
//
//   RTE::QFileAsFILE file(path);
//   file.openForReading();
//   png_init_io(png, file.get());
//
// Copies share the stream and its ownership flag: a copy that closes it must be told
// apart with alreadyClosed() on the others.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>

#include <cstdio>

namespace RTE
{

class CORECOMMON_EXPORT QFileAsFILE
{
public:
  explicit QFileAsFILE(const QString& path);
  QFileAsFILE(const QFileAsFILE& other) = default;
  QFileAsFILE& operator=(const QFileAsFILE& other) = default;
  ~QFileAsFILE();

  // Throw RTE::VerificationFailed "File already open" when open; RTE::Exception
  // "Unable to open file \"path\"" / "Unable to create file \"path\"" on failure.
  void openForReading();
  void openForWriting();
  FILE* get() const;
  // Closes the stream if this object owns it.
  void close();
  // Someone else closed the stream; this object will not close it.
  void alreadyClosed();

private:
  void open(bool forWriting);

  QString m_path;
  FILE* m_stream = nullptr;
  bool m_owned = false;
};

} // namespace RTE
