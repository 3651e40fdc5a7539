#include <Core/Common/Utilities/Cipher.h>

#include <Core/Common/Exceptions/FileOpenError.h>
#include <Core/Common/Exceptions/FileReadError.h>
#include <Core/Common/Exceptions/FileWriteError.h>
#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Utilities/CipherError.h>
#include <Core/Common/Utilities/CipherPrimitives_p.h>

#include <QFile>
#include <QSaveFile>
#include <QtEndian>

#include <algorithm>

namespace RTE
{

namespace
{

using Private::HmacSha256;
using Private::Twofish;

constexpr QByteArrayView Magic("RTECRYPT");
static_assert(Magic.size() == 8);
constexpr quint16 FormatVersion = 1;
// magic, version (2 bytes), iterations (4), salt size (1), counter block size (1)
constexpr qsizetype FixedHeaderSize = 16;
constexpr qsizetype SaltSize = 16;
constexpr qsizetype MinimumSaltSize = 16;
constexpr qsizetype MaximumSaltSize = 64;
constexpr qsizetype MaximumHeaderSize = FixedHeaderSize + MaximumSaltSize + Twofish::BlockSize;
constexpr qsizetype MacSize = HmacSha256::Size;
constexpr qsizetype MasterKeySize = 32;
constexpr qint64 ChunkSize = qint64(1) << 20;

struct Header
{
  unsigned int iterations = 0;
  QByteArray salt;
  QByteArray counter;

  qsizetype size() const { return FixedHeaderSize + salt.size() + counter.size(); }

  QByteArray bytes() const
  {
    QByteArray out;
    out.reserve(size());
    out.append(Magic);
    char number[4];
    qToBigEndian(FormatVersion, number);
    out.append(number, 2);
    qToBigEndian(static_cast<quint32>(iterations), number);
    out.append(number, 4);
    out.append(static_cast<char>(salt.size()));
    out.append(static_cast<char>(counter.size()));
    out.append(salt);
    out.append(counter);
    return out;
  }
};

// The two keys of one encrypted text, expanded from the PBKDF2 key so that the
// cipher and the authentication never share a key. Wiped when done.
struct Keys
{
  Keys(const QByteArray& passphrase, const Header& header)
  {
    QByteArray master = Private::pbkdf2Sha256(passphrase, header.salt, header.iterations, MasterKeySize);
    encryption = expand(master, "encryption");
    authentication = expand(master, "authentication");
    Private::wipe(master);
  }
  ~Keys()
  {
    Private::wipe(encryption);
    Private::wipe(authentication);
  }
  Keys(const Keys&) = delete;
  Keys& operator=(const Keys&) = delete;

  static QByteArray expand(const QByteArray& master, QByteArrayView label)
  {
    HmacSha256 mac(master);
    mac.update(label);
    return mac.finish();
  }

  QByteArray encryption;
  QByteArray authentication;
};

Header newHeader(unsigned int iterations)
{
  return Header{iterations, Private::randomBytes(SaltSize), Private::randomBytes(Twofish::BlockSize)};
}

[[noreturn]] void raiseFormat(const QString& message)
{
  RTE::Raise(CipherFormatError(message));
}

// The header at the start of encrypted data. `start` holds the first bytes (up to
// MaximumHeaderSize), `total` is the size of the whole data; `subject` names it in
// messages. Every size is checked against what is there before it is used.
Header parseHeader(QByteArrayView start, qint64 total, const QString& subject)
{
  if (!start.startsWith(Magic))
  {
    if (total < Magic.size() && Magic.startsWith(start) && !start.isEmpty())
      raiseFormat(Cipher::tr("%1 is cut short: %2 bytes, not even the header").arg(subject).arg(total));
    raiseFormat(Cipher::tr("%1 is no encrypted data: it does not begin with \"%2\"")
                    .arg(subject, QString::fromLatin1(Magic.data(), Magic.size())));
  }
  if (total < FixedHeaderSize || start.size() < FixedHeaderSize)
    raiseFormat(Cipher::tr("%1 is cut short: %2 bytes, not even the header").arg(subject).arg(total));

  const auto* fixed = reinterpret_cast<const uchar*>(start.data());
  const quint16 version = qFromBigEndian<quint16>(fixed + 8);
  if (version != FormatVersion)
  {
    raiseFormat(Cipher::tr("%1 is encrypted in format version %2; this library reads version %3")
                    .arg(subject)
                    .arg(version)
                    .arg(FormatVersion));
  }
  const quint32 iterations = qFromBigEndian<quint32>(fixed + 10);
  if (iterations < Cipher::MinimumIterations || iterations > Cipher::MaximumIterations)
  {
    raiseFormat(Cipher::tr("%1 names %2 key derivation iterations; %3 to %4 are accepted")
                    .arg(subject)
                    .arg(iterations)
                    .arg(Cipher::MinimumIterations)
                    .arg(Cipher::MaximumIterations));
  }
  const qsizetype saltSize = fixed[14];
  if (saltSize < MinimumSaltSize || saltSize > MaximumSaltSize)
  {
    raiseFormat(Cipher::tr("%1 names a salt of %2 bytes; %3 to %4 are accepted")
                    .arg(subject)
                    .arg(saltSize)
                    .arg(MinimumSaltSize)
                    .arg(MaximumSaltSize));
  }
  const qsizetype counterSize = fixed[15];
  if (counterSize != Twofish::BlockSize)
  {
    raiseFormat(Cipher::tr("%1 names a counter block of %2 bytes; Twofish needs %3")
                    .arg(subject)
                    .arg(counterSize)
                    .arg(Twofish::BlockSize));
  }
  const qsizetype headerSize = FixedHeaderSize + saltSize + counterSize;
  if (total < headerSize + MacSize || start.size() < headerSize)
  {
    raiseFormat(Cipher::tr("%1 is cut short: %2 bytes, at least %3 are needed")
                    .arg(subject)
                    .arg(total)
                    .arg(headerSize + MacSize));
  }
  return Header{iterations, start.sliced(FixedHeaderSize, saltSize).toByteArray(),
                start.sliced(FixedHeaderSize + saltSize, counterSize).toByteArray()};
}

[[noreturn]] void raiseNotAuthentic(const QString& subject)
{
  RTE::Raise(CipherAuthenticationError(
      Cipher::tr("%1 cannot be decrypted: the passphrase is wrong or the data was changed").arg(subject)));
}

QString fileSubject(const QString& path)
{
  return Cipher::tr("The file '%1'").arg(path);
}

void openForReading(QFile& file)
{
  if (!file.open(QIODevice::ReadOnly))
    RTE::Raise(FileOpenError(file, file.fileName()));
}

void openForWriting(QSaveFile& file)
{
  if (!file.open(QIODevice::WriteOnly))
    RTE::Raise(FileOpenError(file, file.fileName()));
}

// Reads up to size bytes; fewer only at the end of the file.
qint64 readSome(QFile& file, char* data, qint64 size)
{
  const qint64 got = file.read(data, size);
  if (got < 0)
    RTE::Raise(FileReadError(file, file.fileName()));
  return got;
}

// Reads exactly size bytes: the file was measured before, so less means it shrank.
void readExactly(QFile& file, char* data, qint64 size)
{
  if (readSome(file, data, size) != size)
    RTE::Raise(FileReadError(file.fileName()));
}

void writeAll(QSaveFile& file, QByteArrayView data)
{
  if (file.write(data.data(), data.size()) != data.size())
    RTE::Raise(FileWriteError(file, file.fileName()));
}

void commit(QSaveFile& file)
{
  if (!file.commit())
    RTE::Raise(FileWriteError(file, file.fileName()));
}

// Feeds `size` bytes of the file from its current position through the MAC, and, when
// twofish is given, decrypts them into out.
void processBytes(QFile& in, qint64 size, HmacSha256& mac, Twofish* twofish, QSaveFile* out)
{
  QByteArray chunk(static_cast<qsizetype>(std::min(ChunkSize, std::max<qint64>(size, 1))), Qt::Uninitialized);
  for (qint64 remaining = size; remaining > 0;)
  {
    const qint64 piece = std::min<qint64>(remaining, chunk.size());
    readExactly(in, chunk.data(), piece);
    mac.update(QByteArrayView(chunk.constData(), piece));
    if (twofish != nullptr)
    {
      twofish->decrypt(chunk.data(), piece);
      writeAll(*out, QByteArrayView(chunk.constData(), piece));
    }
    remaining -= piece;
  }
  Private::wipe(chunk);
}

} // namespace

Cipher::Cipher(const QString& passphrase, unsigned int iterations) :
    m_passphrase(passphrase.normalized(QString::NormalizationForm_C).toUtf8()),
    m_iterations(iterations)
{
  if (m_passphrase.isEmpty())
    RTE::Raise(InvalidArgumentError(tr("The passphrase is empty")));
  if (iterations < MinimumIterations || iterations > MaximumIterations)
  {
    RTE::Raise(InvalidArgumentError(tr("%1 key derivation iterations asked for; %2 to %3 are accepted")
                                        .arg(iterations)
                                        .arg(MinimumIterations)
                                        .arg(MaximumIterations)));
  }
}

Cipher::~Cipher()
{
  Private::wipe(m_passphrase);
}

QByteArray Cipher::encrypt(QByteArrayView plaintext) const
{
  const Header header = newHeader(m_iterations);
  const Keys keys(m_passphrase, header);
  QByteArray out = header.bytes();
  const qsizetype headerSize = out.size();
  out.reserve(headerSize + plaintext.size() + MacSize);
  out.append(plaintext);
  Twofish twofish(keys.encryption, Twofish::Mode::Ctr);
  twofish.setCounter(header.counter);
  twofish.encrypt(out.data() + headerSize, plaintext.size());
  HmacSha256 mac(keys.authentication);
  mac.update(out);
  out.append(mac.finish());
  return out;
}

QByteArray Cipher::decrypt(QByteArrayView data) const
{
  const QString subject = tr("The data");
  const Header header = parseHeader(data.first(std::min(data.size(), MaximumHeaderSize)), data.size(), subject);
  const Keys keys(m_passphrase, header);
  HmacSha256 mac(keys.authentication);
  mac.update(data.first(data.size() - MacSize));
  if (!Private::equalInConstantTime(mac.finish(), data.last(MacSize)))
    raiseNotAuthentic(subject);

  const qsizetype headerSize = header.size();
  QByteArray plain = data.sliced(headerSize, data.size() - headerSize - MacSize).toByteArray();
  Twofish twofish(keys.encryption, Twofish::Mode::Ctr);
  twofish.setCounter(header.counter);
  twofish.decrypt(plain.data(), plain.size());
  return plain;
}

void Cipher::encryptFile(const QString& path) const
{
  encryptFile(path, path);
}

void Cipher::encryptFile(const QString& sourcePath, const QString& targetPath) const
{
  QFile in(sourcePath);
  openForReading(in);
  const Header header = newHeader(m_iterations);
  const Keys keys(m_passphrase, header);
  QSaveFile out(targetPath);
  openForWriting(out);

  const QByteArray head = header.bytes();
  writeAll(out, head);
  HmacSha256 mac(keys.authentication);
  mac.update(head);
  Twofish twofish(keys.encryption, Twofish::Mode::Ctr);
  twofish.setCounter(header.counter);
  QByteArray chunk(static_cast<qsizetype>(ChunkSize), Qt::Uninitialized);
  for (;;)
  {
    const qint64 got = readSome(in, chunk.data(), chunk.size());
    if (got == 0)
      break;
    twofish.encrypt(chunk.data(), got);
    const QByteArrayView piece(chunk.constData(), got);
    mac.update(piece);
    writeAll(out, piece);
  }
  writeAll(out, mac.finish());
  in.close();
  commit(out);
}

void Cipher::decryptFile(const QString& path) const
{
  decryptFile(path, path);
}

void Cipher::decryptFile(const QString& sourcePath, const QString& targetPath) const
{
  const QString subject = fileSubject(sourcePath);
  QFile in(sourcePath);
  openForReading(in);
  const qint64 total = in.size();
  QByteArray start(MaximumHeaderSize, Qt::Uninitialized);
  start.truncate(static_cast<qsizetype>(readSome(in, start.data(), start.size())));
  const Header header = parseHeader(start, total, subject);
  const Keys keys(m_passphrase, header);
  const qint64 ciphertextSize = total - header.size() - MacSize;

  // First pass: authenticate the whole file before a byte is decrypted.
  {
    HmacSha256 mac(keys.authentication);
    in.seek(0);
    processBytes(in, total - MacSize, mac, nullptr, nullptr);
    QByteArray stored(MacSize, Qt::Uninitialized);
    readExactly(in, stored.data(), MacSize);
    if (!Private::equalInConstantTime(mac.finish(), stored))
      raiseNotAuthentic(subject);
  }

  // Second pass: decrypt. The code is computed again over what is read now, so a file
  // changed between the passes is caught too; the target is then never committed.
  QSaveFile out(targetPath);
  openForWriting(out);
  HmacSha256 mac(keys.authentication);
  in.seek(0);
  processBytes(in, header.size(), mac, nullptr, nullptr);
  Twofish twofish(keys.encryption, Twofish::Mode::Ctr);
  twofish.setCounter(header.counter);
  processBytes(in, ciphertextSize, mac, &twofish, &out);
  QByteArray stored(MacSize, Qt::Uninitialized);
  readExactly(in, stored.data(), MacSize);
  if (!Private::equalInConstantTime(mac.finish(), stored))
    raiseNotAuthentic(subject);
  in.close();
  commit(out);
}

QByteArrayView Cipher::magic()
{
  return Magic;
}

bool Cipher::isEncrypted(QByteArrayView data)
{
  return data.startsWith(Magic);
}

bool Cipher::isEncryptedFile(const QString& path)
{
  QFile file(path);
  return file.open(QIODevice::ReadOnly) && file.read(Magic.size()) == Magic;
}

} // namespace RTE
