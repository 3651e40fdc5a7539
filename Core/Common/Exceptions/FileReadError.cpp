#include <Core/Common/Exceptions/FileReadError.h>

namespace RTE
{

FileReadError::FileReadError(const QString& fileName) :
    FileError(tr("Error reading from file '%1'").arg(fileName), fileName)
{
}

FileReadError::FileReadError(const QIODevice& device, const QString& fileName) :
    FileError(withDeviceError(tr("Error reading from file '%1'").arg(fileName), device), fileName)
{
}

FileReadError::~FileReadError() = default;

} // namespace RTE
