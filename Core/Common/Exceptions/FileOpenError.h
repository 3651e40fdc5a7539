// A file that could not be opened.
#pragma once

#include <Core/Common/Exceptions/FileError.h>

#include <QCoreApplication>

namespace RTE
{

class CORECOMMON_EXPORT FileOpenError : public FileError
{
  Q_DECLARE_TR_FUNCTIONS(RTE::FileOpenError)

public:
  // "Error opening file '<fileName>'"
  explicit FileOpenError(const QString& fileName);
  // The same followed by ": " and the device's error string.
  FileOpenError(const QIODevice& device, const QString& fileName);
  ~FileOpenError() override;
};

} // namespace RTE
