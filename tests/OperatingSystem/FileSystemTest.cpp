#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/OperatingSystem/ActivityControl.h>
#include <Core/Common/OperatingSystem/ActivityFeedback.h>
#include <Core/Common/OperatingSystem/FileNameOps.h>
#include <Core/Common/OperatingSystem/FileSystem.h>
#include <Core/Common/OperatingSystem/FileSystem_p.h>
#include <Core/Common/OperatingSystem/QFileAsFILE.h>
#include <Core/Common/OperatingSystem/TempFolder.h>

#include "TestFiles.h"
#include "TestHelpers.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <thread>

#include <dlfcn.h>

namespace FS = RTE::FileSystem;

TEST(FileSystemPaths, FixPathAndNamePartsFollowTheirRules)
{
  EXPECT_EQ(FS::FixPath(QStringLiteral("a\\b//c")), QStringLiteral("a/b/c"));
  // One left-to-right pass: three separators become two.
  EXPECT_EQ(FS::FixPath(QStringLiteral("a///b")), QStringLiteral("a//b"));
  EXPECT_EQ(FS::FixPath(QStringLiteral("\\\\server\\\\share\\x")), QStringLiteral("//server/share/x"));

  EXPECT_EQ(FS::ExtractFileName(QStringLiteral("/d/a.txt.txt"), true), QStringLiteral("a"));
  EXPECT_EQ(FS::ExtractFileName(QStringLiteral("C:a.txt")), QStringLiteral("a.txt"));
  EXPECT_EQ(FS::ExtractExtension(QStringLiteral("/d/a.tar.gz"), true), QStringLiteral(".gz"));
  EXPECT_EQ(FS::ExtractPathName(QStringLiteral("\\d\\e\\f.txt")), QStringLiteral("/d/e"));
  EXPECT_EQ(FS::ExtractPathName(QString()), QString());
  EXPECT_EQ(FS::GetFileNameWithoutExtension(QStringLiteral("/d.x/a")), QStringLiteral("/d"));

  EXPECT_TRUE(FS::IsDriveNameValid(QStringLiteral("z:")));
  EXPECT_FALSE(FS::IsDriveNameValid(QStringLiteral("1:")));
  EXPECT_FALSE(FS::IsDriveNameValid(QStringLiteral("C:/")));
  EXPECT_EQ(MessageOf<RTE::Exception>([] { FS::GetDeviceType(QStringLiteral("relative")); }),
            QStringLiteral("Invalid drive."));
}

TEST(FileSystemPaths, SizesVersionsAndFileNames)
{
  EXPECT_EQ(FS::SizeToString(0), QStringLiteral("0 Bytes"));
  EXPECT_EQ(FS::SizeToString(1023), QStringLiteral("1023 Bytes"));
  EXPECT_EQ(FS::SizeToString(1024), QStringLiteral("1 KB"));
  EXPECT_EQ(FS::SizeToString(1536), QStringLiteral("1.5 KB"));
  EXPECT_EQ(FS::SizeToString(1048575), QStringLiteral("1023.9 KB"));
  EXPECT_EQ(FS::SizeToString(1099511627776ULL), QStringLiteral("1 TB"));
  EXPECT_EQ(FS::SizeToString(1099511627776ULL * 1536), QStringLiteral("1.5 PB"));

  const FS::FileVersion v12 = FS::FileVersion::fromString(QStringLiteral("1.2"));
  EXPECT_TRUE(v12.valid);
  EXPECT_EQ(v12.toString(), QStringLiteral("1.2.0.0"));
  const FS::FileVersion none = FS::FileVersion::fromString(QString());
  EXPECT_FALSE(none.valid);
  EXPECT_EQ(none.toString(), QStringLiteral("0.0.0.0"));
  EXPECT_TRUE(FS::FileVersion::fromString(QStringLiteral("1.10")) > v12);
  EXPECT_FALSE(v12 > FS::FileVersion::fromString(QStringLiteral("1.2.0.1")));
  EXPECT_EQ(none, FS::FileVersion::fromString(QStringLiteral("0")));

  using RTE::FileNameOps;
  EXPECT_FALSE(FileNameOps::IsFileNameValid(QStringLiteral(" .hidden")));
  EXPECT_TRUE(FileNameOps::IsFileNameValid(QStringLiteral("say \"hi\"")));
  EXPECT_FALSE(FileNameOps::IsFileNameValid(QStringLiteral("a\nb")));
  EXPECT_EQ(FileNameOps::MakeValidFileName(QStringLiteral("C:/a:b"), QLatin1Char('_'), false),
            QStringLiteral("C:/a_b"));
  EXPECT_EQ(FileNameOps::MakeValidFileName(QStringLiteral(" C:/a|b "), QLatin1Char('-'), true),
            QStringLiteral("C--a-b"));
}

TEST(FileSystemPaths, UniqueNamesAndTheLengthLimit)
{
  QTemporaryDir dir;
  const QString d = dir.path();
  WriteFile(d + "/a.txt", 1);
  WriteFile(d + "/a_1.txt", 1);
  WriteFile(d + "/plain", 1);
  EXPECT_EQ(FS::MakeUniqueFileName(d + "/a.txt"), d + "/a_2.txt");
  EXPECT_EQ(FS::MakeUniqueFileName(d + "/b.txt"), d + "/b.txt");
  EXPECT_EQ(FS::MakeUniqueFileName(d + "/plain"), d + "/plain_1.");
  QDir().mkpath(d + "/f");
  EXPECT_EQ(FS::MakeUniqueFolderPath(d + "/f"), d + "/f_1");

  // target + "/" + name exactly 260 characters, then 261.
  const QString target = d + "/t";
  const QString name = QString(259 - static_cast<int>(target.size()), QLatin1Char('n'));
  WriteFile(d + "/" + name, 1);
  EXPECT_FALSE(FS::PathLengthExceedsLimit(target, {d + "/" + name}));
  EXPECT_TRUE(FS::PathLengthExceedsLimit(target + "x", {d + "/" + name}));
  // A folder contributes its deepest file below the copied folder's new place.
  WriteFile(d + "/src/sub/" + QString(200, QLatin1Char('k')), 1);
  const int below = static_cast<int>(QStringLiteral("/src/sub/").size()) + 200;
  const QString fits = QString(259 - below, QLatin1Char('p'));
  EXPECT_FALSE(FS::PathLengthExceedsLimit(QLatin1Char('/') + fits, {d + "/src"}));
  EXPECT_TRUE(FS::PathLengthExceedsLimit(QLatin1Char('/') + fits + "p", {d + "/src"}));
}

TEST(FileSystemPaths, NaturalOrderHoldsInTheCLocale)
{
  const QLocale previous;
  QLocale::setDefault(QLocale::c());
  const std::vector<QString> sorted =
      FS::SortFileInfoList(std::vector<QString>{"/x/img10.png", "/y/img2.png", "/z/Img1.png", "/a/img2b.png"});
  QLocale::setDefault(previous);
  EXPECT_EQ(sorted, (std::vector<QString>{"/z/Img1.png", "/y/img2.png", "/a/img2b.png", "/x/img10.png"}));
}

TEST(FileSystemFolders, CreationAndWaitingGiveUpWithTheirMessages)
{
  FS::detail::SetRetryPause(0);
  QTemporaryDir dir;
  WriteFile(dir.path() + "/file", 1);
  const QString blocked = dir.path() + "/file/sub";
  EXPECT_EQ(MessageOf<RTE::Exception>([&] { FS::CreateDirectory(blocked); }),
            "Unknown error during 'CreateDirectory' " + blocked);
  EXPECT_EQ(MessageOf<RTE::Exception>([&] { FS::CreateDirectoryHierarchy(blocked + "//"); }),
            "Unknown error during 'CreateDirectoryHierarchy' " + blocked + "//");
  FS::CreateDirectoryHierarchy(dir.path() + "\\a\\b\\");
  EXPECT_TRUE(QFileInfo(dir.path() + "/a/b").isDir());

  EXPECT_FALSE(FS::WaitForAccess(dir.path() + "/never"));
  // The refresh folder is gone again.
  EXPECT_EQ(QDir(dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 2);
  FS::detail::SetRetryPause(100);
}

TEST(FileSystemCopy, PiecesReportProgressAndCancelWithoutLeavingAHalfFile)
{
  QTemporaryDir dir;
  const QString source = dir.path() + "/big.bin";
  const qint64 size = 3 * 1048576 + 1000;
  WriteFile(source, size, 'b');

  std::vector<std::pair<std::uint64_t, std::uint64_t>> calls;
  ASSERT_TRUE(FS::CopyFileInPieces(
      source, dir.path() + "/copy.bin", [&](std::uint64_t i, std::uint64_t n) { calls.emplace_back(i, n); },
      [] { return false; }));
  EXPECT_EQ(calls, (std::vector<std::pair<std::uint64_t, std::uint64_t>>{{0, 4}, {1, 4}, {2, 4}, {3, 4}}));
  EXPECT_EQ(readFile(dir.path() + "/copy.bin"), readFile(source));

  // An existing target without overwrite is left alone.
  WriteFile(dir.path() + "/keep.bin", 5);
  EXPECT_FALSE(FS::CopyFileInPieces(source, dir.path() + "/keep.bin", {}, {}, false));
  EXPECT_EQ(QFileInfo(dir.path() + "/keep.bin").size(), 5);

  int pieces = 0;
  EXPECT_FALSE(FS::CopyFileInPieces(
      source, dir.path() + "/keep.bin", [&](std::uint64_t, std::uint64_t) { ++pieces; }, [] { return true; }, true));
  EXPECT_EQ(pieces, 1);
  EXPECT_FALSE(QFileInfo::exists(dir.path() + "/keep.bin"));

  EXPECT_EQ(MessageOf<RTE::VerificationFailed>([&] { FS::CopyFile(dir.path() + "/none", dir.path() + "/x"); }),
            "Source file for 'CopyFile' doesn't exist: " + dir.path() + "/none");
  EXPECT_EQ(MessageOf<RTE::Exception>([&] { FS::CopyFile(source, dir.path() + "/copy.bin"); }),
            "Target file of 'CopyFile' already exists: " + dir.path() + "/copy.bin");
  EXPECT_EQ(MessageOf<RTE::Exception>([&] { FS::CopyFile(source, dir.path() + "/no/such/folder"); }),
            "Unknown error during 'CopyFile' " + source + " to " + dir.path() + "/no/such/folder");
}

TEST(FileSystemCopy, ProgressCopyFolderFiltersReportsAndCleansUp)
{
  QTemporaryDir dir;
  const QString src = dir.path() + "/src";
  WriteFile(src + "/a.txt", 10);
  WriteFile(src + "/sub/b.bin", 2 * 1048576 + 5);
  WriteFile(src + "/sub/skip.tmp", 3);
  QDir().mkpath(src + "/empty");

  RTE::ActivityControl control;
  RTE::ActivityFeedback feedback;
  QStringList messages;
  std::vector<double> progress;
  QObject::connect(&feedback, &RTE::I_ActivityFeedback::messageReported, [&](const QString& m) { messages << m; });
  QObject::connect(&feedback, &RTE::I_ActivityFeedback::progressReported, [&](double p) { progress.push_back(p); });

  const QString dst = dir.path() + "/dst";
  FS::CopyFolder(src, dst, control, feedback, false, false, {QStringLiteral(".tmp")});
  EXPECT_EQ(readFile(dst + "/sub/b.bin"), readFile(src + "/sub/b.bin"));
  EXPECT_TRUE(QFileInfo(dst + "/empty").isDir());
  EXPECT_FALSE(QFileInfo::exists(dst + "/sub/skip.tmp"));
  EXPECT_EQ(messages.filter(QRegularExpression(QStringLiteral("^sub/b\\.bin \\("))).size(), 1);
  EXPECT_EQ(messages.filter(QRegularExpression(QStringLiteral("^empty \\("))).size(), 1);
  const QRegularExpression shape(QStringLiteral("^.+ \\(\\d{1,3}%\\)$"));
  for (const QString& m : messages)
    EXPECT_TRUE(shape.match(m).hasMatch()) << m.toStdString();
  ASSERT_FALSE(progress.empty());
  EXPECT_TRUE(std::is_sorted(progress.begin(), progress.end()));
  EXPECT_DOUBLE_EQ(progress.back(), 100.0);

  EXPECT_EQ(MessageOf<RTE::InvalidArgumentError>([&] { FS::CopyFolder(src, dst, control, feedback); }),
            QStringLiteral("The target folder must not exist."));
  EXPECT_EQ(MessageOf<RTE::InvalidArgumentError>([&] { FS::CopyFolder("rel", dst + "2", control, feedback); }),
            QStringLiteral("Source and target folders must be absolute paths."));

  // A file that cannot be written fails the copy and removes the target.
  QDir().mkpath(dir.path() + "/dst3/sub/b.bin"); // a folder where a file must go
  EXPECT_EQ(MessageOf<RTE::LogicError>(
                [&] { FS::CopyFolder(src, dir.path() + "/dst3", control, feedback, true, true, {}, true); }),
            QStringLiteral("The file \"sub/b.bin\" could not be copied to the target folder."));
  EXPECT_TRUE(QFileInfo::exists(dir.path() + "/dst3")); // kept on request
}

TEST(FileSystemCopy, CancelFromAnotherThreadStopsWithinOnePiece)
{
  QTemporaryDir dir;
  const QString src = dir.path() + "/src";
  WriteFile(src + "/b.bin", 5 * 1048576);

  for (const bool keepTarget : {false, true})
  {
    RTE::ActivityControl control;
    RTE::ActivityFeedback feedback;
    std::atomic<bool> firstPiece{false};
    std::atomic<int> progressAfterCancel{0};
    QObject::connect(
        &feedback, &RTE::I_ActivityFeedback::progressReported, &feedback,
        [&](double)
        {
          if (control.isCanceled())
            ++progressAfterCancel;
          if (!firstPiece.exchange(true))
            while (!control.isCanceled())
              std::this_thread::sleep_for(std::chrono::milliseconds(1));
        },
        Qt::DirectConnection);

    const QString dst = dir.path() + (keepTarget ? "/kept" : "/gone");
    if (keepTarget)
      QDir().mkpath(dst);
    std::thread worker([&] { FS::CopyFolder(src, dst, control, feedback, keepTarget); });
    while (!firstPiece)
      std::this_thread::sleep_for(std::chrono::milliseconds(1));
    control.cancel();
    worker.join();

    EXPECT_LE(progressAfterCancel.load(), 1);
    if (!keepTarget)
      EXPECT_FALSE(QFileInfo::exists(dst));
    else
      EXPECT_FALSE(QFileInfo::exists(dst + "/b.bin")); // no half-copied file
  }
}

TEST(FileSystemRemove, ProgressRemovalStopsOnCancelAndKeepsTheFolderOnRequest)
{
  QTemporaryDir dir;
  const QString root = dir.path() + "/tree";
  for (int i = 0; i < 5; ++i)
    WriteFile(root + QStringLiteral("/s%1/f.txt").arg(i), 10);

  RTE::ActivityControl control;
  RTE::ActivityFeedback feedback;
  int removed = 0;
  QObject::connect(&feedback, &RTE::I_ActivityFeedback::messageReported,
                   [&](const QString&)
                   {
                     if (++removed == 2)
                       control.cancel();
                   });
  FS::RemoveFolder(root, control, feedback);
  EXPECT_EQ(removed, 2);
  EXPECT_EQ(FS::GetFiles(root, QStringLiteral("\\.TXT$"), true).size(), 3);

  control.reset();
  FS::RemoveFolder(root, control, feedback, true);
  EXPECT_TRUE(QFileInfo(root).isDir());
  EXPECT_TRUE(QDir(root).isEmpty(QDir::AllEntries | QDir::NoDotAndDotDot | QDir::Hidden));
  FS::RemoveFolder(root, control, feedback);
  EXPECT_FALSE(QFileInfo::exists(root));
  FS::RemoveFolder(root, control, feedback); // nothing to do
  EXPECT_EQ(MessageOf<RTE::InvalidArgumentError>([&] { FS::RemoveFolder("rel", control, feedback); }),
            QStringLiteral("The folder must be an absolute path."));
}

TEST(FileSystemSizes, DirSizeCountsFilesOnlyAndHonoursThrottleAndCancel)
{
  QTemporaryDir dir;
  const QString root = dir.path() + "/tree";
  WriteFile(root + "/a", 100);
  WriteFile(root + "/.hidden", 20);
  WriteFile(root + "/s/t/b", 3);
  WriteFile(dir.path() + "/outside", 100000);
  QFile::link(dir.path() + "/outside", root + "/link");
  QFile::link(root, root + "/s/loop");

  RTE::ActivityControl control;
  EXPECT_EQ(FS::DirSize(root, control), 123U);
  EXPECT_EQ(FS::DirSize(root + "/a", control), 0U);

  const auto start = std::chrono::steady_clock::now();
  EXPECT_EQ(FS::DirSize(root, control, true), 123U);
  // Five entries at the top levels, 10 ms each.
  EXPECT_GE(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(50));

  control.cancel();
  EXPECT_LT(FS::DirSize(root, control), 123U);

  std::uint64_t available = 0;
  std::uint64_t required = 0;
  control.reset();
  EXPECT_TRUE(FS::IsEnoughSpaceAvailable(dir.path(), {root, dir.path() + "/outside"}, available, required));
  EXPECT_EQ(required, 100123U);
  EXPECT_GT(available, required); // the volume changes under other processes: no exact figure
  EXPECT_EQ(MessageOf<RTE::VerificationFailed>([] { FS::AvailableDriveSpace(QString()); }),
            QStringLiteral("drive must not be empty"));
}

TEST(FileSystemDrives, MappedDriveLettersReachTheirFolders)
{
  QTemporaryDir dir;
  WriteFile(dir.path() + "/mapping.txt", 0);
  QFile mapping(dir.path() + "/mapping.txt");
  ASSERT_TRUE(mapping.open(QIODevice::WriteOnly));
  mapping.write(("Q:\t" + dir.path() + "\n//srv/share\t\t" + dir.path() + "/share\nbad line\nX:\ta\tb\n").toUtf8());
  mapping.close();
  FS::ReadLinuxDriveMappingConfiguration(dir.path() + "/mapping.txt");
  FS::ReadLinuxDriveMappingConfiguration(dir.path() + "/missing.txt");

  EXPECT_EQ(FS::GetLinuxDriveMapping(QStringLiteral("q")), dir.path());
  EXPECT_EQ(FS::GetLinuxDriveMapping(QStringLiteral("X")), QString());
  EXPECT_EQ(FS::UnmapLinuxDrive(QStringLiteral("Q:\\data\\x.xml")), dir.path() + "/data/x.xml");
  EXPECT_EQ(FS::UnmapLinuxDrive(QStringLiteral("\\\\SRV\\share\\x")), dir.path() + "/share/x");
  EXPECT_EQ(FS::UnmapLinuxDrive(QStringLiteral("//srv/shared/x")), QStringLiteral("//srv/shared/x"));
  EXPECT_EQ(FS::UnmapLinuxDrive(QStringLiteral("R:/x")), QStringLiteral("R:/x"));
  WriteFile(dir.path() + "/data/x.xml", 7);
  EXPECT_EQ(FS::GetSize(QStringLiteral("Q:/data/x.xml")), 7U);
  EXPECT_NE(FS::GetDeviceType(QStringLiteral("Q:/data")), FS::NoRootDirectory);
  EXPECT_EQ(FS::GetDeviceType(QStringLiteral("R:/data")), FS::NoRootDirectory);
}

TEST(FileSystemObjects, StreamsScratchFoldersAndVersions)
{
  QTemporaryDir dir;
  const QString path = dir.path() + "/stream.bin";
  {
    RTE::QFileAsFILE file(path);
    file.openForWriting();
    EXPECT_EQ(MessageOf<RTE::VerificationFailed>([&] { file.openForReading(); }), QStringLiteral("File already open"));
    ASSERT_EQ(std::fwrite("0123456789", 1, 10, file.get()), 10U);
    std::fflush(file.get());
    EXPECT_EQ(FS::GetSize(file.get()), 10U);
  } // the destructor closes the owned stream
  RTE::QFileAsFILE reader(path);
  reader.openForReading();
  FS::SetPosition(reader.get(), 4);
  EXPECT_EQ(std::fgetc(reader.get()), '4');
  EXPECT_EQ(FS::GetPosition(reader.get()), 5);
  reader.close();
  EXPECT_EQ(reader.get(), nullptr);
  EXPECT_EQ(MessageOf<RTE::Exception>([&] { RTE::QFileAsFILE(dir.path() + "/none").openForReading(); }),
            "Unable to open file \"" + dir.path() + "/none\"");
  EXPECT_EQ(MessageOf<RTE::Exception>([&] { RTE::QFileAsFILE(dir.path() + "/no/x").openForWriting(); }),
            "Unable to create file \"" + dir.path() + "/no/x\"");

  QString scratchPath;
  {
    const RTE::TempFolder scratch(dir.path() + "/scratch");
    scratchPath = scratch.GetPath();
    EXPECT_TRUE(scratchPath.startsWith(dir.path() + "/scratch/Temp_"));
    EXPECT_TRUE(QRegularExpression(QStringLiteral("/Temp_\\d{8}_\\d{9}_\\d+$")).match(scratchPath).hasMatch());
    WriteFile(scratchPath + "/inner/x", 3);
    const RTE::TempFolder copy = scratch;
    EXPECT_EQ(copy.GetPath(), scratchPath);
  }
  EXPECT_FALSE(QFileInfo::exists(scratchPath));

  // Our libraries carry their version in the file name; programs carry none.
  Dl_info library{};
  ASSERT_NE(::dladdr(reinterpret_cast<void*>(&FS::SizeToString), &library), 0);
  const FS::FileVersion version = FS::GetFileVersion(QFile::decodeName(library.dli_fname));
  EXPECT_TRUE(version.valid);
  EXPECT_TRUE(QFileInfo(QFile::decodeName(library.dli_fname))
                  .canonicalFilePath()
                  .endsWith(".so." + version.toString().section('.', 0, 2)));
  EXPECT_FALSE(FS::GetFileVersion(QCoreApplication::applicationFilePath()).valid);
  EXPECT_FALSE(FS::GetFileVersion(path).valid);
}

TEST(FileSystemMoves, MovesRenamesAndPlainRemovalsFollowTheirRules)
{
  QTemporaryDir dir;
  const QString d = dir.path();
  WriteFile(d + "/a.txt", 3);
  WriteFile(d + "/b.txt", 4);

  EXPECT_EQ(MessageOf<RTE::VerificationFailed>([&] { FS::MoveFile(QStringLiteral("a.txt"), d + "/c.txt"); }),
            QStringLiteral("Paths of source and target files must be absolute paths."));
  EXPECT_EQ(MessageOf<RTE::VerificationFailed>([&] { FS::MoveFile(d + "/a.txt", d + "/b.txt"); }),
            QStringLiteral("Target file exists already (and overwrite is off)."));
  FS::MoveFile(d + "/a.txt", d + "/b.txt", true);
  EXPECT_EQ(QFileInfo(d + "/b.txt").size(), 3);
  EXPECT_FALSE(QFileInfo::exists(d + "/a.txt"));
  // No parent folders are made for a target.
  EXPECT_THROW(FS::MoveFile(d + "/b.txt", d + "/no/b.txt"), RTE::Exception);
  EXPECT_EQ(MessageOf<RTE::Exception>([&] { FS::Rename(d + "/none", d + "/x"); }),
            QStringLiteral("Unknown error during 'Rename'."));

  WriteFile(d + "/tree/s/f.dat", 5);
  WriteFile(d + "/tree/g.log", 1);
  FS::CopyFolder(d + "/tree", d + "/plain");
  EXPECT_EQ(QFileInfo(d + "/plain/s/f.dat").size(), 5);
  EXPECT_EQ(MessageOf<RTE::VerificationFailed>([&] { FS::CopyFolder(d + "/tree", d + "/plain"); }),
            QStringLiteral("The target folder must not exist."));
  EXPECT_EQ(MessageOf<RTE::VerificationFailed>([&] { FS::MoveFolder(d + "/tree", d + "/plain"); }),
            QStringLiteral("The target folder must not exist."));
  FS::MoveFolder(d + "/tree", d + "/moved");
  EXPECT_TRUE(QFileInfo::exists(d + "/moved/s/f.dat"));

  // Lazy copy keeps what the target has; overwrite copy replaces it.
  WriteFile(d + "/target/s/f.dat", 1);
  FS::LazyCopyFolderContent(d + "/moved", d + "/target");
  EXPECT_EQ(QFileInfo(d + "/target/s/f.dat").size(), 1);
  EXPECT_TRUE(QFileInfo::exists(d + "/target/g.log"));
  FS::CopyOverwriteRecursive(d + "/moved", d + "/target");
  EXPECT_EQ(QFileInfo(d + "/target/s/f.dat").size(), 5);

  FS::RemoveFiles(d + "/target", {QStringLiteral("*.log")});
  EXPECT_FALSE(QFileInfo::exists(d + "/target/g.log"));
  EXPECT_EQ(MessageOf<RTE::VerificationFailed>([&] { FS::RemoveFolder(d + "/target", false); }),
            "Could not remove folder: " + d + "/target");
  FS::RemoveFolder(d + "/target", true);
  EXPECT_FALSE(QFileInfo::exists(d + "/target"));
  EXPECT_EQ(MessageOf<RTE::Exception>([] { FS::RemoveDirectory(QString()); }),
            QStringLiteral("No directory given to delete."));

  // A read-only file is removed all the same; a missing one is nothing to do.
  QFile::setPermissions(d + "/b.txt", QFileDevice::ReadOwner);
  FS::RemoveFile(d + "/b.txt");
  EXPECT_FALSE(QFileInfo::exists(d + "/b.txt"));
  FS::RemoveFile(d + "/b.txt");
  EXPECT_TRUE(FS::HasWritePermissions(d));
  EXPECT_EQ(QDir(d).entryList(QDir::Files).size(), 0); // the probe file is gone again
  EXPECT_FALSE(FS::HasWritePermissions(d + "/none"));

  QStringList found = FS::GetFiles(d, QStringLiteral("^F"), true);
  found.sort();
  EXPECT_EQ(found, (QStringList{d + "/moved/s/f.dat", d + "/plain/s/f.dat"}));
  EXPECT_EQ(FS::GetFiles(d, QStringLiteral("^s$"), true, true).size(), 2); // moved/s, plain/s
}

TEST(FileSystemRemove, CancelFromAnotherThreadStopsAfterTheCurrentFile)
{
  QTemporaryDir dir;
  for (int i = 0; i < 20; ++i)
    WriteFile(dir.path() + QStringLiteral("/tree/f%1").arg(i), 1);
  RTE::ActivityControl control;
  RTE::ActivityFeedback feedback;
  std::atomic<int> messages{0};
  QObject::connect(
      &feedback, &RTE::I_ActivityFeedback::messageReported, &feedback,
      [&](const QString&)
      {
        if (++messages == 1)
          while (!control.isCanceled())
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
      },
      Qt::DirectConnection);
  std::thread worker([&] { FS::RemoveFolder(dir.path() + "/tree", control, feedback); });
  while (messages == 0)
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  control.cancel();
  worker.join();
  EXPECT_EQ(messages.load(), 1);
  EXPECT_EQ(QDir(dir.path() + "/tree").entryList(QDir::Files).size(), 19);
}
