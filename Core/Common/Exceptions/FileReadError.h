// A file that could not be read.
#pragma once

#include <Core/Common/Exceptions/FileError.h>

#include <QCoreApplication>

namespace RTE
{

class CORECOMMON_EXPORT FileReadError : public FileError
{
  Q_DECLARE_TR_FUNCTIONS(RTE::FileReadError)

public:
  // "Error reading from file '<fileName>'"
  explicit FileReadError(const QString& fileName);
  // The same followed by ": " and the device's error string.
  FileReadError(const QIODevice& device, const QString& fileName);
  ~FileReadError() override;
};

} // namespace RTE
