#include <Core/Common/Exceptions/FileError.h>

#include <QIODevice>

namespace RTE
{

FileError::FileError(const QString& message, const QString& fileName) : Exception(message), m_fileName(fileName) {}

FileError::FileError(const QIODevice& device, const QString& fileName) :
    Exception(device.errorString()),
    m_fileName(fileName)
{
}

FileError::~FileError() = default;

void FileError::setFileName(const QString& fileName)
{
  m_fileName = fileName;
}

QString FileError::fileName() const
{
  return m_fileName;
}

QString FileError::withDeviceError(const QString& text, const QIODevice& device)
{
  return text + QStringLiteral(": ") + device.errorString();
}

} // namespace RTE
