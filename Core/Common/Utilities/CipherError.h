// Failures of the file cipher (RTE::Cipher). Callers that only report the failure catch
// CipherError; those that ask the user again for the passphrase catch
// CipherAuthenticationError.
//
//   try { plain = RTE::Cipher(passphrase).decrypt(data); }
//   catch (const RTE::CipherAuthenticationError&) { askAgain(); }
//   catch (const RTE::CipherFormatError& e) { showError(e.message()); }
#pragma once

#include <Core/Common/Exceptions/GeneralExceptions.h>

namespace RTE
{

// Any failure of the cipher that is not a file error (files raise RTE::FileError and its
// subclasses).
RTE_DECLARE_EXCEPTION_WITH_MESSAGE(CipherError, Exception);
// The data is no encrypted data of a version this library reads: wrong magic text,
// unknown version, header fields out of range, or cut short.
RTE_DECLARE_EXCEPTION_WITH_MESSAGE(CipherFormatError, CipherError);
// The authentication code does not match: the passphrase is wrong or the data was
// changed. Nothing was decrypted.
RTE_DECLARE_EXCEPTION_WITH_MESSAGE(CipherAuthenticationError, CipherError);

} // namespace RTE
