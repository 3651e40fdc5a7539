// RTE::HierarchyPath: splitting, the prefix/suffix/containment tests, persistence.
#include <Core/Common/Storage/SettingsStringBasedDocument.h>
#include <Core/Common/Utilities/HierarchyPath.h>

#include "Units/QStringPrinter.h"

#include <gtest/gtest.h>

using RTE::HierarchyPath;

namespace
{

HierarchyPath path(const char* text)
{
  return HierarchyPath(QString::fromUtf8(text), QStringLiteral("/"));
}

} // namespace

TEST(HierarchyPath, SplitsKeepingEmptyPartsAndJoinsBack)
{
  const HierarchyPath rooted = path("/a/b");
  ASSERT_EQ(rooted.GetDepth(), 3);
  EXPECT_EQ(rooted[0], QString());
  EXPECT_EQ(rooted[1], QStringLiteral("a"));
  EXPECT_EQ(rooted.AsString(), QStringLiteral("/a/b"));
  EXPECT_EQ(path("a//b").GetDepth(), 3);
  EXPECT_TRUE(path("").IsEmpty());
  EXPECT_EQ(HierarchyPath(QStringLiteral("x::y"), QStringLiteral("::")).Last(), QStringLiteral("y"));

  EXPECT_EQ(rooted[-1], QString());
  EXPECT_EQ(rooted.GetChild(3), QString());
  EXPECT_EQ(HierarchyPath().First(), QString());

  HierarchyPath built;
  built << QStringLiteral("a");
  built.AddChild(QStringLiteral("b"));
  EXPECT_EQ(built, path("a/b"));
  built.SetSeparator(QStringLiteral("."));
  EXPECT_NE(built, path("a/b")); // the separator takes part in equality
  EXPECT_EQ(built.AsString(), QStringLiteral("a.b"));
}

TEST(HierarchyPath, ParentAndSubPathUseTheDefaultSeparator)
{
  const HierarchyPath dotted(QStringLiteral("a.b.c"), QStringLiteral("."));
  const HierarchyPath parent = dotted.GetParent();
  EXPECT_EQ(parent.GetSeparator(), QStringLiteral("/"));
  EXPECT_EQ(parent.AsString(), QStringLiteral("a/b"));
  EXPECT_TRUE(parent.IsValid());
  EXPECT_TRUE(dotted.hasParent());
  EXPECT_FALSE(path("a").hasParent());
  EXPECT_FALSE(HierarchyPath().GetParent().IsValid());

  EXPECT_EQ(dotted.GetSubPath(1, 5).AsString(), QStringLiteral("b/c"));
  EXPECT_EQ(dotted.GetSubPath(0, 1).AsString(), QStringLiteral("a"));
  EXPECT_TRUE(dotted.GetSubPath(3, 1).IsEmpty());
  EXPECT_TRUE(dotted.GetSubPath(-1, 2).IsEmpty());

  HierarchyPath shrinking = path("a/b");
  shrinking.RemoveLastChild();
  shrinking.RemoveLastChild();
  shrinking.RemoveLastChild();
  EXPECT_TRUE(shrinking.IsEmpty());
}

TEST(HierarchyPath, PrefixSuffixAndContainment)
{
  const HierarchyPath abc = path("a/b/c");
  EXPECT_TRUE(abc.StartsWith(path("a/b")));
  EXPECT_FALSE(abc.StartsWith(path("b")));
  EXPECT_TRUE(abc.StartsWith(HierarchyPath()));
  EXPECT_FALSE(path("a").StartsWith(abc));
  EXPECT_TRUE(abc.EndsWith(path("b/c")));
  EXPECT_FALSE(abc.EndsWith(path("a/b")));

  EXPECT_TRUE(abc.Contains(path("b/c")));
  EXPECT_TRUE(abc.Contains(path("b")));
  EXPECT_FALSE(abc.Contains(path("a/c")));
  EXPECT_FALSE(abc.Contains(path("x")));
  // Every token is looked up from the start: the "a" before "c" is never found.
  EXPECT_FALSE(path("a/b/a/c").Contains(path("a/c")));
  EXPECT_TRUE(path("a/b/a/c").Contains(path("a/b")));

  EXPECT_EQ(abc.TrimParents(path("a/b")).AsString(), QStringLiteral("c"));
  EXPECT_EQ(abc.TrimParents(path("x")), abc);
  EXPECT_EQ(abc.TrimChilds(path("b/c")).AsString(), QStringLiteral("a"));
  EXPECT_EQ(abc.TrimChilds(path("b")), abc);
  EXPECT_TRUE(abc.TrimParents(abc).IsEmpty());
}

TEST(HierarchyPath, PersistsSeparatorAndTokens)
{
  const HierarchyPath original(QStringLiteral("/cams/1/gain"), QStringLiteral("/"));
  Storage::SettingsStringBasedDocument document;
  original.SerializeTo(*document.CreateNode(QStringLiteral("Path")));
  const QString xml = document.GetContent();
  EXPECT_TRUE(xml.contains(QStringLiteral("<Path class=\"HierarchyPath\">"))) << xml.toStdString();
  EXPECT_TRUE(xml.contains(QStringLiteral("<Tokens class=\"list\" version=\"1\">"))) << xml.toStdString();

  Storage::SettingsStringBasedDocument reread(xml);
  HierarchyPath restored(QStringLiteral("old"), QStringLiteral("."));
  restored.DeserializeFrom(*reread.GetNode(QStringLiteral("Path")));
  EXPECT_EQ(restored, original);

  // Another class leaves the path as it was.
  Storage::SettingsStringBasedDocument other(
      QStringLiteral("<root><Path class=\"point2D\"><Separator class=\"string\" value=\".\"/></Path></root>"));
  restored.DeserializeFrom(*other.GetNode(QStringLiteral("Path")));
  EXPECT_EQ(restored, original);
}
