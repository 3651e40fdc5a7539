#include <Core/Common/Exceptions/FileOpenError.h>

namespace RTE
{

FileOpenError::FileOpenError(const QString& fileName) : FileError(tr("Error opening file '%1'").arg(fileName), fileName)
{
}

FileOpenError::FileOpenError(const QIODevice& device, const QString& fileName) :
    FileError(withDeviceError(tr("Error opening file '%1'").arg(fileName), device), fileName)
{
}

FileOpenError::~FileOpenError() = default;

} // namespace RTE
