#include <Core/Common/Utilities/VersionInfo.h>

#include <Core/Common/CoreCommonVersion_p.h>
#include <Core/Common/Utilities/ElfSoname_p.h>

#include <QFile>
#include <QFileInfo>

#if defined(__linux__)
#include <dlfcn.h>
#endif

namespace RTE
{

namespace
{

// What follows ".so." in a shared-object name, if that is a dotted version.
QString versionAfterSo(const QString& name)
{
  const qsizetype at = name.lastIndexOf(QLatin1String(".so."));
  if (at < 0)
    return {};
  const QString version = name.mid(at + 4);
  qsizetype suffix = 0;
  const QVersionNumber number = QVersionNumber::fromString(version, &suffix);
  return (!number.isNull() && suffix == version.size()) ? version : QString();
}

} // namespace

QString VersionInfo::libraryVersion()
{
  return QStringLiteral(CORECOMMON_VERSION_TEXT);
}

QVersionNumber VersionInfo::libraryVersionNumber()
{
  return QVersionNumber::fromString(libraryVersion());
}

QString VersionInfo::sourceRevision()
{
  return QStringLiteral(CORECOMMON_SOURCE_REVISION);
}

QString VersionInfo::buildDate()
{
  return QStringLiteral(CORECOMMON_BUILD_DATE);
}

QString VersionInfo::libraryFilePath()
{
#if defined(__linux__)
  Dl_info info{};
  if (dladdr(reinterpret_cast<const void*>(&VersionInfo::libraryFilePath), &info) != 0 && info.dli_fname)
    return QFileInfo(QString::fromLocal8Bit(info.dli_fname)).absoluteFilePath();
#endif
  return {};
}

QString VersionInfo::soname(const QString& filePath)
{
  QFile file(filePath);
  if (!file.open(QIODevice::ReadOnly) || file.size() <= 0)
    return {};
  // Mapped rather than read: libraries are large and only a few pages are looked at.
  const uchar* data = file.map(0, file.size());
  if (!data)
    return {};
  const std::optional<QByteArray> name =
      Elf::soname(QByteArrayView(reinterpret_cast<const char*>(data), static_cast<qsizetype>(file.size())));
  file.unmap(const_cast<uchar*>(data));
  return name ? QString::fromUtf8(*name) : QString();
}

QString VersionInfo::fileVersion(const QString& filePath)
{
  const QString name = soname(filePath);
  if (name.isEmpty())
    return {};
  const QString fileName = QFileInfo(QFileInfo(filePath).canonicalFilePath()).fileName();
  if (fileName.startsWith(name + QLatin1Char('.')))
  {
    if (const QString longer = versionAfterSo(fileName); !longer.isEmpty())
      return longer;
  }
  return versionAfterSo(name);
}

} // namespace RTE
