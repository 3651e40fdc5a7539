// Any bytes given to a document give a readable tree or an empty document with the
// result false; none crashes, hangs or overruns (run under the sanitizers too).
#include <Core/Common/Storage/SettingsDocument.h>

#include "StorageTestHelpers.h"
#include "TestFiles.h"

#include <QRandomGenerator>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using Storage::AutoSync;
using Storage::SettingsDocument;
using Storage::SettingsStringBasedDocument;

namespace
{

// Everything a reader may do with a loaded tree, to the depth given.
void walk(const Storage::Settings& node, int depth)
{
  (void)node.GetClass();
  (void)node.GetVersion();
  for (const QString& name : node.GetChildrenNames())
  {
    (void)node.Count(name);
    (void)node.Get<QString>(name + QStringLiteral("_none"), QString());
    if (node.IsCollection(name))
    {
      (void)node.GetCollectionItem<double>(name, 0, 0.0);
      continue;
    }
    if (depth > 0 && !node.GetClass(name).isNull())
      walk(*node.GetNode(name), depth - 1);
  }
}

QString validSample()
{
  SettingsStringBasedDocument document;
  document.SetClass("sample");
  auto center = document.CreateNode("center");
  center->Set("X", 10);
  center->Set("Text", QStringLiteral("multi\nline \u00e4 & <x>"));
  for (int i = 0; i < 40; ++i)
    document.AppendCollectionItem("items", i * 0.5);
  return document.GetContent();
}

} // namespace

TEST(BadInput, TruncatedTextsGiveATreeOrAnEmptyDocument)
{
  const QString full = validSample();
  int accepted = 0;
  for (qsizetype length = 0; length < full.size(); ++length)
  {
    SettingsStringBasedDocument document;
    document.Set("before", 1);
    const bool ok = document.SetContent(full.left(length));
    if (ok)
    {
      ++accepted;
      walk(document, 4);
    }
    else
    {
      ASSERT_TRUE(document.GetChildrenNames().isEmpty()) << length;
    }
    EXPECT_FALSE(document.Contains("before"));
  }
  EXPECT_LT(accepted, 3); // only cuts inside the trailing white space can parse
  SettingsStringBasedDocument whole(full);
  EXPECT_EQ(whole.GetCollectionItem<double>("items", 39, 0.0), 19.5);
}

TEST(BadInput, BinaryFilesAndTextsAreRejectedSafely)
{
  QTemporaryDir dir;
  const QString path = dir.filePath(QStringLiteral("binary.xml"));
  QRandomGenerator random(20261121);
  const QByteArray prefixes[] = {QByteArray(),
                                 "<root>",
                                 "<?xml version=\"1.0\"?><root a=\"",
                                 "\xef\xbb\xbf<root>",
                                 "\xff\xfe<\0r\0o\0o\0t\0>\0",
                                 QByteArray("<root>\0<a/>", 11)};
  for (const QByteArray& prefix : prefixes)
  {
    for (int round = 0; round < 50; ++round)
    {
      QByteArray bytes = prefix;
      const int size = static_cast<int>(random.bounded(1, 600));
      for (int i = 0; i < size; ++i)
        bytes.append(static_cast<char>(random.bounded(256)));
      ASSERT_TRUE(writeFile(path, bytes));
      SettingsDocument document(path, AutoSync::Off);
      if (document.Load())
        walk(document, 8);
      else
        ASSERT_TRUE(document.GetChildrenNames().isEmpty());

      SettingsStringBasedDocument text;
      if (text.SetContent(QString::fromLatin1(bytes)))
        walk(text, 8);
      (void)text.GetContent();
    }
  }
}

namespace
{

QString nested(int depth)
{
  QString xml = QStringLiteral("<root>");
  for (int i = 0; i < depth; ++i)
    xml += QStringLiteral("<n class=\"x\">");
  for (int i = 0; i < depth; ++i)
    xml += QStringLiteral("</n>");
  return xml + QStringLiteral("</root>");
}

} // namespace

TEST(BadInput, DeeplyNestedInputsAreRefusedAndDeepTreesHandledWithoutRecursion)
{
  // Written with one indent per level, such a tree would take gigabytes; it is refused.
  SettingsStringBasedDocument document;
  EXPECT_FALSE(document.SetContent(nested(200000)));
  EXPECT_TRUE(document.GetChildrenNames().isEmpty());
  EXPECT_FALSE(document.SetContent(nested(1001)));
  EXPECT_FALSE(document.SetContent(nested(200000).left(600000))); // unclosed

  ASSERT_TRUE(document.SetContent(nested(1000)));
  std::shared_ptr<Storage::Settings> node = document.GetNode("n");
  for (int i = 1; i < 999; ++i) // level 999: its new leaf is at the deepest level accepted
    node = node->GetNode("n");
  node->Set("deep", 1);
  node->Report(QStringLiteral("a report far down"));
  EXPECT_TRUE(document.HasReports());
  EXPECT_TRUE(node->ToString().contains(QStringLiteral("\n <deep class=\"int32\" value=\"1\" />\n")));

  QTemporaryDir dir;
  SettingsDocument file(dir.filePath(QStringLiteral("deep.xml")), AutoSync::Off);
  ASSERT_TRUE(file.SetContent(document.GetContent()));
  ASSERT_TRUE(file.Save());
  ASSERT_TRUE(file.Load());
  file.Remove("n");
  EXPECT_FALSE(file.Contains("n"));
  ASSERT_TRUE(document.SetContent(nested(1000)));
  document.Clear();
  EXPECT_TRUE(document.GetChildrenNames().isEmpty());

  // Stray top-level elements beside "root" are dropped, however deep they nest.
  QString stray = nested(1500);
  stray.replace(QStringLiteral("root>"), QStringLiteral("junk>"));
  ASSERT_TRUE(document.SetContent(stray + QStringLiteral("<root><a class=\"int32\" value=\"3\"/></root>")));
  EXPECT_EQ(document.GetContent(), QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                                  "<root>\n\t<a class=\"int32\" value=\"3\" />\n</root>"));
}
