// `rte encrypt` and `rte decrypt`, run as a user would run them.
#include "TestFiles.h"
#include <Core/Common/Utilities/Cipher.h>

#include <QProcess>
#include <QTemporaryDir>

#include "RteRun.h"

#include <gtest/gtest.h>

namespace
{

// Runs rte with RTE_PASSPHRASE set to passphrase (unset when empty) and input on stdin.
RteRun rteWith(const QString& passphrase, const QStringList& arguments, const QByteArray& input = QByteArray())
{
  QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
  environment.remove(QStringLiteral("RTE_PASSPHRASE"));
  if (!passphrase.isEmpty())
    environment.insert(QStringLiteral("RTE_PASSPHRASE"), passphrase);
  QProcess process;
  process.setProcessEnvironment(environment);
  process.start(rtePath(), arguments);
  process.write(input);
  process.closeWriteChannel();
  process.waitForFinished(30000);
  return RteRun{process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
}

} // namespace

TEST(CipherCommand, EncryptsAndDecryptsInPlaceOrIntoAnotherFile)
{
  SKIP_WITHOUT_RTE();
  QTemporaryDir dir;
  const QString path = dir.filePath(QStringLiteral("notes.txt"));
  const QString copy = dir.filePath(QStringLiteral("copy.txt"));
  const QByteArray plain("line one\nline two\n");
  ASSERT_TRUE(writeFile(path, plain));

  const RteRun encrypted = rteWith(QStringLiteral("s3cret pass"), {"encrypt", "--iterations", "1000", path});
  EXPECT_EQ(encrypted.exitCode, 0) << encrypted.err.toStdString();
  EXPECT_TRUE(RTE::Cipher::isEncryptedFile(path));

  const RteRun again = rteWith(QStringLiteral("s3cret pass"), {"encrypt", path});
  EXPECT_EQ(again.exitCode, 1);
  EXPECT_TRUE(again.err.contains(QStringLiteral("encrypted already"))) << again.err.toStdString();

  const QByteArray before = readFile(path);
  const RteRun wrong = rteWith(QStringLiteral("s3cret"), {"decrypt", path});
  EXPECT_EQ(wrong.exitCode, 1);
  EXPECT_TRUE(wrong.err.contains(QStringLiteral("passphrase is wrong"))) << wrong.err.toStdString();
  EXPECT_EQ(readFile(path), before);

  // A passphrase from stdin keeps its inner space and loses the line break.
  const RteRun toCopy = rteWith(QString(), {"decrypt", "--passphrase-stdin", path, "-o", copy}, "s3cret pass\n");
  EXPECT_EQ(toCopy.exitCode, 0) << toCopy.err.toStdString();
  EXPECT_EQ(readFile(copy), plain);
  EXPECT_EQ(readFile(path), before);

  EXPECT_EQ(rteWith(QStringLiteral("s3cret pass"), {"decrypt", path}).exitCode, 0);
  EXPECT_EQ(readFile(path), plain);

  const RteRun noPassphrase = rteWith(QString(), {"encrypt", path});
  EXPECT_EQ(noPassphrase.exitCode, 2);
  EXPECT_TRUE(noPassphrase.err.contains(QStringLiteral("RTE_PASSPHRASE"))) << noPassphrase.err.toStdString();
  EXPECT_EQ(readFile(path), plain);

  const RteRun notEncrypted = rteWith(QStringLiteral("x"), {"decrypt", path});
  EXPECT_EQ(notEncrypted.exitCode, 1);
  EXPECT_TRUE(notEncrypted.err.contains(QStringLiteral("does not begin with \"RTECRYPT\"")))
      << notEncrypted.err.toStdString();

  EXPECT_EQ(rteWith(QStringLiteral("x"), {"encrypt", "--iterations", "5", path}).exitCode, 2);
  const RteRun help = rteWith(QString(), {"decrypt", "--help"});
  EXPECT_EQ(help.exitCode, 0);
  EXPECT_TRUE(help.out.contains(QStringLiteral("--passphrase-stdin")));
}
