#include <Core/Common/Exceptions/FileWriteError.h>

namespace RTE
{

FileWriteError::FileWriteError(const QString& fileName) :
    FileError(tr("Error writing to file '%1'").arg(fileName), fileName)
{
}

FileWriteError::FileWriteError(const QIODevice& device, const QString& fileName) :
    FileError(withDeviceError(tr("Error writing to file '%1'").arg(fileName), device), fileName)
{
}

FileWriteError::~FileWriteError() = default;

} // namespace RTE
