#include <Core/Common/OperatingSystem/TempFolder.h>

#include <Core/Common/OperatingSystem/FileSystem.h>
#include <Core/Common/OperatingSystem/Locations.h>

#include <QDateTime>
#include <QDir>
#include <QFileInfo>

#include <cstdlib>

namespace RTE
{

TempFolder::TempFolder() : TempFolder(QString()) {}

TempFolder::TempFolder(const QString& basePath)
{
  const QString base = basePath.isEmpty() ? Locations::getTemporaryPath() : basePath;
  m_path = QFileInfo(FileSystem::FixPath(base + QStringLiteral("/Temp_") + getRandomFileName())).absoluteFilePath();
  FileSystem::CreateDirectory(m_path);
}

TempFolder::~TempFolder()
{
  if (!m_path.isEmpty())
    QDir(m_path).removeRecursively();
}

QString TempFolder::GetPath() const
{
  return m_path;
}

QString TempFolder::getRandomFileName()
{
  return QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMdd_hhmmsszzz")) + QLatin1Char('_') +
         QString::number(std::rand());
}

} // namespace RTE
