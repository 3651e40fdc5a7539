// RTE::IniConfigReader over real files.
#include <Core/Common/Utilities/IniConfigReader.h>

#include "TestFiles.h"
#include "Units/QStringPrinter.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace
{

QString writeIni(const QTemporaryDir& dir, const QByteArray& content)
{
  const QString path = dir.filePath(QStringLiteral("device.ini"));
  return writeFile(path, content) ? path : QString();
}

} // namespace

TEST(IniConfigReader, ReadsSectionsInNameOrder)
{
  QTemporaryDir dir;
  const QString path = writeIni(dir, "loose=1\n"
                                     "[Beta]\n"
                                     "Gain=2.5\n"
                                     "gain=3 ; a comment\n"
                                     "list=a, b\n"
                                     "[Alpha]\n"
                                     "Name=\"quoted; text\"\n"
                                     "Path=C:\\\\data\n"
                                     "[Alpha/Nested]\n"
                                     "inner=x\n");
  ASSERT_FALSE(path.isEmpty());
  const RTE::IniConfigReader ini(path);
  EXPECT_EQ(ini.getSections(), (std::vector<QString>{QStringLiteral("Alpha"), QStringLiteral("Beta")}));
  EXPECT_TRUE(ini.hasSection(QStringLiteral("Beta")));
  EXPECT_FALSE(ini.hasSection(QStringLiteral("beta")));
  EXPECT_FALSE(ini.hasSection(QStringLiteral("General")));

  const std::map<QString, QString> beta = ini.getKeyValuesOfSection(QStringLiteral("Beta"));
  EXPECT_EQ(beta, (std::map<QString, QString>{{QStringLiteral("Gain"), QStringLiteral("2.5")},
                                              {QStringLiteral("gain"), QStringLiteral("3")},
                                              {QStringLiteral("list"), QStringLiteral("a, b")}}));
  const std::map<QString, QString> alpha = ini.getKeyValuesOfSection(QStringLiteral("Alpha"));
  EXPECT_EQ(alpha, (std::map<QString, QString>{{QStringLiteral("Name"), QStringLiteral("quoted; text")},
                                               {QStringLiteral("Path"), QStringLiteral("C:\\data")}}));
  EXPECT_TRUE(ini.getKeyValuesOfSection(QStringLiteral("Gamma")).empty());
}

TEST(IniConfigReader, MissingFileGivesAnEmptyReader)
{
  QTemporaryDir dir;
  const RTE::IniConfigReader missing(dir.filePath(QStringLiteral("none.ini")));
  EXPECT_TRUE(missing.getSections().empty());
  const RTE::IniConfigReader folder(dir.path());
  EXPECT_TRUE(folder.getSections().empty());
}
