#include <Core/Common/Exceptions/DataSizeTooLargeForCompression.h>
#include <Core/Common/Exceptions/FileDeleteError.h>
#include <Core/Common/Exceptions/FileOpenError.h>
#include <Core/Common/Exceptions/FileReadError.h>
#include <Core/Common/Exceptions/FileWriteError.h>
#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/ParseError.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Exceptions/VersionConflict.h>

#include "LogCapture.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace
{

struct MessageCase
{
  const char* what;
  RTE::Exception exception;
  QString expected;
};

} // namespace

TEST(Exception, MessagesOfEveryKind)
{
  const MessageCase cases[] = {
      {"plain", RTE::Exception(QStringLiteral("boom")), QStringLiteral("boom")},
      {"logic default", RTE::LogicError(), QString()},
      {"out of range", RTE::OutOfRangeError(QStringLiteral("index 7")), QStringLiteral("index 7")},
      {"precondition", RTE::PreconditionFailed(QStringLiteral("Precondition failed: x")),
       QStringLiteral("Precondition failed: x")},
      {"parse", RTE::ParseError(QStringLiteral("unexpected token"), 3, 14),
       QStringLiteral("unexpected token in line 3, column 14")},
      {"parse text with placeholders", RTE::ParseError(QStringLiteral("bad %2 here"), 1, 2),
       QStringLiteral("bad %2 here in line 1, column 2")},
      {"version", RTE::VersionConflict(2, 7), QString()},
      {"compression", RTE::DataSizeTooLargeForCompression(3, "LZ4", 3000000000ULL),
       QStringLiteral("Compression type 3 (LZ4) can't handle a data block of 3000000000 byte.")},
      {"file", RTE::FileError(QStringLiteral("disk gone"), QStringLiteral("a.xml")), QStringLiteral("disk gone")},
      {"open", RTE::FileOpenError(QStringLiteral("a.xml")), QStringLiteral("Error opening file 'a.xml'")},
      {"read", RTE::FileReadError(QStringLiteral("a.xml")), QStringLiteral("Error reading from file 'a.xml'")},
      {"write", RTE::FileWriteError(QStringLiteral("a.xml")), QStringLiteral("Error writing to file 'a.xml'")},
      {"delete", RTE::FileDeleteError(QStringLiteral("/tmp/x"), QStringLiteral("in use")),
       QStringLiteral("Error deleting file or folder '/tmp/x'")},
  };
  for (const MessageCase& c : cases)
  {
    SCOPED_TRACE(c.what);
    EXPECT_EQ(c.exception.message(), c.expected);
    EXPECT_STREQ(c.exception.what(), c.expected.toLatin1().constData());
  }
}

TEST(Exception, FileErrorsWithDeviceAppendItsErrorString)
{
  QTemporaryDir dir;
  const QString path = dir.filePath(QStringLiteral("missing.xml"));
  QFile file(path);
  ASSERT_FALSE(file.open(QIODevice::ReadOnly));
  const QString reason = file.errorString();
  ASSERT_FALSE(reason.isEmpty());

  EXPECT_EQ(RTE::FileError(file, path).message(), reason);
  EXPECT_EQ(RTE::FileOpenError(file, path).message(), QStringLiteral("Error opening file '%1': %2").arg(path, reason));
  EXPECT_EQ(RTE::FileReadError(file, path).message(),
            QStringLiteral("Error reading from file '%1': %2").arg(path, reason));
  EXPECT_EQ(RTE::FileWriteError(file, path).message(),
            QStringLiteral("Error writing to file '%1': %2").arg(path, reason));

  RTE::FileDeleteError deleteError(file, path, QStringLiteral("locked by another process"));
  EXPECT_EQ(deleteError.message(), QStringLiteral("Error deleting file or folder '%1': %2").arg(path, reason));
  EXPECT_EQ(deleteError.detail(), QStringLiteral("locked by another process"));
  EXPECT_EQ(deleteError.fileName(), path);

  RTE::FileError& asBase = deleteError;
  asBase.setFileName(QStringLiteral("other"));
  EXPECT_EQ(deleteError.fileName(), QStringLiteral("other"));
}

TEST(Exception, ParseErrorAndVersionConflictData)
{
  const RTE::ParseError none;
  EXPECT_EQ(none.line(), -1);
  EXPECT_EQ(none.column(), -1);
  EXPECT_TRUE(none.message().isEmpty());

  const RTE::ParseError error(QStringLiteral("unexpected token"), 3, 14);
  EXPECT_EQ(error.line(), 3);
  EXPECT_EQ(error.column(), 14);
  EXPECT_EQ(error.text(), QStringLiteral("unexpected token"));

  EXPECT_EQ(RTE::VersionConflict(2, 7).version(), QVersionNumber(2, 7));
  EXPECT_EQ(RTE::VersionConflict(2, 7).version().toString(), QStringLiteral("2.7"));
  EXPECT_TRUE(RTE::VersionConflict().version().isNull());
}

TEST(Exception, SetLocationKeepsWhatFollowsTheLastSourcesFolder)
{
  RTE::Exception e(QStringLiteral("x"));
  EXPECT_TRUE(e.sourceFile().isEmpty());
  EXPECT_EQ(e.sourceLine(), 0u);

  e.setLocation(QStringLiteral("D:\\Build\\Sources\\Tools\\Sources\\Core\\Common\\Settings.cpp"), 42);
  EXPECT_EQ(e.sourceFile(), QStringLiteral("<sources>\\Core\\Common\\Settings.cpp"));
  EXPECT_EQ(e.sourceLine(), 42u);

  e.setLocation(QStringLiteral("/home/ci/Sources/Core/Common/Storage/Settings.cpp"), 7);
  EXPECT_EQ(e.sourceFile(), QStringLiteral("<sources>/Core/Common/Storage/Settings.cpp"));

  // Without the folder (the match is case-sensitive) the path stays as it is.
  e.setLocation(QStringLiteral("/home/ci/sources/Core/Settings.cpp"), 8);
  EXPECT_EQ(e.sourceFile(), QStringLiteral("/home/ci/sources/Core/Settings.cpp"));
  EXPECT_EQ(e.sourceLine(), 8u);

  e.setLocation(QStringLiteral("C:/Sources"), 9);
  EXPECT_EQ(e.sourceFile(), QStringLiteral("<sources>"));
}

TEST(Exception, LogComposesMessageLocationAndDynamicType)
{
  RTE::ParseError parse(QStringLiteral("unexpected token"), 3, 14);
  parse.setLocation(QStringLiteral("/x/Sources/Core/Parser.cpp"), 99);
  const RTE::Exception& asBase = parse;

  const QString expected =
      QStringLiteral("unexpected token in line 3, column 14\n<sources>/Core/Parser.cpp (line: 99) \nRTE::ParseError");
  EXPECT_EQ(asBase.logText(), expected);

  LogCapture capture("Core.Exception");
  asBase.log();
  ASSERT_EQ(capture.messages().size(), 1);
  EXPECT_EQ(capture.messages().first(), expected);

  // Without a location the parts are still there.
  EXPECT_EQ(RTE::Timeout().logText(), QStringLiteral("\n (line: 0) \nRTE::Timeout"));
}

TEST(Exception, RaiseRecordsTheCallersLocationLogsOnceAndKeepsTheType)
{
  LogCapture capture("Core.Exception");
  unsigned int line = 0;
  try
  {
    line = __LINE__ + 1;
    RTE::Raise(RTE::FileOpenError(QStringLiteral("a.xml")));
  }
  catch (const RTE::FileError& e)
  {
    EXPECT_EQ(e.sourceLine(), line);
    EXPECT_EQ(e.sourceFile(), QStringLiteral("tests/Exceptions/ExceptionTest.cpp"));
    EXPECT_EQ(e.fileName(), QStringLiteral("a.xml"));
    EXPECT_EQ(e.typeName(), QStringLiteral("RTE::FileOpenError"));
    ASSERT_EQ(capture.messages().size(), 1);
    EXPECT_EQ(capture.messages().first(), e.logText());
    return;
  }
  FAIL() << "RTE::Raise did not throw a FileError";
}

TEST(Exception, WhatIsLatin1AndCopiesAreIndependent)
{
  RTE::Exception e(QStringLiteral("Temperatur 20 \u00B0C, Faktor \u2074"));
  // U+00B0 is in Latin-1, U+2074 is not and becomes '?'.
  EXPECT_STREQ(e.what(), "Temperatur 20 \xB0"
                         "C, Faktor ?");

  RTE::Exception copy = e;
  e.setMessage(QStringLiteral("changed"));
  EXPECT_STREQ(e.what(), "changed");
  EXPECT_STREQ(copy.what(), "Temperatur 20 \xB0"
                            "C, Faktor ?");
}

TEST(Exception, RaiseWithoutLogRecordsTheLocationButLogsNothing)
{
  LogCapture capture("Core.Exception");
  const unsigned int line = __LINE__ + 3;
  try
  {
    RTE::RaiseWithoutLog(RTE::VerificationFailed(QStringLiteral("Value with name 'x' not found")));
  }
  catch (const RTE::VerificationFailed& e)
  {
    EXPECT_EQ(e.sourceLine(), line);
    EXPECT_TRUE(capture.messages().isEmpty());
    return;
  }
  FAIL() << "RTE::RaiseWithoutLog did not throw";
}
