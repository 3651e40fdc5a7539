// Failures tied to a named file or folder. The subclasses say what was being done:
//
//   QFile f(path);
//   if (!f.open(QIODevice::ReadOnly))
//     RTE::Raise(RTE::FileOpenError(f, path));  // "Error opening file '<path>': <reason>"
#pragma once

#include <Core/Common/Exceptions/Exception.h>

class QIODevice;

namespace RTE
{

class CORECOMMON_EXPORT FileError : public Exception
{
public:
  FileError(const QString& message, const QString& fileName);
  // The message is the device's error string.
  FileError(const QIODevice& device, const QString& fileName);
  ~FileError() override;

  virtual void setFileName(const QString& fileName);
  virtual QString fileName() const;

protected:
  // text + ": " + the device's error string
  static QString withDeviceError(const QString& text, const QIODevice& device);

private:
  QString m_fileName;
};

} // namespace RTE
