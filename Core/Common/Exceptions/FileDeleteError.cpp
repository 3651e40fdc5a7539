#include <Core/Common/Exceptions/FileDeleteError.h>

namespace RTE
{

FileDeleteError::FileDeleteError(const QString& path, const QString& detail) :
    FileError(tr("Error deleting file or folder '%1'").arg(path), path),
    m_detail(detail)
{
}

FileDeleteError::FileDeleteError(const QIODevice& device, const QString& path, const QString& detail) :
    FileError(withDeviceError(tr("Error deleting file or folder '%1'").arg(path), device), path),
    m_detail(detail)
{
}

FileDeleteError::~FileDeleteError() = default;

} // namespace RTE
