// Uses the installed library the way a host module does; exits non-zero on a mismatch.
#include <Core/Common/CoreCommon.h>
#include <Zn/Utils/LinearScale.h>

#include <QCoreApplication>

#include <iostream>

int main(int argc, char* argv[])
{
  QCoreApplication app(argc, argv);
  int failures = 0;
  try
  {
    RTE::Raise(RTE::ParseError(QStringLiteral("unexpected token"), 3, 14));
  }
  catch (const RTE::Exception& e)
  {
    std::cout << "caught " << e.typeName().toStdString() << ": " << e.what() << "\n";
    failures += e.message() != QStringLiteral("unexpected token in line 3, column 14");
    failures += dynamic_cast<const RTE::ParseError*>(&e) == nullptr;
  }
  const Zn::LinearScale celsiusToKelvin(1.0, 273.15, QStringLiteral("K"), QString());
  failures += celsiusToKelvin.getScaled(0.0) != 273.15;
  // The cipher's crypto library is private to ours: a host links and runs it without it.
  const RTE::Cipher cipher(QStringLiteral("host"), RTE::Cipher::MinimumIterations);
  failures += cipher.decrypt(cipher.encrypt(QByteArrayView("plain"))) != QByteArray("plain");
  try
  {
    (void)RTE::Cipher(QStringLiteral("other"), RTE::Cipher::MinimumIterations).decrypt(cipher.encrypt("x"));
    ++failures;
  }
  catch (const RTE::CipherAuthenticationError&)
  {
  }
  std::cout << (failures == 0 ? "consumer: OK\n" : "consumer: FAILED\n");
  return failures == 0 ? 0 : 1;
}
