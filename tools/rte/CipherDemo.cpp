// Demo step: the passphrase cipher and the list of names with wildcards.
#include "Command.h"

#include <Core/Common/Utilities/Cipher.h>
#include <Core/Common/Utilities/CipherError.h>
#include <Core/Common/Utilities/NameWithWildcardEditModel.h>

namespace
{

void demoCipherAndNames(QTextStream& out)
{
  out << "RTE::Cipher encrypts buffers and files with a passphrase (Twofish-256, authenticated);\n"
         "a wrong passphrase or a changed byte is refused before anything is decrypted.\n\n";
  // Few iterations keep the tour quick; the default is Cipher::DefaultIterations.
  const RTE::Cipher cipher(QStringLiteral("tour"), RTE::Cipher::MinimumIterations);
  const QByteArray plain("gain=1.5");
  QByteArray encrypted = cipher.encrypt(plain);
  out << "  \"" << plain << "\" encrypted: " << encrypted.size() << " bytes, beginning \""
      << encrypted.first(RTE::Cipher::magic().size()) << "\"\n"
      << "  decrypted: \"" << cipher.decrypt(encrypted) << "\"\n";
  encrypted[encrypted.size() / 2] = static_cast<char>(encrypted[encrypted.size() / 2] ^ 1);
  try
  {
    (void)cipher.decrypt(encrypted);
  }
  catch (const RTE::CipherAuthenticationError& e)
  {
    out << "  one bit changed: " << e.message() << "\n";
  }
  out << "  files: rte encrypt FILE / rte decrypt FILE (passphrase from RTE_PASSPHRASE)\n\n";

  out << "RTE::NameWithWildcardEditModel is an editable item model of names with '*' and '?'.\n\n";
  RTE::NameWithWildcardEditModel names({QStringLiteral("Camera*"), QStringLiteral("Laser?")});
  out << "  entries: " << names.names().join(QStringLiteral(", ")) << "\n";
  for (const QString& device : {QStringLiteral("camera 2"), QStringLiteral("Laser1"), QStringLiteral("Laser12")})
  {
    const QStringList matching = names.matchingEntries(device);
    out << "  " << device << " matches: " << (matching.isEmpty() ? QStringLiteral("nothing") : matching.join(", "))
        << "\n";
  }
  out << "  adding \"CAMERA*\": " << names.validationError(QStringLiteral("CAMERA*")) << "\n";
}

const rte::DemoStepRegistration step{{92, QStringLiteral("Utilities: cipher and wildcard names"), &demoCipherAndNames}};

} // namespace
