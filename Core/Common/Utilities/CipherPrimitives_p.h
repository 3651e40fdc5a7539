// The cryptographic primitives under RTE::Cipher: thin wrappers over libgcrypt, so that
// no header outside this folder needs libgcrypt's. Nothing here is written by hand except
// the constant-time comparison and the wiping of secrets.
//
//   RTE::Private::Twofish twofish(key, RTE::Private::Twofish::Mode::Ctr);
//   twofish.setCounter(iv);
//   twofish.apply(buffer.data(), buffer.size());  // encrypts or decrypts in place
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QByteArray>
#include <QByteArrayView>

struct gcry_cipher_handle;
struct gcry_mac_handle;

namespace RTE::Private
{

// Twofish with a 16- or 32-byte key. ECB serves the known-answer checks, CTR the cipher.
// Failures (a key of another size, libgcrypt refusing) raise RTE::CipherError.
class CORECOMMON_EXPORT Twofish
{
public:
  enum class Mode
  {
    Ecb,
    Ctr
  };

  static constexpr qsizetype BlockSize = 16;

  Twofish(QByteArrayView key, Mode mode);
  ~Twofish();
  Twofish(const Twofish&) = delete;
  Twofish& operator=(const Twofish&) = delete;

  // CTR only: the first counter block (16 bytes); later blocks count up as one 128-bit
  // big-endian number.
  void setCounter(QByteArrayView counter);
  // Encrypts in place. ECB: size a multiple of 16. CTR: any size; successive calls
  // continue the key stream, so a stream may be processed in pieces.
  void encrypt(char* data, qsizetype size);
  // Decrypts in place (in CTR the same as encrypt).
  void decrypt(char* data, qsizetype size);

private:
  gcry_cipher_handle* m_handle = nullptr;
  Mode m_mode;
};

// HMAC-SHA-256, fed in pieces. Failures raise RTE::CipherError.
class CORECOMMON_EXPORT HmacSha256
{
public:
  static constexpr qsizetype Size = 32;

  explicit HmacSha256(QByteArrayView key);
  ~HmacSha256();
  HmacSha256(const HmacSha256&) = delete;
  HmacSha256& operator=(const HmacSha256&) = delete;

  void update(QByteArrayView data);
  // The 32-byte code of everything fed so far; the object is spent afterwards.
  [[nodiscard]] QByteArray finish();

private:
  gcry_mac_handle* m_handle = nullptr;
};

// PBKDF2 with HMAC-SHA-256: size bytes derived from the passphrase and salt.
CORECOMMON_EXPORT QByteArray pbkdf2Sha256(QByteArrayView passphrase, QByteArrayView salt, unsigned int iterations,
                                          qsizetype size);

// size bytes from libgcrypt's strong random generator.
QByteArray randomBytes(qsizetype size);

// Whether a and b are equal, taking the same time wherever they differ (sizes are not
// secret and are compared first).
CORECOMMON_EXPORT bool equalInConstantTime(QByteArrayView a, QByteArrayView b);

// Overwrites the bytes of a secret before it is released.
void wipe(QByteArray& secret);

} // namespace RTE::Private
