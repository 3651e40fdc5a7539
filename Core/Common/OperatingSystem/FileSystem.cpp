#include "FileSystem_p.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/OperatingSystem/ActivityControl.h>
#include <Core/Common/OperatingSystem/I_ActivityFeedback.h>

#include <QCollator>
#include <QCoreApplication>
#include <QDir>
#include <QDirIterator>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QMutex>
#include <QRegularExpression>
#include <QStorageInfo>
#include <QThread>
#include <QUuid>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

Q_LOGGING_CATEGORY(lcFileSystem, "Core.FileSystem", QtInfoMsg)

namespace RTE::FileSystem
{

namespace
{

QString Tr(const char* text)
{
  return QCoreApplication::translate("RTE::FileSystem", text);
}

const QChar Slash = QLatin1Char('/');
const QChar Backslash = QLatin1Char('\\');

// Creation and waiting retry 300 times; the pause is 100 ms (shorter only in tests).
constexpr int RetryCount = 300;
std::atomic<int> g_retryPauseMs{100};

void RetryPause()
{
  QThread::msleep(static_cast<unsigned long>(g_retryPauseMs.load()));
}

struct DriveMapping
{
  QMutex mutex;
  QHash<QString, QString> letters;       // "C" -> "/mnt/c"
  QList<QPair<QString, QString>> shares; // "//server/share" -> "/mnt/share"
};

DriveMapping& Mapping()
{
  static DriveMapping mapping;
  return mapping;
}

bool IsNetworkPath(const QString& path)
{
  return path.startsWith(QStringLiteral("//")) || path.startsWith(QStringLiteral("\\\\"));
}

QString Joined(const QString& folder, const QString& name)
{
  return folder.endsWith(Slash) ? folder + name : folder + Slash + name;
}

// Entries of a folder without "." and "..", hidden ones included, symbolic links as links.
QFileInfoList Entries(const QString& folder)
{
  return QDir(folder).entryInfoList(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden | QDir::System,
                                    QDir::NoSort);
}

// The nearest existing folder at or above path, for volume queries.
QString ExistingAncestor(const QString& path)
{
  QString current = QDir::cleanPath(QFileInfo(path).absoluteFilePath());
  while (!current.isEmpty() && !QFileInfo::exists(current))
  {
    const QString parent = QFileInfo(current).path();
    if (parent == current)
      break;
    current = parent;
  }
  return current;
}

QCollator NaturalCollator()
{
  // The C locale's collator ignores numeric mode; English honours it and orders the
  // rest of a name much as any other Latin-script locale does.
  QLocale locale;
  if (locale.language() == QLocale::C)
    locale = QLocale(QLocale::English, QLocale::UnitedStates);
  QCollator collator(locale);
  collator.setNumericMode(true);
  collator.setCaseSensitivity(Qt::CaseInsensitive);
  return collator;
}

// Walks by raw names and never follows links. Subfolders are visited after their folder
// is closed, so a deep tree holds one descriptor at a time rather than one per level.
std::uint64_t DirSizeOf(const QByteArray& path, const I_ActivityControl& control, int budget, bool& stop)
{
  const int fd = ::open(path.constData(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  DIR* dir = fd < 0 ? nullptr : ::fdopendir(fd);
  if (dir == nullptr)
  {
    if (fd >= 0)
      ::close(fd);
    qCWarning(lcFileSystem).noquote() << "DirSize skipped a folder it cannot read:" << QFile::decodeName(path);
    return 0;
  }
  std::uint64_t total = 0;
  std::vector<QByteArray> subfolders;
  const auto entryDone = [&]
  {
    if (control.isCanceled())
      stop = true;
    else if (budget > 0)
      QThread::msleep(10);
    return stop;
  };
  while (const dirent* entry = ::readdir(dir))
  {
    if (std::strcmp(entry->d_name, ".") == 0 || std::strcmp(entry->d_name, "..") == 0)
      continue;
    unsigned char type = entry->d_type;
    struct stat info
    {
    };
    if (type == DT_UNKNOWN || type == DT_REG)
    {
      if (::fstatat(fd, entry->d_name, &info, AT_SYMLINK_NOFOLLOW) != 0)
        continue;
      type = S_ISDIR(info.st_mode) ? DT_DIR : (S_ISREG(info.st_mode) ? DT_REG : DT_UNKNOWN);
    }
    if (type == DT_DIR)
      subfolders.push_back(path + '/' + entry->d_name);
    else
    {
      if (type == DT_REG)
        total += static_cast<std::uint64_t>(info.st_size);
      if (entryDone())
        break;
    }
  }
  ::closedir(dir);
  for (const QByteArray& subfolder : subfolders)
  {
    if (stop)
      break;
    total += DirSizeOf(subfolder, control, budget - 1, stop);
    entryDone();
  }
  return total;
}

// Removes name below parentFd with everything in it, by raw names (so names that are no
// valid text go too) and without following links.
bool RemoveRaw(int parentFd, const char* name, bool keepSelf = false)
{
  struct stat info
  {
  };
  if (::fstatat(parentFd, name, &info, AT_SYMLINK_NOFOLLOW) != 0)
    return errno == ENOENT;
  if (!S_ISDIR(info.st_mode))
    return ::unlinkat(parentFd, name, 0) == 0;
  const int fd = ::openat(parentFd, name, O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
  DIR* dir = fd < 0 ? nullptr : ::fdopendir(fd);
  if (dir == nullptr)
  {
    if (fd >= 0)
      ::close(fd);
    return false;
  }
  bool removed = true;
  while (const dirent* entry = ::readdir(dir))
    if (std::strcmp(entry->d_name, ".") != 0 && std::strcmp(entry->d_name, "..") != 0)
      removed = RemoveRaw(fd, entry->d_name) && removed;
  ::closedir(dir);
  return keepSelf ? removed : ::unlinkat(parentFd, name, AT_REMOVEDIR) == 0 && removed;
}

void CopyPlain(const QString& source, const QString& target)
{
  for (const QFileInfo& entry : Entries(source))
  {
    if (entry.isSymLink())
    {
      qCWarning(lcFileSystem).noquote() << "CopyFolder skipped the symbolic link" << entry.filePath();
      continue;
    }
    const QString to = QDir::cleanPath(target + Slash + entry.fileName());
    if (entry.isDir())
    {
      if (!QDir().mkpath(to))
        RTE::Raise(RTE::Exception(Tr("Could not create the target folder: ") + to));
      CopyPlain(entry.filePath(), to);
    }
    else if (!CopyFileInPieces(entry.filePath(), to, {}, {}, false))
      RTE::Raise(RTE::Exception(Tr("Could not copy file: ") + entry.absoluteFilePath()));
  }
}

// What a progress walk found below a folder: relative folder and file paths in walk
// order (parents first), and what it had to leave out.
struct TreeListing
{
  QStringList folders;
  QStringList files;
  std::uint64_t bytes = 0;
  QStringList skipped;
};

// Names in folder that are no valid text. Qt's directory walks leave them out silently;
// a raw read finds them so that they can be reported.
QStringList UndecodableNames(const QString& folder)
{
  QStringList names;
  DIR* dir = ::opendir(QFile::encodeName(folder).constData());
  if (dir == nullptr)
    return names;
  while (const dirent* entry = ::readdir(dir))
  {
    const QByteArray raw(entry->d_name);
    if (QFile::encodeName(QFile::decodeName(raw)) != raw)
      names << QFile::decodeName(raw);
  }
  ::closedir(dir);
  return names;
}

void ListTree(const QString& root, const QString& relative, TreeListing& listing)
{
  const QString folder = relative.isEmpty() ? root : root + Slash + relative;
  QDir dir(folder);
  if (!dir.isReadable())
  {
    listing.skipped << relative;
    return;
  }
  for (const QString& name : UndecodableNames(folder))
    listing.skipped << (relative.isEmpty() ? name : relative + Slash + name);
  for (const QFileInfo& entry : Entries(folder))
  {
    const QString rel = relative.isEmpty() ? entry.fileName() : relative + Slash + entry.fileName();
    if (entry.isSymLink() || (!entry.isDir() && !entry.isFile()))
    {
      listing.skipped << rel;
      continue;
    }
    if (entry.isDir())
    {
      listing.folders << rel;
      ListTree(root, rel, listing);
    }
    else
    {
      listing.files << rel;
      listing.bytes += static_cast<std::uint64_t>(entry.size());
    }
  }
}

void ReportSkipped(const TreeListing& listing, I_ActivityFeedback& feedback, const char* operation)
{
  for (const QString& entry : listing.skipped)
  {
    qCWarning(lcFileSystem).noquote() << operation << "skipped" << entry;
    feedback.reportMessage(Tr("Skipped: %1").arg(entry));
  }
}

} // namespace

namespace detail
{

CORECOMMON_EXPORT void SetRetryPause(int milliseconds)
{
  g_retryPauseMs = milliseconds;
}

} // namespace detail

QString FileVersion::toString() const
{
  return QStringLiteral("%1.%2.%3.%4").arg(major).arg(minor).arg(build).arg(revision);
}

FileVersion FileVersion::fromString(const QString& text)
{
  FileVersion version;
  const QStringList parts = text.split(QLatin1Char('.'), Qt::SkipEmptyParts);
  version.valid = !parts.isEmpty();
  std::uint16_t* fields[] = {&version.major, &version.minor, &version.build, &version.revision};
  for (qsizetype i = 0; i < parts.size() && i < 4; ++i)
    *fields[i] = parts[i].toUShort();
  return version;
}

bool FileVersion::operator==(const FileVersion& other) const
{
  return major == other.major && minor == other.minor && build == other.build && revision == other.revision;
}

bool FileVersion::operator!=(const FileVersion& other) const
{
  return !(*this == other);
}

bool FileVersion::operator>(const FileVersion& other) const
{
  if (major != other.major)
    return major > other.major;
  if (minor != other.minor)
    return minor > other.minor;
  if (build != other.build)
    return build > other.build;
  return revision > other.revision;
}

QString FixPath(const QString& path)
{
  QString fixed = UnmapLinuxDrive(QString(path).replace(Backslash, Slash));
  if (fixed.startsWith(QStringLiteral("//")))
    return QStringLiteral("//") + fixed.mid(2).replace(QStringLiteral("//"), QStringLiteral("/"));
  return fixed.replace(QStringLiteral("//"), QStringLiteral("/"));
}

bool Exists(const QString& path)
{
  return QFileInfo::exists(FixPath(path));
}

QString ExtractExtension(const QString& path, bool withDot)
{
  const QString suffix = QFileInfo(FixPath(path)).suffix();
  return withDot ? QLatin1Char('.') + suffix : suffix;
}

QString ExtractFileName(const QString& path, bool stripExtension)
{
  const QFileInfo info(FixPath(path));
  QString name = info.fileName();
  if (name.size() >= 2 && name[1] == QLatin1Char(':'))
    name = name.mid(2);
  if (stripExtension && !info.suffix().isEmpty())
    name.remove(QLatin1Char('.') + info.suffix());
  return name;
}

QString ExtractPathName(const QString& path)
{
  if (path.isEmpty())
    return {};
  const QString fixed = FixPath(path);
  const qsizetype last = fixed.lastIndexOf(Slash);
  if (last < 0)
    return {};
  return last == 0 ? QString(Slash) : FixPath(fixed.left(last));
}

QString GetFileNameWithoutExtension(const QString& path)
{
  const qsizetype dot = path.lastIndexOf(QLatin1Char('.'));
  return dot < 0 ? path : path.left(dot);
}

QString GetCurrentWorkDirectory()
{
  return QDir::currentPath();
}

QString GetProgramPath()
{
  const QString executable = QFileInfo(QStringLiteral("/proc/self/exe")).canonicalFilePath();
  return executable.isEmpty() ? QString() : QFileInfo(executable).absolutePath();
}

QDateTime GetModificationTime(const QString& path)
{
  return QFileInfo(FixPath(path)).lastModified().toLocalTime();
}

int PathLength(const QString& path)
{
  const QFileInfo info(FixPath(path));
  const QString absolute = info.absoluteFilePath();
  int longest = static_cast<int>(absolute.size());
  if (!info.isDir() || info.isSymLink())
    return longest;
  for (const QFileInfo& entry : Entries(absolute))
  {
    if (entry.isDir() && !entry.isSymLink())
      longest = std::max(longest, PathLength(entry.absoluteFilePath()));
    else
      longest = std::max(longest, static_cast<int>(absolute.size() + 1 + entry.fileName().size()));
  }
  return longest;
}

int getMaxPathLength()
{
  return 260;
}

bool PathLengthExceedsLimit(const QString& targetFolder, const QStringList& sources)
{
  const QString target = QDir::cleanPath(QFileInfo(FixPath(targetFolder)).absoluteFilePath());
  int longest = 0;
  for (const QString& source : sources)
  {
    const QFileInfo info(FixPath(source));
    const int landing = static_cast<int>(Joined(target, info.fileName()).size());
    if (info.isDir())
    {
      // Everything below the source keeps its tail; only the part up to the source changes.
      const int below = PathLength(info.absoluteFilePath()) - static_cast<int>(info.absoluteFilePath().size());
      longest = std::max(longest, landing + below);
    }
    else
      longest = std::max(longest, landing);
  }
  return longest > getMaxPathLength();
}

std::uint64_t GetSize(const QString& path)
{
  const QFileInfo info(FixPath(path));
  if (!info.exists())
    RTE::Raise(RTE::VerificationFailed(Tr("File not found during 'GetSize': ") + path));
  return static_cast<std::uint64_t>(info.size());
}

std::uint64_t GetSize(FILE* stream)
{
  struct stat info
  {
  };
  if (stream == nullptr || ::fstat(::fileno(stream), &info) != 0)
    RTE::Raise(RTE::VerificationFailed(Tr("The size of the stream cannot be read.")));
  return static_cast<std::uint64_t>(info.st_size);
}

std::int64_t GetPosition(FILE* stream)
{
  return static_cast<std::int64_t>(::ftello(stream));
}

void SetPosition(FILE* stream, std::int64_t offset)
{
  if (::fseeko(stream, static_cast<off_t>(offset), SEEK_SET) != 0)
    RTE::Raise(RTE::Exception(Tr("Could not set the file position to ") + QString::number(offset)));
}

std::uint64_t DirSize(const QString& folder, const I_ActivityControl& control, bool throttled)
{
  const QString fixed = FixPath(folder);
  if (!QFileInfo(fixed).isDir())
    return 0;
  bool stop = false;
  return DirSizeOf(QFile::encodeName(fixed), control, throttled ? 5 : 0, stop);
}

std::uint64_t AvailableDriveSpace(const QString& path)
{
  if (path.isEmpty())
    RTE::Raise(RTE::VerificationFailed(Tr("drive must not be empty")));
  return static_cast<std::uint64_t>(QStorageInfo(ExistingAncestor(FixPath(path))).bytesAvailable());
}

double GetFreeDriveSpaceInMB(const QString& path)
{
  const auto bytes = static_cast<std::uint64_t>(QStorageInfo(ExistingAncestor(FixPath(path))).bytesFree());
  return static_cast<double>(bytes / 1048576);
}

double GetTotalDriveSpaceInMB(const QString& path)
{
  const auto bytes = static_cast<std::uint64_t>(QStorageInfo(ExistingAncestor(FixPath(path))).bytesTotal());
  return static_cast<double>(bytes / 1048576);
}

bool IsEnoughSpaceAvailable(const QString& target, const QStringList& sources)
{
  std::uint64_t available = 0;
  std::uint64_t required = 0;
  return IsEnoughSpaceAvailable(target, sources, available, required);
}

bool IsEnoughSpaceAvailable(const QString& target, const QStringList& sources, std::uint64_t& available,
                            std::uint64_t& required)
{
  ActivityControl never;
  required = 0;
  for (const QString& source : sources)
  {
    const QFileInfo info(FixPath(source));
    required += info.isDir() ? DirSize(info.filePath(), never, false) : static_cast<std::uint64_t>(info.size());
  }
  available = AvailableDriveSpace(target);
  return required < available;
}

QString GetDriveName(const QString& path)
{
  return QStorageInfo(ExistingAncestor(FixPath(path))).rootPath();
}

bool IsDriveNameValid(const QString& drive)
{
  if (drive.size() != 2 || drive[1] != QLatin1Char(':'))
    return false;
  const QChar letter = drive[0];
  return (letter >= QLatin1Char('A') && letter <= QLatin1Char('Z')) ||
         (letter >= QLatin1Char('a') && letter <= QLatin1Char('z'));
}

E_DriveType GetDeviceType(const QString& path)
{
  if (IsNetworkPath(path) && path.indexOf(QRegularExpression(QStringLiteral("[/\\\\]")), 4) > 0)
  {
    const QString mapped = UnmapLinuxDrive(QString(path).replace(Backslash, Slash));
    // A share without a local mount is still a network location by its form.
    return IsNetworkPath(mapped) ? Remote : detail::DeviceTypeOf(ExistingAncestor(mapped));
  }
  if (path.startsWith(Slash))
    return detail::DeviceTypeOf(ExistingAncestor(path));
  const QString drive = path.size() < 3 ? path : path.left(2);
  if (!IsDriveNameValid(drive))
    RTE::Raise(RTE::Exception(Tr("Invalid drive.")));
  const QString root = GetLinuxDriveMapping(drive.left(1));
  return root.isEmpty() ? NoRootDirectory : detail::DeviceTypeOf(ExistingAncestor(root));
}

FileVersion GetFileVersion(const QString& path)
{
  return detail::ReadFileVersion(FixPath(path));
}

QString SizeToString(std::uint64_t bytes)
{
  double value = static_cast<double>(bytes);
  if (value < 1024.0)
    return QStringLiteral("%1 Bytes").arg(value, 0, 'g');
  static const char* const units[] = {"KB", "MB", "GB", "TB"};
  for (const char* unit : units)
  {
    value /= 1024.0;
    if (value < 1024.0)
    {
      const double shown = static_cast<std::int32_t>(value * 10.0) * 0.1;
      return QStringLiteral("%1 %2").arg(shown, 0, 'g').arg(QLatin1String(unit));
    }
  }
  return QStringLiteral("%1 PB").arg(value / 1024.0, 0, 'g');
}

void CreateDirectory(const QString& path, const QString& context)
{
  const QString fixed = FixPath(path);
  for (int failures = 0; !QDir().mkpath(fixed);)
  {
    if (++failures >= RetryCount)
      RTE::Raise(RTE::Exception(Tr("Unknown error during 'CreateDirectory' ") + path));
    RetryPause();
  }
  WaitForAccess(fixed, context);
}

void CreateDirectoryHierarchy(const QString& path, const QString& context)
{
  QString stripped = path;
  while (stripped.size() > 1 && (stripped.endsWith(Slash) || stripped.endsWith(Backslash)))
    stripped.chop(1);
  const QString fixed = FixPath(stripped);
  for (int failures = 0; !QDir().mkpath(fixed);)
  {
    if (++failures >= RetryCount)
      RTE::Raise(RTE::Exception(Tr("Unknown error during 'CreateDirectoryHierarchy' ") + path));
    RetryPause();
  }
  WaitForAccess(fixed, context);
}

void CopyFile(const QString& source, const QString& target, bool overwrite)
{
  const QFileInfo from(FixPath(source));
  if (!from.exists())
    RTE::Raise(RTE::VerificationFailed(Tr("Source file for 'CopyFile' doesn't exist: ") + source));
  if (!from.isReadable())
    RTE::Raise(RTE::VerificationFailed(Tr("Can't read source file for 'CopyFile' ") + source));
  if (!overwrite && QFileInfo::exists(FixPath(target)))
    RTE::Raise(RTE::Exception(Tr("Target file of 'CopyFile' already exists: ") + target));
  if (!CopyFileInPieces(from.filePath(), FixPath(target), {}, {}, overwrite))
    RTE::Raise(RTE::Exception(Tr("Unknown error during 'CopyFile' ") + source + QStringLiteral(" to ") + target));
}

bool CopyFileInPieces(const QString& source, const QString& target,
                      const std::function<void(std::uint64_t, std::uint64_t)>& progress,
                      const std::function<bool()>& isCancelled, bool overwrite)
{
  const QString from = FixPath(source);
  const QString to = FixPath(target);
  if (!overwrite && QFileInfo::exists(to))
    return false;
  const QByteArray toName = QFile::encodeName(to);
  const int in = ::open(QFile::encodeName(from).constData(), O_RDONLY | O_CLOEXEC);
  if (in < 0)
    return false;
  struct stat info
  {
  };
  if (::fstat(in, &info) != 0 || !S_ISREG(info.st_mode))
  {
    ::close(in);
    return false;
  }
  const int out = ::open(toName.constData(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  if (out < 0)
  {
    ::close(in);
    return false;
  }
  const auto abandon = [&](const char* why)
  {
    const int error = errno;
    ::close(in);
    ::close(out);
    ::unlink(toName.constData());
    if (why != nullptr)
      qCWarning(lcFileSystem).noquote() << "Copying" << from << "to" << to << why << ::strerror(error);
    return false;
  };

  constexpr std::int64_t PieceSize = 1048576;
  const auto size = static_cast<std::uint64_t>(info.st_size);
  const std::uint64_t pieces = size / PieceSize + 1;
  for (std::uint64_t piece = 0; piece < pieces; ++piece)
  {
    std::int64_t left = PieceSize;
    while (left > 0)
    {
      const std::int64_t done = detail::CopyRange(in, out, left);
      if (done < 0)
        return abandon("failed:");
      if (done == 0)
        break;
      left -= done;
    }
    if (pieces > 1 && progress)
      progress(piece, pieces);
    if (isCancelled && isCancelled())
      return abandon(nullptr);
  }
  ::close(in);
  if (::close(out) != 0)
    return abandon("failed on close:");
  SetWritePermission(to);
  return true;
}

void CopyFolder(const QString& source, const QString& target)
{
  const QString from = FixPath(source);
  const QString to = FixPath(target);
  if (QFileInfo::exists(to))
    RTE::Raise(RTE::VerificationFailed(Tr("The target folder must not exist.")));
  if (!QDir().mkpath(to))
    RTE::Raise(RTE::Exception(Tr("Could not create the target folder: ") + target));
  CopyPlain(from, to);
}

void CopyFolder(const QString& source, const QString& target, I_ActivityControl& control, I_ActivityFeedback& feedback,
                bool keepTarget, bool noFilter, const QStringList& excludedEndings, bool overwriteFiles)
{
  if (source.isEmpty() || target.isEmpty())
    RTE::Raise(RTE::InvalidArgumentError(Tr("The source folder and the target folder name must not be empty.")));
  const QString from = QDir::cleanPath(FixPath(source));
  const QString to = QDir::cleanPath(FixPath(target));
  if (QDir::isRelativePath(from) || QDir::isRelativePath(to))
    RTE::Raise(RTE::InvalidArgumentError(Tr("Source and target folders must be absolute paths.")));
  if (!QFileInfo(from).isDir())
    RTE::Raise(RTE::InvalidArgumentError(Tr("The source folder must exist.")));
  if (!keepTarget && QFileInfo::exists(to))
    RTE::Raise(RTE::InvalidArgumentError(Tr("The target folder must not exist.")));
  if (!QDir().mkpath(to))
    RTE::Raise(RTE::LogicError(Tr("Could not create the target folder: ") + target));

  const auto cleanUp = [&]
  {
    if (!keepTarget && !QDir(to).removeRecursively())
      qCWarning(lcFileSystem).noquote() << "CopyFolder could not remove the incomplete target" << to;
  };
  try
  {
    TreeListing listing;
    ListTree(from, {}, listing);
    ReportSkipped(listing, feedback, "CopyFolder");
    if (!noFilter && !excludedEndings.isEmpty())
    {
      listing.files.removeIf(
          [&](const QString& file)
          {
            return std::any_of(excludedEndings.begin(), excludedEndings.end(),
                               [&](const QString& ending) { return file.endsWith(ending); });
          });
      listing.bytes = 0;
      for (const QString& file : listing.files)
        listing.bytes += static_cast<std::uint64_t>(QFileInfo(from + Slash + file).size());
    }

    // Bytes weigh the work; each folder and file also counts as one block, so empty files
    // and folders still move the bar.
    constexpr double EntryWeight = 4096.0;
    const double total = static_cast<double>(listing.bytes) +
                         EntryWeight * static_cast<double>(listing.folders.size() + listing.files.size());
    double done = 0.0;
    const auto percent = [&](double extra) { return total > 0.0 ? 100.0 * (done + extra) / total : 100.0; };

    for (const QString& folder : listing.folders)
    {
      if (control.isCanceled())
        return cleanUp();
      if (!QDir().mkpath(to + Slash + folder))
        RTE::Raise(RTE::LogicError(Tr("The folder \"") + folder + Tr("\" could not be created in the target folder.")));
      done += EntryWeight;
      feedback.reportMessage(QStringLiteral("%1 (%2%)").arg(folder).arg(static_cast<int>(percent(0.0))));
      feedback.reportProgress(percent(0.0));
    }
    for (const QString& file : listing.files)
    {
      if (control.isCanceled())
        return cleanUp();
      const QString fromFile = from + Slash + file;
      const double fileBytes = static_cast<double>(QFileInfo(fromFile).size());
      feedback.reportMessage(QStringLiteral("%1 (%2%)").arg(file).arg(static_cast<int>(percent(0.0))));
      const bool copied = CopyFileInPieces(
          fromFile, to + Slash + file,
          [&](std::uint64_t piece, std::uint64_t pieces) {
            feedback.reportProgress(percent(fileBytes * static_cast<double>(piece + 1) / static_cast<double>(pieces)));
          },
          [&] { return control.isCanceled(); }, overwriteFiles);
      if (!copied)
      {
        if (control.isCanceled())
          return cleanUp();
        RTE::Raise(RTE::LogicError(Tr("The file \"") + file + Tr("\" could not be copied to the target folder.")));
      }
      done += fileBytes + EntryWeight;
      feedback.reportProgress(percent(0.0));
    }
  }
  catch (...)
  {
    cleanUp();
    throw;
  }
}

namespace
{

// Copies the tree under `from` into `to` (links left out); `overwrite` replaces files
// that exist, otherwise they are kept.
void CopyTree(const QString& from, const QString& to, bool overwrite)
{
  QDir().mkpath(to);
  for (const QFileInfo& entry : Entries(from))
  {
    const QString destination = Joined(to, entry.fileName());
    if (entry.isSymLink())
      continue;
    if (entry.isDir())
      CopyTree(entry.filePath(), destination, overwrite);
    else if (overwrite)
    {
      QFile::remove(destination);
      CopyFileInPieces(entry.filePath(), destination, {}, {}, true);
    }
    else if (!QFileInfo::exists(destination))
      CopyFileInPieces(entry.filePath(), destination, {}, {}, false);
  }
}

} // namespace

void CopyOverwriteRecursive(const QString& source, const QString& target)
{
  CopyTree(FixPath(source), FixPath(target), true);
}

void LazyCopyFolderContent(const QString& sourceDir, const QString& targetDir)
{
  CopyTree(FixPath(sourceDir), FixPath(targetDir), false);
}

void MoveFile(const QString& source, const QString& target, bool overwrite)
{
  const QString from = FixPath(source);
  const QString to = FixPath(target);
  if (QDir::isRelativePath(from) || QDir::isRelativePath(to))
    RTE::Raise(RTE::VerificationFailed(Tr("Paths of source and target files must be absolute paths.")));
  if (QFileInfo::exists(to))
  {
    if (!overwrite)
      RTE::Raise(RTE::VerificationFailed(Tr("Target file exists already (and overwrite is off).")));
    RemoveFile(to);
  }
  QFile file(from);
  if (!file.rename(to))
    RTE::Raise(RTE::Exception(file.errorString()));
}

void MoveFolder(const QString& source, const QString& target)
{
  const QString from = QDir::cleanPath(FixPath(source));
  const QString to = QDir::cleanPath(FixPath(target));
  if (QDir::isRelativePath(from) || QDir::isRelativePath(to))
    RTE::Raise(RTE::VerificationFailed(Tr("Paths of source and target folders must be absolute paths.")));
  if (QFileInfo::exists(to))
    RTE::Raise(RTE::VerificationFailed(Tr("The target folder must not exist.")));
  if (QDir().rename(from, to))
    return;
  CopyFolder(from, to);
  if (!QDir(from).removeRecursively())
    RTE::Raise(RTE::Exception(Tr("Could not remove source folder.")));
}

void MoveFolder(const QString& source, const QString& target, I_ActivityControl& control, I_ActivityFeedback& feedback)
{
  if (source.isEmpty() || target.isEmpty())
    RTE::Raise(RTE::InvalidArgumentError(Tr("The source folder and the target folder name must not be empty.")));
  const QString from = QDir::cleanPath(FixPath(source));
  const QString to = QDir::cleanPath(FixPath(target));
  if (QDir::isRelativePath(from) || QDir::isRelativePath(to))
    RTE::Raise(RTE::InvalidArgumentError(Tr("Source and target folders must be absolute paths.")));
  if (!QFileInfo(from).isDir() || QFileInfo::exists(to))
    RTE::Raise(RTE::InvalidArgumentError(Tr("The source folder must exist and target folder must not exist.")));
  if (QDir().rename(from, to))
    return;
  CopyFolder(from, to, control, feedback, false, true);
  if (!control.isCanceled())
    RemoveFolder(from, control, feedback);
}

void Rename(const QString& oldPath, const QString& newPath)
{
  if (!QDir().rename(FixPath(oldPath), FixPath(newPath)))
    RTE::Raise(RTE::Exception(Tr("Unknown error during 'Rename'.")));
}

void RemoveFile(const QString& path)
{
  const QString fixed = FixPath(path);
  const QFileInfo info(fixed);
  if (!info.exists() && !info.isSymLink())
    return;
  if (IsNetworkPath(path) && RemoveFileNative(fixed))
    return;
  QFile file(fixed);
  if (!info.isSymLink())
    file.setPermissions(QFileDevice::WriteOwner | file.permissions());
  if (!file.remove())
    RTE::Raise(RTE::Exception(file.errorString()));
}

bool RemoveFileNative(const QString& path)
{
  return detail::RemoveNative(FixPath(path));
}

void RemoveFiles(const QString& folder, const QStringList& nameFilters)
{
  QDir dir(FixPath(folder));
  for (const QString& name : dir.entryList(nameFilters, QDir::Files | QDir::Hidden | QDir::System))
    dir.remove(name);
}

void RemoveDirectory(const QString& path)
{
  if (path.isEmpty())
    RTE::Raise(RTE::Exception(Tr("No directory given to delete.")));
  if (!QDir(FixPath(path)).removeRecursively())
    RTE::Raise(RTE::Exception(Tr("Unknown error during 'RemoveDirectory' :") + path));
}

void RemoveFolder(const QString& path, bool recursive)
{
  const QString fixed = FixPath(path);
  if (!QFileInfo(fixed).isDir())
    return;
  const bool removed = recursive ? QDir(fixed).removeRecursively() : QDir().rmdir(fixed);
  if (!removed)
    RTE::Raise(RTE::VerificationFailed(Tr("Could not remove folder: ") + path));
}

void RemoveFolder(const QString& path, I_ActivityControl& control, I_ActivityFeedback& feedback, bool keepFolder)
{
  const QString fixed = QDir::cleanPath(FixPath(path));
  if (QDir::isRelativePath(fixed))
    RTE::Raise(RTE::InvalidArgumentError(Tr("The folder must be an absolute path.")));
  if (!QFileInfo(fixed).isDir() || QFileInfo(fixed).isSymLink())
    return;
  TreeListing listing;
  ListTree(fixed, {}, listing);
  // Links are removed as files, never followed; names that are no valid text go with
  // their folder below.
  for (const QString& skipped : std::as_const(listing.skipped))
    if (QFileInfo(fixed + Slash + skipped).isSymLink())
      listing.files << skipped;
  const auto failed = [&] { RTE::Raise(RTE::LogicError(Tr("Could not remove the folder: ") + path)); };
  const qsizetype total = listing.files.size() + listing.folders.size() + 1;
  qsizetype count = 0;
  for (const QString& file : std::as_const(listing.files))
  {
    if (control.isCanceled())
      return;
    if (!RemoveRaw(AT_FDCWD, QFile::encodeName(fixed + Slash + file).constData()))
      failed();
    ++count;
    const double percent = 100.0 * static_cast<double>(count) / static_cast<double>(total);
    feedback.reportMessage(QStringLiteral("%1 (%2%)").arg(file).arg(static_cast<int>(percent)));
    feedback.reportProgress(percent);
  }
  // Deepest first, so each folder is empty when its turn comes.
  for (auto it = listing.folders.crbegin(); it != listing.folders.crend(); ++it)
  {
    if (control.isCanceled())
      return;
    if (!RemoveRaw(AT_FDCWD, QFile::encodeName(fixed + Slash + *it).constData()))
      failed();
    ++count;
    feedback.reportProgress(100.0 * static_cast<double>(count) / static_cast<double>(total));
  }
  if (!RemoveRaw(AT_FDCWD, QFile::encodeName(fixed).constData(), keepFolder))
    failed();
  feedback.reportProgress(100.0);
}

QString MakeUniqueFileName(const QString& path)
{
  if (!QFileInfo::exists(FixPath(path)) && !QFileInfo(FixPath(path)).isSymLink())
    return path;
  const QString base = GetFileNameWithoutExtension(path);
  const QString suffix = QFileInfo(path).suffix();
  for (int n = 1;; ++n)
  {
    const QString candidate = QStringLiteral("%1_%2.%3").arg(base).arg(n).arg(suffix);
    if (!QFileInfo::exists(FixPath(candidate)))
      return candidate;
  }
}

QString MakeUniqueFolderPath(const QString& path)
{
  const QString fixed = FixPath(path);
  if (!QFileInfo::exists(fixed))
    return QFileInfo(fixed).absoluteFilePath();
  for (int n = 1;; ++n)
  {
    const QString candidate = QStringLiteral("%1_%2").arg(fixed).arg(n);
    if (!QFileInfo::exists(candidate))
      return QFileInfo(candidate).absoluteFilePath();
  }
}

QStringList GetFiles(const QString& folder, const QString& pattern, bool recursive, bool foldersOnly)
{
  const QString fixed = folder.isEmpty() ? QDir::currentPath() : FixPath(folder);
  QStringList found;
  if (!QFileInfo(fixed).isDir())
    return found;
  const QRegularExpression expression(pattern, QRegularExpression::CaseInsensitiveOption);
  QStringList subfolders;
  for (const QFileInfo& entry : Entries(fixed))
  {
    const bool isFolder = entry.isDir();
    if (isFolder && !entry.isSymLink())
      subfolders << entry.absoluteFilePath();
    if (isFolder == foldersOnly && expression.match(entry.fileName()).hasMatch())
      found << entry.absoluteFilePath();
  }
  if (recursive)
    for (const QString& subfolder : subfolders)
      found += GetFiles(subfolder, pattern, true, foldersOnly);
  return found;
}

QFileInfoList SortFileInfoList(const QFileInfoList& list)
{
  const QCollator collator = NaturalCollator();
  QFileInfoList sorted = list;
  std::stable_sort(sorted.begin(), sorted.end(),
                   [&](const QFileInfo& a, const QFileInfo& b)
                   { return collator.compare(a.fileName(), b.fileName()) < 0; });
  return sorted;
}

std::vector<QString> SortFileInfoList(const std::vector<QString>& list)
{
  const QCollator collator = NaturalCollator();
  std::vector<QString> sorted = list;
  std::stable_sort(sorted.begin(), sorted.end(),
                   [&](const QString& a, const QString& b)
                   { return collator.compare(QFileInfo(a).fileName(), QFileInfo(b).fileName()) < 0; });
  return sorted;
}

bool HasWritePermissions(const QString& path)
{
  const QFileInfo info(FixPath(path));
  if (!info.isDir())
    return info.exists() && info.isWritable();
  QFile probe(info.absoluteFilePath() + QStringLiteral("/WritePermissionTest") +
              QString::number(QDateTime::currentMSecsSinceEpoch()));
  const bool opened = probe.open(QIODevice::ReadWrite);
  if (opened)
  {
    probe.close();
    probe.remove();
  }
  return opened;
}

void SetWritePermission(const QString& path)
{
  const QString fixed = FixPath(path);
  const QFileInfo info(fixed);
  if (info.isSymLink())
    return;
  if (!info.isDir())
  {
    QFile::setPermissions(fixed, QFileDevice::Permissions(0x7770));
    return;
  }
  for (const QFileInfo& entry : Entries(fixed))
    SetWritePermission(entry.filePath());
}

bool WaitForAccess(const QString& path, const QString& context)
{
  Q_UNUSED(context);
  const QString fixed = FixPath(path);
  if (QFileInfo::exists(fixed))
    return true;
  // Creating and removing a folder next to the path makes a network share refresh its
  // cached listing of the parent.
  const QString parent = QFileInfo(fixed).absolutePath();
  const QString refresh =
      parent + QStringLiteral("/VelmoFSCache-%1.tmp").arg(QUuid::createUuid().toString(QUuid::WithBraces));
  if (QDir().mkdir(refresh))
    QDir().rmdir(refresh);
  for (int test = 1;; ++test)
  {
    if (QFileInfo::exists(fixed))
      return true;
    if (test >= RetryCount)
      return false;
    RetryPause();
  }
}

void ReadLinuxDriveMappingConfiguration(const QString& file)
{
  QFile input(file);
  if (!input.open(QIODevice::ReadOnly | QIODevice::Text))
    return;
  DriveMapping& mapping = Mapping();
  const QMutexLocker lock(&mapping.mutex);
  while (!input.atEnd())
  {
    const QString line = QString::fromUtf8(input.readLine()).remove(QLatin1Char('\n')).remove(QLatin1Char('\r'));
    const QStringList parts = line.split(QLatin1Char('\t'), Qt::SkipEmptyParts);
    if (parts.size() != 2)
      continue;
    const QString& key = parts[0];
    if (key.size() == 2 && key[1] == QLatin1Char(':'))
      mapping.letters.insert(key.left(1).toUpper(), parts[1]);
    else if (key.size() > 2 && key.startsWith(QStringLiteral("//")))
      mapping.shares.append({key, parts[1]});
  }
}

QString GetLinuxDriveMapping(const QString& letterOrShare)
{
  DriveMapping& mapping = Mapping();
  const QMutexLocker lock(&mapping.mutex);
  if (letterOrShare.size() == 1 || (letterOrShare.size() == 2 && letterOrShare[1] == QLatin1Char(':')))
    return mapping.letters.value(letterOrShare.left(1).toUpper());
  for (const auto& [share, folder] : std::as_const(mapping.shares))
    if (share.compare(letterOrShare, Qt::CaseInsensitive) == 0)
      return folder;
  return {};
}

QString UnmapLinuxDrive(const QString& path)
{
  DriveMapping& mapping = Mapping();
  const QMutexLocker lock(&mapping.mutex);
  if (path.size() >= 2 && path[1] == QLatin1Char(':') && path[0].isLetter())
  {
    const auto found = mapping.letters.constFind(path.left(1).toUpper());
    if (found == mapping.letters.constEnd())
      return path;
    QString rest = path.mid(2);
    rest.replace(Backslash, Slash);
    if (!rest.isEmpty() && !rest.startsWith(Slash))
      rest.prepend(Slash);
    return *found + rest;
  }
  if (IsNetworkPath(path))
  {
    const QString forward = QString(path).replace(Backslash, Slash);
    for (const auto& [share, folder] : std::as_const(mapping.shares))
    {
      if (forward.startsWith(share, Qt::CaseInsensitive) &&
          (forward.size() == share.size() || forward[share.size()] == Slash))
        return folder + forward.mid(share.size());
    }
  }
  return path;
}

} // namespace RTE::FileSystem
