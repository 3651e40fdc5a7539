#include "SettingsSerializer_p.h"

#include "SettingsDocImpl_p.h"
#include "StorageLog_p.h"

#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace Storage::Private
{

SettingsSerializer::SettingsSerializer(const Settings& node) : m_node(node) {}

bool SettingsSerializer::SaveAs(const QString& filePath) const
{
  if (filePath.isEmpty())
    return false;
  const SettingsDocImpl* document = m_node.GetDocImpl();
  if (!document)
    return false;
  const QFileInfo info(filePath);
  const QString folder = info.absolutePath();
  if (!QDir().mkpath(folder))
  {
    qCWarning(lcSerialization).noquote() << QStringLiteral("Folder %1 could not be created.").arg(folder);
    return false;
  }
  QSaveFile file(info.absoluteFilePath());
  return document->WriteToFile(file);
}

} // namespace Storage::Private
