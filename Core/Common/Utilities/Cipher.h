// Passphrase encryption of byte buffers and files: Twofish-256 in CTR mode with a key
// derived by PBKDF2 (HMAC-SHA-256, random salt), authenticated by HMAC-SHA-256 over the
// header and the ciphertext. Layout of the encrypted data in Core/Common/Utilities/DESIGN.md.
//
//   RTE::Cipher cipher(passphrase);
//   cipher.encryptFile("/data/calibration.xml");      // replaced by its encrypted form
//   QByteArray plain = cipher.decrypt(encryptedBytes);
//
// Decryption checks the authentication code before it decrypts anything: a wrong
// passphrase or any changed, added or missing byte raises RTE::CipherAuthenticationError
// or RTE::CipherFormatError and yields no plaintext. Files are written through QSaveFile,
// so a failure leaves the target as it was. A Cipher holds no state besides the passphrase:
// its const members may run on several threads at once.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QByteArray>
#include <QByteArrayView>
#include <QCoreApplication>
#include <QString>

namespace RTE
{

class CORECOMMON_EXPORT Cipher
{
  Q_DECLARE_TR_FUNCTIONS(RTE::Cipher)

public:
  // PBKDF2 iterations of newly encrypted data. Decryption takes the count the data names,
  // within the bounds below (the upper one keeps a forged header from stalling us).
  static constexpr unsigned int DefaultIterations = 600000;
  static constexpr unsigned int MinimumIterations = 1000;
  static constexpr unsigned int MaximumIterations = 10000000;

  // The passphrase is taken in Unicode normal form C, as UTF-8, so that one typed on
  // another keyboard or system gives the same key. Raises RTE::InvalidArgumentError for
  // an empty passphrase or iterations outside [MinimumIterations, MaximumIterations].
  explicit Cipher(const QString& passphrase, unsigned int iterations = DefaultIterations);
  // Wipes the passphrase held in memory.
  ~Cipher();
  Cipher(const Cipher&) = delete;
  Cipher& operator=(const Cipher&) = delete;

  unsigned int iterations() const { return m_iterations; }

  // The encrypted form of plaintext (its size plus 80 bytes); a new salt and counter
  // block every call, so encrypting the same text twice gives different bytes.
  [[nodiscard]] QByteArray encrypt(QByteArrayView plaintext) const;
  // The plaintext of data made by encrypt or encryptFile. Raises CipherFormatError for
  // data that is not of this format or is cut short, CipherAuthenticationError for a
  // wrong passphrase or changed data.
  [[nodiscard]] QByteArray decrypt(QByteArrayView data) const;

  // Replaces the file by its encrypted form, atomically. Raises RTE::FileOpenError,
  // FileReadError or FileWriteError (the file then stays as it was).
  void encryptFile(const QString& path) const;
  // Writes the encrypted form of source to target (which may be source itself).
  void encryptFile(const QString& sourcePath, const QString& targetPath) const;
  // Replaces the encrypted file by its plaintext, atomically; raises as decrypt and as
  // encryptFile, and writes nothing unless the whole file is authentic.
  void decryptFile(const QString& path) const;
  // Writes the plaintext of the encrypted source to target (which may be source itself).
  void decryptFile(const QString& sourcePath, const QString& targetPath) const;

  // The magic text that opens encrypted data: "RTECRYPT".
  static QByteArrayView magic();
  // Whether data begins with the magic text (it may still be damaged or of a newer version).
  static bool isEncrypted(QByteArrayView data);
  // Whether the file exists and begins with the magic text.
  static bool isEncryptedFile(const QString& path);

private:
  QByteArray m_passphrase; // UTF-8, NFC
  unsigned int m_iterations;
};

} // namespace RTE
