// A file that could not be written.
#pragma once

#include <Core/Common/Exceptions/FileError.h>

#include <QCoreApplication>

namespace RTE
{

class CORECOMMON_EXPORT FileWriteError : public FileError
{
  Q_DECLARE_TR_FUNCTIONS(RTE::FileWriteError)

public:
  // "Error writing to file '<fileName>'"
  explicit FileWriteError(const QString& fileName);
  // The same followed by ": " and the device's error string.
  FileWriteError(const QIODevice& device, const QString& fileName);
  ~FileWriteError() override;
};

} // namespace RTE
