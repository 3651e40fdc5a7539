#include <Zn/Utils/Locations.h>
#include <Zn/Utils/Path.h>

#include <QStandardPaths>

#include <gtest/gtest.h>

TEST(ZnPath, NormalisesSeparatorsAndDotParts)
{
  EXPECT_EQ(Zn::Path(QStringLiteral("C:\\data\\\\run1\\..\\run2\\")).toString(), QStringLiteral("C:/data/run2"));
  EXPECT_EQ((Zn::Path(QStringLiteral("/a")) / QStringLiteral("b/./c")).toString(), QStringLiteral("/a/b/c"));
  EXPECT_TRUE(Zn::Path().isEmpty());
  EXPECT_TRUE(Zn::Path(QString()).toString().isEmpty());
  EXPECT_EQ(Zn::Path(QStringLiteral("/")).toString(), QStringLiteral("/"));
}

TEST(ZnLocations, AppDataIsTheUsersDataFolder)
{
  const Zn::Path data = Zn::Locations::appDataPath();
  EXPECT_FALSE(data.isEmpty());
  EXPECT_EQ(data.toString(), QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation));
}
