#include <Core/Common/Utilities/CipherPrimitives_p.h>

#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Utilities/CipherError.h>

#include <gcrypt.h>

#include <cstring>
#include <mutex>

namespace RTE::Private
{

namespace
{

// libgcrypt must be initialised once before its first use. A host that uses libgcrypt
// itself may have done so already; then its settings stay.
void ensureInitialised()
{
  static std::once_flag once;
  std::call_once(
      once,
      []
      {
        if (gcry_control(GCRYCTL_INITIALIZATION_FINISHED_P))
          return;
        if (!gcry_check_version(GCRYPT_VERSION))
        {
          RTE::Raise(CipherError(QStringLiteral("libgcrypt %1 or newer is needed, %2 is installed")
                                     .arg(QLatin1String(GCRYPT_VERSION), QLatin1String(gcry_check_version(nullptr)))));
        }
        gcry_control(GCRYCTL_INITIALIZATION_FINISHED, 0);
      });
}

// Raises a CipherError naming what failed and libgcrypt's reason when err is set.
void check(gcry_error_t err, const char* what)
{
  if (err != 0)
    RTE::Raise(
        CipherError(QStringLiteral("%1 failed: %2").arg(QLatin1String(what), QString::fromUtf8(gcry_strerror(err)))));
}

} // namespace

Twofish::Twofish(QByteArrayView key, Mode mode) : m_mode(mode)
{
  ensureInitialised();
  if (key.size() != 16 && key.size() != 32)
    RTE::Raise(CipherError(QStringLiteral("A Twofish key has 16 or 32 bytes, not %1").arg(key.size())));
  gcry_cipher_hd_t handle = nullptr;
  check(gcry_cipher_open(&handle, GCRY_CIPHER_TWOFISH, mode == Mode::Ctr ? GCRY_CIPHER_MODE_CTR : GCRY_CIPHER_MODE_ECB,
                         0),
        "Opening the Twofish cipher");
  m_handle = handle;
  const gcry_error_t err = gcry_cipher_setkey(m_handle, key.data(), static_cast<size_t>(key.size()));
  if (err != 0)
  {
    gcry_cipher_close(m_handle);
    m_handle = nullptr;
    check(err, "Setting the Twofish key");
  }
}

Twofish::~Twofish()
{
  if (m_handle != nullptr)
    gcry_cipher_close(m_handle); // also wipes the key schedule
}

void Twofish::setCounter(QByteArrayView counter)
{
  if (m_mode != Mode::Ctr || counter.size() != BlockSize)
    RTE::Raise(CipherError(QStringLiteral("A Twofish counter block has 16 bytes and needs CTR mode")));
  check(gcry_cipher_setctr(m_handle, counter.data(), static_cast<size_t>(counter.size())), "Setting the counter");
}

void Twofish::encrypt(char* data, qsizetype size)
{
  if (m_mode == Mode::Ecb && size % BlockSize != 0)
    RTE::Raise(CipherError(QStringLiteral("Twofish blocks have 16 bytes; %1 bytes are no whole number").arg(size)));
  check(gcry_cipher_encrypt(m_handle, data, static_cast<size_t>(size), nullptr, 0), "Twofish encryption");
}

void Twofish::decrypt(char* data, qsizetype size)
{
  if (m_mode == Mode::Ecb && size % BlockSize != 0)
    RTE::Raise(CipherError(QStringLiteral("Twofish blocks have 16 bytes; %1 bytes are no whole number").arg(size)));
  check(gcry_cipher_decrypt(m_handle, data, static_cast<size_t>(size), nullptr, 0), "Twofish decryption");
}

HmacSha256::HmacSha256(QByteArrayView key)
{
  ensureInitialised();
  gcry_mac_hd_t handle = nullptr;
  check(gcry_mac_open(&handle, GCRY_MAC_HMAC_SHA256, 0, nullptr), "Opening HMAC-SHA-256");
  m_handle = handle;
  const gcry_error_t err = gcry_mac_setkey(m_handle, key.data(), static_cast<size_t>(key.size()));
  if (err != 0)
  {
    gcry_mac_close(m_handle);
    m_handle = nullptr;
    check(err, "Setting the HMAC key");
  }
}

HmacSha256::~HmacSha256()
{
  if (m_handle != nullptr)
    gcry_mac_close(m_handle);
}

void HmacSha256::update(QByteArrayView data)
{
  check(gcry_mac_write(m_handle, data.data(), static_cast<size_t>(data.size())), "HMAC-SHA-256");
}

QByteArray HmacSha256::finish()
{
  QByteArray code(Size, Qt::Uninitialized);
  size_t length = static_cast<size_t>(code.size());
  check(gcry_mac_read(m_handle, code.data(), &length), "Reading the HMAC");
  if (length != static_cast<size_t>(Size))
    RTE::Raise(CipherError(QStringLiteral("HMAC-SHA-256 gave %1 bytes instead of 32").arg(length)));
  return code;
}

QByteArray pbkdf2Sha256(QByteArrayView passphrase, QByteArrayView salt, unsigned int iterations, qsizetype size)
{
  ensureInitialised();
  QByteArray key(size, Qt::Uninitialized);
  check(gcry_kdf_derive(passphrase.data(), static_cast<size_t>(passphrase.size()), GCRY_KDF_PBKDF2, GCRY_MD_SHA256,
                        salt.data(), static_cast<size_t>(salt.size()), iterations, static_cast<size_t>(size),
                        key.data()),
        "PBKDF2 key derivation");
  return key;
}

QByteArray randomBytes(qsizetype size)
{
  ensureInitialised();
  QByteArray bytes(size, Qt::Uninitialized);
  gcry_randomize(bytes.data(), static_cast<size_t>(size), GCRY_STRONG_RANDOM);
  return bytes;
}

bool equalInConstantTime(QByteArrayView a, QByteArrayView b)
{
  if (a.size() != b.size())
    return false;
  // No early exit: the time must not tell how many leading bytes of a forged code match.
  unsigned char difference = 0;
  for (qsizetype i = 0; i < a.size(); ++i)
    difference |= static_cast<unsigned char>(a[i] ^ b[i]);
  return difference == 0;
}

void wipe(QByteArray& secret)
{
  if (!secret.isEmpty())
  {
    // explicit_bzero, unlike memset, is not dropped as a dead store before the free.
    // data() detaches a shared array: holders of other copies keep (and wipe) their own.
    explicit_bzero(secret.data(), static_cast<size_t>(secret.size()));
  }
  secret.clear();
}

} // namespace RTE::Private
