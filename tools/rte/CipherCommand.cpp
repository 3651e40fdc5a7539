// `rte encrypt` and `rte decrypt`: a file through the passphrase cipher, in place or into
// another file.
//
//   RTE_PASSPHRASE=... rte encrypt calibration.xml
//   rte decrypt --passphrase-stdin calibration.xml < secret.txt
//
// The passphrase never comes from the command line, where process lists and shell
// histories would show it: it is read from the environment variable RTE_PASSPHRASE, or
// with --passphrase-stdin from the first line of standard input.
#include "Command.h"

#include <Core/Common/Exceptions/Exception.h>
#include <Core/Common/Utilities/Cipher.h>

#include <QCommandLineParser>
#include <QFile>

#include <optional>

namespace
{

const char* const passphraseVariable = "RTE_PASSPHRASE";

std::optional<QString> readPassphrase(bool fromStdin, const QString& command)
{
  QString passphrase;
  if (fromStdin)
  {
    QFile in;
    if (!in.open(stdin, QIODevice::ReadOnly))
    {
      rte::err() << command << ": cannot read standard input\n";
      return std::nullopt;
    }
    passphrase = QString::fromUtf8(in.readLine());
    // Only the line break goes: spaces may belong to the passphrase.
    while (passphrase.endsWith(QLatin1Char('\n')) || passphrase.endsWith(QLatin1Char('\r')))
      passphrase.chop(1);
  }
  else
  {
    passphrase = qEnvironmentVariable(passphraseVariable);
  }
  if (passphrase.isEmpty())
  {
    rte::err() << command << ": no passphrase: set " << passphraseVariable
               << " or give one line on standard input with --passphrase-stdin\n";
    return std::nullopt;
  }
  return passphrase;
}

int run(const QStringList& arguments, bool encrypting)
{
  const QString command = encrypting ? QStringLiteral("rte encrypt") : QStringLiteral("rte decrypt");
  QCommandLineParser parser;
  parser.setApplicationDescription(
      encrypting
          ? QStringLiteral("Encrypts FILE with a passphrase (Twofish-256, authenticated), replacing it unless\n"
                           "--output is given. The passphrase comes from the environment variable\n"
                           "RTE_PASSPHRASE, or from the first line of standard input with --passphrase-stdin.")
          : QStringLiteral("Decrypts FILE made by `rte encrypt`, replacing it unless --output is given. Nothing\n"
                           "is written when the passphrase is wrong or the file was changed. The passphrase\n"
                           "comes from RTE_PASSPHRASE, or from the first line of standard input with\n"
                           "--passphrase-stdin."));
  parser.addHelpOption();
  const QCommandLineOption outputOption(QStringList{QStringLiteral("o"), QStringLiteral("output")},
                                        QStringLiteral("Write to <file> and leave FILE as it is."),
                                        QStringLiteral("file"));
  const QCommandLineOption stdinOption(QStringLiteral("passphrase-stdin"),
                                       QStringLiteral("Read the passphrase from the first line of standard input."));
  const QCommandLineOption iterationsOption(QStringLiteral("iterations"),
                                            QStringLiteral("Key derivation iterations (default %1, %2 to %3).")
                                                .arg(RTE::Cipher::DefaultIterations)
                                                .arg(RTE::Cipher::MinimumIterations)
                                                .arg(RTE::Cipher::MaximumIterations),
                                            QStringLiteral("n"));
  const QCommandLineOption forceOption(QStringLiteral("force"),
                                       QStringLiteral("Encrypt even a file that is already encrypted."));
  parser.addOption(outputOption);
  parser.addOption(stdinOption);
  if (encrypting)
  {
    parser.addOption(iterationsOption);
    parser.addOption(forceOption);
  }
  parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("The file to encrypt or decrypt."));
  if (const std::optional<int> stop = rte::parseCommandLine(parser, arguments))
    return *stop;
  const QStringList files = parser.positionalArguments();
  if (files.size() != 1)
  {
    rte::err() << command << ": expected one FILE\n\n" << rte::helpText(parser, command);
    return 2;
  }
  unsigned int iterations = RTE::Cipher::DefaultIterations;
  if (encrypting && parser.isSet(iterationsOption))
  {
    bool ok = false;
    iterations = parser.value(iterationsOption).toUInt(&ok);
    if (!ok || iterations < RTE::Cipher::MinimumIterations || iterations > RTE::Cipher::MaximumIterations)
    {
      rte::err() << command << ": --iterations takes a number from " << RTE::Cipher::MinimumIterations << " to "
                 << RTE::Cipher::MaximumIterations << ", not '" << parser.value(iterationsOption) << "'\n";
      return 2;
    }
  }
  const QString& source = files.first();
  const QString target = parser.isSet(outputOption) ? parser.value(outputOption) : source;
  if (encrypting && !parser.isSet(forceOption) && RTE::Cipher::isEncryptedFile(source))
  {
    rte::err() << command << ": " << source << " is encrypted already (--force encrypts it once more)\n";
    return 1;
  }
  const std::optional<QString> passphrase = readPassphrase(parser.isSet(stdinOption), command);
  if (!passphrase)
    return 2;

  try
  {
    const RTE::Cipher cipher(*passphrase, iterations);
    if (encrypting)
      cipher.encryptFile(source, target);
    else
      cipher.decryptFile(source, target);
  }
  catch (const RTE::Exception& e)
  {
    rte::err() << command << ": " << e.message() << "\n";
    return 1;
  }
  rte::out() << (encrypting ? "encrypted " : "decrypted ") << source;
  if (target != source)
    rte::out() << " into " << target;
  rte::out() << "\n";
  return 0;
}

const rte::CommandRegistration encryptRegistration{{QStringLiteral("encrypt"),
                                                    QStringLiteral("Encrypt a file with a passphrase"),
                                                    [](const QStringList& arguments) { return run(arguments, true); }}};
const rte::CommandRegistration decryptRegistration{
    {QStringLiteral("decrypt"), QStringLiteral("Decrypt a file made by rte encrypt"),
     [](const QStringList& arguments) { return run(arguments, false); }}};

} // namespace
