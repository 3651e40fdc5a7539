#include "../FileSystem_p.h"

#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStorageInfo>

#include <algorithm>
#include <cerrno>
#include <sys/sendfile.h>
#include <sys/vfs.h>
#include <unistd.h>

namespace RTE::FileSystem::detail
{

namespace
{

// Magic numbers of statfs(2) f_type.
constexpr long NfsMagic = 0x6969;
constexpr long SmbMagic = 0x517B;
constexpr long Smb2Magic = static_cast<long>(0xFE534D42);
constexpr long CifsMagic = static_cast<long>(0xFF534D42);
constexpr long FuseMagic = 0x65735546;
constexpr long TmpfsMagic = 0x01021994;
constexpr long RamfsMagic = static_cast<long>(0x858458f6);
constexpr long Iso9660Magic = 0x9660;
constexpr long UdfMagic = 0x15013346;

bool IsRemovableDevice(const QByteArray& device)
{
  // "/dev/sdb1" -> /sys/class/block/sdb1, whose parent (for a partition) holds "removable".
  if (!device.startsWith("/dev/"))
    return false;
  const QString name = QString::fromLocal8Bit(device.mid(5));
  const QString block = QFileInfo(QStringLiteral("/sys/class/block/") + name).canonicalFilePath();
  if (block.isEmpty())
    return false;
  for (const QString& candidate : {block + QStringLiteral("/removable"), block + QStringLiteral("/../removable")})
  {
    QFile file(candidate);
    if (file.open(QIODevice::ReadOnly))
      return file.readAll().trimmed() == "1";
  }
  return false;
}

} // namespace

E_DriveType DeviceTypeOf(const QString& path)
{
  struct statfs info
  {
  };
  if (::statfs(QFile::encodeName(path).constData(), &info) != 0)
    return NoRootDirectory;
  const long type = static_cast<long>(info.f_type);
  switch (type)
  {
  case NfsMagic:
  case SmbMagic:
  case Smb2Magic:
  case CifsMagic:
    return Remote;
  case TmpfsMagic:
  case RamfsMagic:
    return RamDisk;
  case Iso9660Magic:
  case UdfMagic:
    return Optical;
  default:
    break;
  }
  const QStorageInfo storage(path);
  if (type == FuseMagic)
  {
    // sshfs, davfs, rclone and the like are network mounts; a local FUSE file system is not.
    const QByteArray fs = storage.fileSystemType();
    return fs.contains("sshfs") || fs.contains("dav") || fs.contains("rclone") || fs.contains("smb") ||
                   fs.contains("nfs") || fs.contains("s3")
               ? Remote
               : Fixed;
  }
  return IsRemovableDevice(storage.device()) ? Removable : Fixed;
}

FileVersion ReadFileVersion(const QString& path)
{
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly) || file.read(4) != QByteArray("\x7f"
                                                                    "ELF",
                                                                    4))
    return {};
  // A library built with VERSION x.y.z is the file libName.so.x.y.z (the links
  // libName.so and libName.so.x point to it).
  static const QRegularExpression numbers(QStringLiteral("\\.so\\.(\\d+(?:\\.\\d+){0,3})$"));
  const QRegularExpressionMatch match = numbers.match(QFileInfo(path).canonicalFilePath());
  if (!match.hasMatch())
    return {};
  return FileVersion::fromString(match.captured(1));
}

bool RemoveNative(const QString& path)
{
  return ::unlink(QFile::encodeName(path).constData()) == 0;
}

std::int64_t CopyRange(int in, int out, std::int64_t length)
{
  ssize_t done = ::copy_file_range(in, nullptr, out, nullptr, static_cast<size_t>(length), 0);
  if (done >= 0)
    return done;
  if (errno != EXDEV && errno != ENOSYS && errno != EINVAL && errno != EOPNOTSUPP)
    return -1;
  done = ::sendfile(out, in, nullptr, static_cast<size_t>(length));
  if (done >= 0 || (errno != EINVAL && errno != ENOSYS))
    return done;
  // Neither kernel path applies (special files, some FUSE mounts): plain read and write.
  char buffer[65536];
  const ssize_t got = ::read(in, buffer, static_cast<size_t>(std::min<std::int64_t>(length, sizeof buffer)));
  if (got <= 0)
    return got;
  for (ssize_t written = 0; written < got;)
  {
    const ssize_t now = ::write(out, buffer + written, static_cast<size_t>(got - written));
    if (now < 0)
      return -1;
    written += now;
  }
  return got;
}

} // namespace RTE::FileSystem::detail
