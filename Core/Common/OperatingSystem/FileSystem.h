// The library's one door to files and folders: existence and size queries, path
// splitting, copying, moving and removing (with and without progress and cancellation),
// drive information, unique names, path-length limits and waiting for a path to show up.
//
//   RTE::ActivityControl control;
//   RTE::ActivityFeedback feedback;
//   RTE::FileSystem::CopyFolder("/data/run1", "/backup/run1", control, feedback);
//
// Failures throw the exceptions of the library's family with the texts documented per
// function; paths are fixed with FixPath first, so "\\" and "//" may be used freely.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QDateTime>
#include <QFileInfo>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <cstdio>
#include <functional>
#include <vector>

namespace RTE
{
class I_ActivityControl;
class I_ActivityFeedback;
} // namespace RTE

namespace RTE::FileSystem
{

// A four-part file version; valid once read or parsed.
struct CORECOMMON_EXPORT FileVersion
{
  bool valid = false;
  std::uint16_t major = 0;
  std::uint16_t minor = 0;
  std::uint16_t build = 0;
  std::uint16_t revision = 0;

  QString toString() const;
  // Splits at "." (empty parts skipped); valid when at least one part was given.
  static FileVersion fromString(const QString& text);

  bool operator==(const FileVersion& other) const;
  bool operator!=(const FileVersion& other) const;
  bool operator>(const FileVersion& other) const;
};

// Numeric values are those of the Windows drive-type codes.
enum E_DriveType
{
  Unknown = 0,
  NoRootDirectory = 1,
  Removable = 2,
  Fixed = 3,
  Remote = 4,
  Optical = 5,
  RamDisk = 6,
};

// Path text.
CORECOMMON_EXPORT QString FixPath(const QString& path);
CORECOMMON_EXPORT bool Exists(const QString& path);
CORECOMMON_EXPORT QString ExtractExtension(const QString& path, bool withDot = false);
CORECOMMON_EXPORT QString ExtractFileName(const QString& path, bool stripExtension = false);
CORECOMMON_EXPORT QString ExtractPathName(const QString& path);
CORECOMMON_EXPORT QString GetFileNameWithoutExtension(const QString& path);
CORECOMMON_EXPORT QString GetCurrentWorkDirectory();
CORECOMMON_EXPORT QString GetProgramPath();
CORECOMMON_EXPORT QDateTime GetModificationTime(const QString& path);
CORECOMMON_EXPORT int PathLength(const QString& path);
CORECOMMON_EXPORT int getMaxPathLength();
CORECOMMON_EXPORT bool PathLengthExceedsLimit(const QString& targetFolder, const QStringList& sources);

// Sizes and drives.
CORECOMMON_EXPORT std::uint64_t GetSize(const QString& path);
CORECOMMON_EXPORT std::uint64_t GetSize(FILE* stream);
CORECOMMON_EXPORT std::int64_t GetPosition(FILE* stream);
CORECOMMON_EXPORT void SetPosition(FILE* stream, std::int64_t offset);
// Symbolic links are neither followed nor counted; unreadable folders count as empty.
CORECOMMON_EXPORT std::uint64_t DirSize(const QString& folder, const I_ActivityControl& control,
                                        bool throttled = false);
CORECOMMON_EXPORT std::uint64_t AvailableDriveSpace(const QString& path);
CORECOMMON_EXPORT double GetFreeDriveSpaceInMB(const QString& path);
CORECOMMON_EXPORT double GetTotalDriveSpaceInMB(const QString& path);
CORECOMMON_EXPORT bool IsEnoughSpaceAvailable(const QString& target, const QStringList& sources);
CORECOMMON_EXPORT bool IsEnoughSpaceAvailable(const QString& target, const QStringList& sources,
                                              std::uint64_t& available, std::uint64_t& required);
CORECOMMON_EXPORT QString GetDriveName(const QString& path);
CORECOMMON_EXPORT bool IsDriveNameValid(const QString& drive);
CORECOMMON_EXPORT E_DriveType GetDeviceType(const QString& path);
CORECOMMON_EXPORT FileVersion GetFileVersion(const QString& path);
CORECOMMON_EXPORT QString SizeToString(std::uint64_t bytes);

// Creating, copying, moving, removing.
CORECOMMON_EXPORT void CreateDirectory(const QString& path, const QString& context = {});
CORECOMMON_EXPORT void CreateDirectoryHierarchy(const QString& path, const QString& context = {});
CORECOMMON_EXPORT void CopyFile(const QString& source, const QString& target, bool overwrite = false);
// progress(pieceIndex, pieceCount) after each piece when there is more than one (the
// index counts from 0); isCancelled() after each piece. A target left incomplete is
// removed.
CORECOMMON_EXPORT bool CopyFileInPieces(const QString& source, const QString& target,
                                        const std::function<void(std::uint64_t, std::uint64_t)>& progress,
                                        const std::function<bool()>& isCancelled, bool overwrite = false);
CORECOMMON_EXPORT void CopyFolder(const QString& source, const QString& target);
CORECOMMON_EXPORT void CopyFolder(const QString& source, const QString& target, I_ActivityControl& control,
                                  I_ActivityFeedback& feedback, bool keepTarget = false, bool noFilter = false,
                                  const QStringList& excludedEndings = {}, bool overwriteFiles = false);
CORECOMMON_EXPORT void CopyOverwriteRecursive(const QString& source, const QString& target);
CORECOMMON_EXPORT void LazyCopyFolderContent(const QString& sourceDir, const QString& targetDir);
CORECOMMON_EXPORT void MoveFile(const QString& source, const QString& target, bool overwrite = false);
CORECOMMON_EXPORT void MoveFolder(const QString& source, const QString& target);
CORECOMMON_EXPORT void MoveFolder(const QString& source, const QString& target, I_ActivityControl& control,
                                  I_ActivityFeedback& feedback);
CORECOMMON_EXPORT void Rename(const QString& oldPath, const QString& newPath);
CORECOMMON_EXPORT void RemoveFile(const QString& path);
CORECOMMON_EXPORT bool RemoveFileNative(const QString& path);
CORECOMMON_EXPORT void RemoveFiles(const QString& folder, const QStringList& nameFilters);
CORECOMMON_EXPORT void RemoveDirectory(const QString& path);
CORECOMMON_EXPORT void RemoveFolder(const QString& path, bool recursive);
CORECOMMON_EXPORT void RemoveFolder(const QString& path, I_ActivityControl& control, I_ActivityFeedback& feedback,
                                    bool keepFolder = false);

// Names, permissions, waiting.
CORECOMMON_EXPORT QString MakeUniqueFileName(const QString& path);
CORECOMMON_EXPORT QString MakeUniqueFolderPath(const QString& path);
CORECOMMON_EXPORT QStringList GetFiles(const QString& folder, const QString& pattern, bool recursive = false,
                                       bool foldersOnly = false);
// By file name, "img2" before "img10", whatever the process locale.
CORECOMMON_EXPORT QFileInfoList SortFileInfoList(const QFileInfoList& list);
CORECOMMON_EXPORT std::vector<QString> SortFileInfoList(const std::vector<QString>& list);
CORECOMMON_EXPORT bool HasWritePermissions(const QString& path);
CORECOMMON_EXPORT void SetWritePermission(const QString& path);
// Up to 300 tests 100 ms apart; true once the path exists.
CORECOMMON_EXPORT bool WaitForAccess(const QString& path, const QString& context = {});

// Drive letters of settings written on Windows, mapped to folders ("C:" -> "/mnt/c").
CORECOMMON_EXPORT void ReadLinuxDriveMappingConfiguration(const QString& file);
CORECOMMON_EXPORT QString GetLinuxDriveMapping(const QString& letterOrShare);
CORECOMMON_EXPORT QString UnmapLinuxDrive(const QString& path);

} // namespace RTE::FileSystem
