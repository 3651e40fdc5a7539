#include <Core/Common/Utilities/ElfSoname_p.h>
#include <Core/Common/Utilities/VersionInfo.h>

#include "TestFiles.h"

#include <QCoreApplication>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <cstring>
#include <random>

using RTE::VersionInfo;

TEST(VersionInfo, LibraryReportsItsBuild)
{
  EXPECT_FALSE(VersionInfo::libraryVersionNumber().isNull());
  EXPECT_EQ(VersionInfo::libraryVersionNumber().segmentCount(), 3);
  EXPECT_EQ(VersionInfo::libraryVersionNumber().toString(), VersionInfo::libraryVersion());
  const QString date = VersionInfo::buildDate();
  EXPECT_TRUE(date.isEmpty() || QRegularExpression(QStringLiteral("^\\d{4}-\\d\\d-\\d\\d$")).match(date).hasMatch());
  EXPECT_FALSE(VersionInfo::sourceRevision().contains(QLatin1Char('\n')));

  // The loaded library file names its version twice: in its file name and its SONAME.
  const QString library = VersionInfo::libraryFilePath();
  ASSERT_TRUE(QFileInfo(library).isFile()) << library.toStdString();
  EXPECT_EQ(VersionInfo::soname(library),
            QStringLiteral("libCoreCommon.so.%1").arg(VersionInfo::libraryVersionNumber().majorVersion()));
  EXPECT_EQ(VersionInfo::fileVersion(library), VersionInfo::libraryVersion());
}

TEST(VersionInfo, FilesWithoutVersionGiveEmptyText)
{
  // An executable has no SONAME; a missing or non-ELF file has nothing.
  EXPECT_TRUE(VersionInfo::soname(QCoreApplication::applicationFilePath()).isEmpty());
  EXPECT_TRUE(VersionInfo::fileVersion(QCoreApplication::applicationFilePath()).isEmpty());
  EXPECT_TRUE(VersionInfo::fileVersion(QStringLiteral("/nonexistent/libx.so.1")).isEmpty());
  QTemporaryDir dir;
  const QString fake = dir.filePath(QStringLiteral("libfake.so.1"));
  ASSERT_TRUE(writeFile(fake, "\x7F"
                              "ELF not really"));
  EXPECT_TRUE(VersionInfo::fileVersion(fake).isEmpty());
  const QString empty = dir.filePath(QStringLiteral("empty"));
  ASSERT_TRUE(writeFile(empty, QByteArray()));
  EXPECT_TRUE(VersionInfo::soname(empty).isEmpty());
}

namespace
{

// A minimal ELF image: header, string table, dynamic section (DT_SONAME, DT_NULL) and
// three section headers (null, string table, dynamic) at the end.
QByteArray makeElf(bool is64, bool bigEndian, const QByteArray& soname)
{
  QByteArray image;
  const auto put = [&](qsizetype at, std::uint64_t value, int size)
  {
    if (image.size() < at + size)
      image.resize(at + size, '\0');
    for (int i = 0; i < size; ++i)
      image[at + (bigEndian ? size - 1 - i : i)] = static_cast<char>(value >> (8 * i));
  };
  const int word = is64 ? 8 : 4;
  const qsizetype headerSize = is64 ? 64 : 52;
  const qsizetype sectionSize = is64 ? 64 : 40;
  const QByteArray strings = QByteArray(1, '\0') + soname + QByteArray(1, '\0');
  const qsizetype stringsAt = headerSize;
  const qsizetype dynamicAt = (stringsAt + strings.size() + 7) / 8 * 8;
  const qsizetype sectionsAt = dynamicAt + 4 * word;

  image = QByteArray("\x7F"
                     "ELF",
                     4);
  put(4, is64 ? 2 : 1, 1);
  put(5, bigEndian ? 2 : 1, 1);
  put(6, 1, 1);
  put(is64 ? 0x28 : 0x20, static_cast<std::uint64_t>(sectionsAt), word); // e_shoff
  put(is64 ? 0x3A : 0x2E, static_cast<std::uint64_t>(sectionSize), 2);   // e_shentsize
  put(is64 ? 0x3C : 0x30, 3, 2);                                         // e_shnum
  image.resize(stringsAt);
  image += strings;
  put(dynamicAt, 14, word); // DT_SONAME
  put(dynamicAt + word, 1, word);
  put(dynamicAt + 3 * word, 0, word); // DT_NULL
  const auto section = [&](int index, std::uint32_t type, qsizetype offset, qsizetype size, std::uint32_t link)
  {
    const qsizetype at = sectionsAt + index * sectionSize;
    put(at + sectionSize - 1, 0, 1);
    put(at + 4, type, 4);
    put(at + (is64 ? 24 : 16), static_cast<std::uint64_t>(offset), word);
    put(at + (is64 ? 32 : 20), static_cast<std::uint64_t>(size), word);
    put(at + (is64 ? 40 : 24), link, 4);
  };
  section(0, 0, 0, 0, 0);
  section(1, 3, stringsAt, strings.size(), 0);
  section(2, 6, dynamicAt, 4 * word, 1);
  return image;
}

} // namespace

// Both widths and byte orders; damaged images never read outside the buffer (the
// sanitizer build catches any overrun): every cut, and random byte changes, give a name
// or nothing.
TEST(VersionInfo, ElfImagesOfEveryLayoutAreReadSafely)
{
  for (const bool is64 : {false, true})
  {
    for (const bool bigEndian : {false, true})
    {
      SCOPED_TRACE(::testing::Message() << (is64 ? 64 : 32) << (bigEndian ? " big" : " little"));
      const QByteArray image = makeElf(is64, bigEndian, "libcamera.so.4");
      EXPECT_EQ(RTE::Elf::soname(image), QByteArray("libcamera.so.4"));

      // The dynamic section's header is the last bytes: any cut loses it.
      for (qsizetype length = 0; length < image.size(); ++length)
        ASSERT_FALSE(RTE::Elf::soname(image.left(length)).has_value()) << length;

      // An unterminated name, a name offset past the table, a link to no section.
      QByteArray unterminated = image;
      unterminated[unterminated.indexOf("libcamera.so.4") + 14] = 'x';
      EXPECT_FALSE(RTE::Elf::soname(unterminated).has_value());
      const qsizetype dynamicLink = image.size() - (is64 ? 64 - 40 : 40 - 24);
      QByteArray badLink = image;
      badLink[dynamicLink + (bigEndian ? 3 : 0)] = 9;
      EXPECT_FALSE(RTE::Elf::soname(badLink).has_value());

      std::mt19937 random(7);
      int named = 0;
      for (int i = 0; i < 20000; ++i)
      {
        QByteArray damaged = image;
        for (int changes = 0; changes < 3; ++changes)
          damaged[static_cast<qsizetype>(random() % damaged.size())] = static_cast<char>(random());
        if (RTE::Elf::soname(damaged).has_value())
          ++named;
      }
      EXPECT_GT(named, 0);     // many changes hit bytes the reader does not need
      EXPECT_LT(named, 20000); // and many hit ones it checks
    }
  }
}
