#include "OperatingSystem/TestHelpers.h"
#include "TestFiles.h"
#include <Core/Common/Exceptions/FileOpenError.h>
#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Utilities/Cipher.h>
#include <Core/Common/Utilities/CipherError.h>
#include <Core/Common/Utilities/CipherPrimitives_p.h>

#include <QDir>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace
{

using RTE::Cipher;
using RTE::Private::Twofish;

// Fast enough to run hundreds of decryptions; the format stores the count.
constexpr unsigned int FewIterations = Cipher::MinimumIterations;

QByteArray hex(const char* text)
{
  return QByteArray::fromHex(text);
}

QByteArray ecb(const QByteArray& key, QByteArray block)
{
  Twofish twofish(key, Twofish::Mode::Ecb);
  twofish.encrypt(block.data(), block.size());
  return block;
}

QByteArray randomBytes(qsizetype size)
{
  QByteArray bytes(size, Qt::Uninitialized);
  for (char& b : bytes)
    b = static_cast<char>(QRandomGenerator::global()->bounded(256));
  return bytes;
}

// The known-answer table of the algorithm's authors: key and plaintext start at zero,
// then each step encrypts the previous ciphertext under the previous plaintext followed
// by the first part of the previous key. Returns the ciphertext of step `steps` and
// stores that step's key in lastKey if given.
QByteArray chainedTableResult(qsizetype keySize, int steps, QByteArray* lastKey = nullptr)
{
  QByteArray key(keySize, '\0');
  QByteArray plain(16, '\0');
  QByteArray cipher;
  for (int step = 1; step <= steps; ++step)
  {
    cipher = ecb(key, plain);
    if (lastKey != nullptr)
      *lastKey = key;
    key = (plain + key).left(keySize);
    plain = cipher;
  }
  return cipher;
}

TEST(Twofish, PublishedKnownAnswers)
{
  EXPECT_EQ(ecb(QByteArray(32, '\0'), QByteArray(16, '\0')), hex("57FF739D4DC92C1BD7FC01700CC8216F"));
  EXPECT_EQ(ecb(QByteArray(16, '\0'), QByteArray(16, '\0')), hex("9F589F5CF6122C32B6BFEC2F2AE8C35A"));
  EXPECT_EQ(chainedTableResult(32, 2), hex("D43BB7556EA32E46F2A282B7D45B4E0D"));
  EXPECT_EQ(chainedTableResult(32, 49), hex("37FE26FF1CF66175F5DDF4C33B97A205"));
  EXPECT_EQ(chainedTableResult(16, 49), hex("5D9D4EEFFA9151575524F115815A12E0"));

  // Decryption inverts the table's last step: its plaintext is the step before's result.
  QByteArray key;
  QByteArray block = chainedTableResult(32, 49, &key);
  Twofish(key, Twofish::Mode::Ecb).decrypt(block.data(), block.size());
  EXPECT_EQ(block, chainedTableResult(32, 48));

  EXPECT_THROW(Twofish(QByteArray(24, '\0'), Twofish::Mode::Ecb), RTE::CipherError);
  QByteArray partial(15, '\0');
  EXPECT_THROW(Twofish(QByteArray(32, '\0'), Twofish::Mode::Ecb).encrypt(partial.data(), partial.size()),
               RTE::CipherError);
}

TEST(Twofish, CounterModeIsTheEncryptedCounterSequenceAcrossPieces)
{
  const QByteArray key = hex("0123456789ABCDEFFEDCBA987654321000112233445566778899AABBCCDDEEFF");
  // The low 64 bits are about to wrap: the carry must reach the high half.
  const QByteArray counter = hex("0000000000000007FFFFFFFFFFFFFFFF");
  const QByteArray plain = randomBytes(3 * 16 + 5);

  QByteArray expected;
  for (const char* block : {"0000000000000007FFFFFFFFFFFFFFFF", "00000000000000080000000000000000",
                            "00000000000000080000000000000001", "00000000000000080000000000000002"})
    expected += ecb(key, hex(block));
  for (qsizetype i = 0; i < plain.size(); ++i)
    expected[i] = static_cast<char>(expected[i] ^ plain[i]);
  expected.truncate(plain.size());

  QByteArray data = plain;
  Twofish twofish(key, Twofish::Mode::Ctr);
  twofish.setCounter(counter);
  twofish.encrypt(data.data(), 7); // pieces that split blocks continue the key stream
  twofish.encrypt(data.data() + 7, data.size() - 7);
  EXPECT_EQ(data, expected);

  Twofish back(key, Twofish::Mode::Ctr);
  back.setCounter(counter);
  back.decrypt(data.data(), data.size());
  EXPECT_EQ(data, plain);
}

TEST(CipherPrimitives, PublishedHmacAndPbkdf2Vectors)
{
  // RFC 4231, test case 2.
  RTE::Private::HmacSha256 mac(QByteArrayView("Jefe"));
  mac.update(QByteArrayView("what do ya want "));
  mac.update(QByteArrayView("for nothing?"));
  EXPECT_EQ(mac.finish(), hex("5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843"));

  // RFC 7914, section 11.
  EXPECT_EQ(RTE::Private::pbkdf2Sha256(QByteArrayView("passwd"), QByteArrayView("salt"), 1, 64),
            hex("55ac046e56e3089fec1691c22544b605f94185216dde0465e68b9d57c20dacbc"
                "49ca9cccf179b645991664b39d77ef317c71b845b1e30bd509112041d3a19783"));

  EXPECT_TRUE(RTE::Private::equalInConstantTime(QByteArrayView("abc"), QByteArrayView("abc")));
  EXPECT_FALSE(RTE::Private::equalInConstantTime(QByteArrayView("abc"), QByteArrayView("abd")));
  EXPECT_FALSE(RTE::Private::equalInConstantTime(QByteArrayView("abc"), QByteArrayView("ab")));
}

// Made once by this library from "hello world\n" with the passphrase "pw" and 1000
// iterations, and checked by a separate program written directly against libgcrypt from
// the layout in Utilities/DESIGN.md: data of the first format version must stay readable.
const char* const helloWorldVersion1 =
    "52544543525950540001000003e810100c98571184199d7d5e631982d3f7c620bd1d5923d6cc5a37a383a063216ce601f3357c77e603c4ef"
    "f9244c301574ec0224821da693173374bf45627f78c22fbc836123cc12439ac559a1deb2";

TEST(Cipher, ReadsDataOfTheFirstFormatVersion)
{
  EXPECT_EQ(Cipher(QStringLiteral("pw")).decrypt(hex(helloWorldVersion1)), QByteArray("hello world\n"));
  EXPECT_THROW((void)Cipher(QStringLiteral("pW")).decrypt(hex(helloWorldVersion1)), RTE::CipherAuthenticationError);
}

TEST(Cipher, RoundTripsBuffersOfAnySize)
{
  const Cipher cipher(QStringLiteral("correct horse"), FewIterations);
  for (const qsizetype size : {0, 1, 15, 16, 17, 4096 + 3})
  {
    SCOPED_TRACE(size);
    const QByteArray plain = randomBytes(size);
    const QByteArray encrypted = cipher.encrypt(plain);
    EXPECT_EQ(encrypted.size(), size + 80);
    EXPECT_TRUE(Cipher::isEncrypted(encrypted));
    if (size >= 16)
    {
      EXPECT_FALSE(encrypted.contains(plain)); // no plaintext shows through
    }
    EXPECT_EQ(cipher.decrypt(encrypted), plain);
  }
  // Fresh salt and counter every time.
  EXPECT_NE(cipher.encrypt(QByteArrayView("same")), cipher.encrypt(QByteArrayView("same")));
  // The iteration count travels with the data.
  EXPECT_EQ(Cipher(QStringLiteral("correct horse")).decrypt(cipher.encrypt(QByteArrayView("x"))), QByteArray("x"));
}

TEST(Cipher, PassphraseIsTakenInOneUnicodeForm)
{
  const QString composed = QStringLiteral("caf\u00e9");
  const QString decomposed = QStringLiteral("cafe\u0301");
  const QByteArray encrypted = Cipher(composed, FewIterations).encrypt(QByteArrayView("menu"));
  EXPECT_EQ(Cipher(decomposed, FewIterations).decrypt(encrypted), QByteArray("menu"));
}

TEST(Cipher, RejectsBadArguments)
{
  EXPECT_THROW(Cipher{QString()}, RTE::InvalidArgumentError);
  EXPECT_THROW(Cipher(QStringLiteral("pw"), Cipher::MinimumIterations - 1), RTE::InvalidArgumentError);
  EXPECT_THROW(Cipher(QStringLiteral("pw"), Cipher::MaximumIterations + 1), RTE::InvalidArgumentError);
}

// Offsets in the data of helloWorldVersion1: magic 0-7, version 8-9, iterations 10-13,
// salt size 14, counter size 15, salt 16-31, counter 32-47, ciphertext 48-59, code 60-91.
TEST(Cipher, EveryChangedByteIsRefused)
{
  const QByteArray original = hex(helloWorldVersion1);
  const Cipher cipher(QStringLiteral("pw"));
  struct Case
  {
    const char* region;
    qsizetype offset;
    char mask;
    bool formatError; // else an authentication error
  };
  const Case cases[] = {
      {"magic", 0, 0x01, true},
      {"magic end", 7, 0x20, true},
      {"version", 9, 0x02, true},
      {"iterations beyond the maximum", 10, '\x7f', true},
      {"iterations below the minimum", 12, 0x01, true},   // 1000 -> 744
      {"iterations still in range", 12, 0x10, false},     // 1000 -> 5096
      {"salt size beyond the maximum", 14, 0x40, true},   // 80
      {"salt size larger than the data", 14, 0x20, true}, // 48: header and code need 112
      {"salt size still in range", 14, 0x01, false},      // 17
      {"counter size", 15, 0x01, true},
      {"salt", 20, 0x01, false},
      {"counter", 40, '\x80', false},
      {"ciphertext first", 48, 0x01, false},
      {"ciphertext last", 59, 0x40, false},
      {"code first", 60, 0x01, false},
      {"code last", 91, '\x80', false},
  };
  for (const Case& c : cases)
  {
    SCOPED_TRACE(c.region);
    QByteArray changed = original;
    changed[c.offset] = static_cast<char>(changed[c.offset] ^ c.mask);
    if (c.formatError)
      EXPECT_THROW((void)cipher.decrypt(changed), RTE::CipherFormatError);
    else
      EXPECT_THROW((void)cipher.decrypt(changed), RTE::CipherAuthenticationError);
  }

  // Cut at every length, and one byte added.
  for (qsizetype size = 0; size < original.size(); ++size)
  {
    SCOPED_TRACE(size);
    EXPECT_THROW((void)cipher.decrypt(original.first(size)), RTE::CipherError);
  }
  EXPECT_THROW((void)cipher.decrypt(original + 'x'), RTE::CipherAuthenticationError);

  // Plain text is not taken for encrypted data.
  const QString plainText = MessageOf<RTE::CipherFormatError>(
      [&] { (void)cipher.decrypt(QByteArrayView("<?xml version=\"1.0\"?><root/>")); });
  EXPECT_TRUE(plainText.contains(QStringLiteral("\"RTECRYPT\""))) << plainText.toStdString();
}

TEST(Cipher, RandomDamageAlwaysGivesACipherError)
{
  const QByteArray original = hex(helloWorldVersion1);
  const Cipher cipher(QStringLiteral("pw"));
  QRandomGenerator random(20); // fixed seed: a failure can be replayed
  for (int trial = 0; trial < 300; ++trial)
  {
    SCOPED_TRACE(trial);
    QByteArray damaged = original;
    for (int flips = 1 + random.bounded(3); flips > 0; --flips)
    {
      const auto at = static_cast<qsizetype>(random.bounded(static_cast<int>(damaged.size())));
      damaged[at] = static_cast<char>(damaged[at] ^ (1 + random.bounded(255)));
    }
    if (random.bounded(4) == 0)
      damaged.truncate(random.bounded(static_cast<int>(damaged.size())));
    EXPECT_THROW((void)cipher.decrypt(damaged), RTE::CipherError);
  }
}

TEST(Cipher, FilesAreReplacedOnlyWhenTheWholeFileIsAuthentic)
{
  QTemporaryDir dir;
  ASSERT_TRUE(dir.isValid());
  const QString path = dir.filePath(QStringLiteral("data.bin"));
  const QString copy = dir.filePath(QStringLiteral("plain.bin"));
  // Larger than the piece the file functions read at a time.
  const QByteArray plain = randomBytes((3 << 20) + 123);
  ASSERT_TRUE(writeFile(path, plain));
  const Cipher cipher(QStringLiteral("pw"), FewIterations);

  cipher.encryptFile(path);
  const QByteArray encrypted = readFile(path);
  EXPECT_TRUE(Cipher::isEncryptedFile(path));
  EXPECT_EQ(encrypted.size(), plain.size() + 80);
  // Files and buffers share one format.
  EXPECT_EQ(cipher.decrypt(encrypted), plain);

  // Wrong passphrase and a changed byte deep inside: nothing written, the file unchanged.
  EXPECT_THROW(Cipher(QStringLiteral("wrong"), FewIterations).decryptFile(path, copy), RTE::CipherAuthenticationError);
  EXPECT_FALSE(QFile::exists(copy));
  QByteArray changed = encrypted;
  changed[(2 << 20) + 7] = static_cast<char>(changed[(2 << 20) + 7] ^ 1);
  ASSERT_TRUE(writeFile(path, changed));
  EXPECT_THROW(cipher.decryptFile(path), RTE::CipherAuthenticationError);
  EXPECT_EQ(readFile(path), changed);
  ASSERT_TRUE(writeFile(path, encrypted.first(encrypted.size() - 1)));
  EXPECT_THROW(cipher.decryptFile(path), RTE::CipherAuthenticationError);
  ASSERT_TRUE(writeFile(path, encrypted.first(50)));
  EXPECT_THROW(cipher.decryptFile(path), RTE::CipherFormatError);
  EXPECT_EQ(readFile(path), encrypted.first(50));
  EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("data.bin")}); // no temporaries left

  ASSERT_TRUE(writeFile(path, encrypted));
  cipher.decryptFile(path, copy);
  EXPECT_EQ(readFile(copy), plain);
  EXPECT_EQ(readFile(path), encrypted);
  cipher.decryptFile(path);
  EXPECT_EQ(readFile(path), plain);

  // An empty file and one encrypted from buffer data.
  ASSERT_TRUE(writeFile(path, QByteArray()));
  cipher.encryptFile(path, copy);
  EXPECT_EQ(cipher.decrypt(readFile(copy)), QByteArray());

  EXPECT_THROW(cipher.encryptFile(dir.filePath(QStringLiteral("missing"))), RTE::FileOpenError);
  EXPECT_THROW(cipher.decryptFile(dir.filePath(QStringLiteral("missing"))), RTE::FileOpenError);
  EXPECT_FALSE(Cipher::isEncryptedFile(dir.filePath(QStringLiteral("missing"))));
  EXPECT_THROW(cipher.encryptFile(path, dir.filePath(QStringLiteral("no/such/folder/x"))), RTE::FileOpenError);
  EXPECT_EQ(readFile(path), QByteArray());
}

} // namespace
