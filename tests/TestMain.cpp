// Shared main of every test program: suites may use signals, QSignalSpy and Qt's
// logging, which need a QCoreApplication.
#include <QCoreApplication>

#include <gtest/gtest.h>

int main(int argc, char* argv[])
{
  ::testing::InitGoogleTest(&argc, argv);
  QCoreApplication app(argc, argv);
  return RUN_ALL_TESTS();
}
