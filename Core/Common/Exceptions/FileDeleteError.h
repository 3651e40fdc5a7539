// A file or folder that could not be deleted.
#pragma once

#include <Core/Common/Exceptions/FileError.h>

#include <QCoreApplication>

namespace RTE
{

class CORECOMMON_EXPORT FileDeleteError : public FileError
{
  Q_DECLARE_TR_FUNCTIONS(RTE::FileDeleteError)

public:
  // "Error deleting file or folder '<path>'"; detail is kept apart from the message.
  FileDeleteError(const QString& path, const QString& detail);
  // The same followed by ": " and the device's error string.
  FileDeleteError(const QIODevice& device, const QString& path, const QString& detail);
  ~FileDeleteError() override;

  const QString& detail() const { return m_detail; }

private:
  QString m_detail;
};

} // namespace RTE
