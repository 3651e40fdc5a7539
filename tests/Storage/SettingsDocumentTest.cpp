#include "TestFiles.h"
#include <Core/Common/Storage/SettingsDocument.h>
#include <Core/Common/Storage/StorageExceptions.h>

#include "LogCapture.h"
#include "OperatingSystem/TestHelpers.h"
#include "StorageTestHelpers.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QRegularExpression>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <csignal>
#include <functional>
#include <sys/resource.h>

using Storage::AutoSync;
using Storage::Scope;
using Storage::SettingsDocument;

TEST(SettingsDocument, WritesTabIndentedUtf8WithStandardDeclaration)
{
  QTemporaryDir dir;
  const QString path = dir.filePath(QStringLiteral("sub/folder/doc.xml"));
  {
    SettingsDocument document(path, AutoSync::Off);
    document.SetClass("setup");
    document.SetVersion(2);
    auto center = document.CreateNode("center");
    center->SetClass("point2D");
    center->Set("X", 10);
    center->Set("Y", -3);
    document.AppendCollectionItem("items", 5);
    document.Set("name", QStringLiteral("Kamera \u00b5"));
    ASSERT_TRUE(document.Save());
    EXPECT_EQ(document.GetContent(), QString::fromUtf8(readFile(path)).trimmed());
  }
  const QByteArray expected = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                              "<root class=\"setup\" version=\"2\">\n"
                              "\t<center class=\"point2D\">\n"
                              "\t\t<X class=\"int32\" value=\"10\" />\n"
                              "\t\t<Y class=\"int32\" value=\"-3\" />\n"
                              "\t</center>\n"
                              "\t<items index=\"0\" class=\"int32\" value=\"5\" />\n"
                              "\t<name class=\"string\" value=\"Kamera \xc2\xb5\" />\n"
                              "</root>\n";
  EXPECT_EQ(readFile(path), expected);

  SettingsDocument loaded(path, AutoSync::LoadOnly);
  EXPECT_EQ(loaded.GetVersion(), 2u);
  EXPECT_EQ(loaded.GetNode("center")->Get<int>("Y", 0), -3);
  EXPECT_EQ(loaded.Get<QString>("name", QString()), QStringLiteral("Kamera \u00b5"));
  EXPECT_TRUE(loaded.ToString().startsWith(QStringLiteral("<root class=\"setup\" version=\"2\">\n <center")));
}

TEST(SettingsDocument, MultiLineStringsSurviveSaveAndLoad)
{
  const QString text = QStringLiteral("first line\nsecond\tline\r\nthird  line\n");
  QTemporaryDir dir;
  const QString path = dir.filePath(QStringLiteral("lines.xml"));
  {
    SettingsDocument document(path, AutoSync::LoadAndSave);
    document.Set("text", text);
    document.AppendCollectionItem("list", text);
  } // saved by the destructor
  SettingsDocument loaded(path, AutoSync::LoadOnly);
  EXPECT_EQ(loaded.Get<QString>("text", QString()), text);
  EXPECT_EQ(loaded.GetCollectionItem<QString>("list", 0, QString()), text);

  Storage::SettingsStringBasedDocument copy(loaded.GetContent());
  EXPECT_EQ(copy.Get<QString>("text", QString()), text);

  // Files edited by hand hold the breaks and tabs literally; they are kept as well.
  const QString handmade = dir.filePath(QStringLiteral("handmade.xml"));
  ASSERT_TRUE(writeFile(handmade, "<root><text class=\"string\" value=\"a\r\n\tb\nc\"/></root>"));
  EXPECT_EQ(SettingsDocument(handmade, AutoSync::LoadOnly).Get<QString>("text", QString()),
            QStringLiteral("a\n\tb\nc"));
}

TEST(SettingsDocument, AnInterruptedSaveKeepsThePreviousFile)
{
  QTemporaryDir dir;
  const QString path = dir.filePath(QStringLiteral("keep.xml"));
  {
    SettingsDocument small(path, AutoSync::Off);
    small.Set("generation", 1);
    ASSERT_TRUE(small.Save());
  }
  const QByteArray before = readFile(path);

  SettingsDocument big(path, AutoSync::Off);
  big.Set("generation", 2);
  for (int i = 0; i < 5000; ++i)
    big.AppendCollectionItem("filler", QStringLiteral("some text to make the file large"));

  // The file-size limit makes the write fail part way, as a full disk would.
  struct rlimit old
  {
  };
  ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &old), 0);
  const auto oldHandler = std::signal(SIGXFSZ, SIG_IGN);
  struct rlimit limited = old;
  limited.rlim_cur = 4096;
  ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &limited), 0);
  const bool saved = big.Save();
  setrlimit(RLIMIT_FSIZE, &old);
  std::signal(SIGXFSZ, oldHandler);

  EXPECT_FALSE(saved);
  EXPECT_EQ(readFile(path), before);
  EXPECT_EQ(QDir(dir.path()).entryList(QDir::Files), QStringList{QStringLiteral("keep.xml")}); // no leftovers
  EXPECT_TRUE(big.Save());
  EXPECT_EQ(SettingsDocument(path, AutoSync::LoadOnly).Get<int>("generation", 0), 2);
}

TEST(SettingsDocument, ContextsAreValidatedForFolderScopes)
{
  const struct
  {
    Scope scope;
    const char* context;
    const char* message;
  } cases[] = {
      {Scope::User, "a:b", "Context contains invalid character(s)."},
      {Scope::Application, "a*", "Context contains invalid character(s)."},
      {Scope::Fixed, "what?", "Context contains invalid character(s)."},
      {Scope::User, "", "Empty context is not allowed"},
      {static_cast<Scope>(5), "x", "Unknown Scope."},
  };
  for (const auto& c : cases)
  {
    SCOPED_TRACE(c.context);
    EXPECT_EQ(MessageOf<Storage::InvalidScopeOrContext>(
                  [&] { SettingsDocument(c.scope, QString::fromUtf8(c.context), AutoSync::Off); }),
              QString::fromUtf8(c.message));
  }
  EXPECT_NO_THROW(SettingsDocument(Scope::File, QStringLiteral("c:/odd?*"), AutoSync::Off));
  EXPECT_NO_THROW(SettingsDocument(Scope::InMemory, QStringLiteral("a:b"), AutoSync::LoadAndSave));
}

TEST(SettingsDocument, InMemoryDocumentsNeverTouchTheDisk)
{
  SettingsDocument document(Scope::InMemory, QStringLiteral("ignored"), AutoSync::LoadAndSave);
  EXPECT_EQ(document.GetContext(), QString());
  EXPECT_EQ(document.GetScope(), Scope::InMemory);
  document.Set("a", 1);
  EXPECT_TRUE(document.Save());
  EXPECT_TRUE(document.Load());
  EXPECT_EQ(document.Get<int>("a", 0), 1); // Load reads nothing
  EXPECT_FALSE(SettingsDocument::DocumentExists(Scope::InMemory, QStringLiteral("ignored")));
  EXPECT_FALSE(SettingsDocument::DeleteDocument(Scope::InMemory, QStringLiteral("ignored")));
  EXPECT_EQ(SettingsDocument::FilePathFor(Scope::InMemory, QStringLiteral("x")), QString());
  EXPECT_FALSE(document.SaveTo(Scope::InMemory, QStringLiteral("x")));
}

// The folders of the User, Application and Fixed scopes are tested with the locations,
// in child processes of their own (they are fixed once per process).
TEST(SettingsDocument, UnknownScopesHaveNoPathAndSaveToTakesOnlyFolderScopes)
{
  EXPECT_EQ(SettingsDocument::FilePathFor(static_cast<Scope>(9), QStringLiteral("camera")), QString());
  QTemporaryDir dir;
  SettingsDocument file(dir.path() + QStringLiteral("/x.xml"), AutoSync::Off);
  EXPECT_FALSE(file.SaveTo(Scope::Fixed, QStringLiteral("camera")));
  EXPECT_FALSE(file.SaveTo(Scope::File, dir.path() + QStringLiteral("/y.xml")));
  EXPECT_FALSE(file.SaveTo(Scope::User, QStringLiteral("bad:context")));
  EXPECT_FALSE(QFileInfo::exists(dir.path() + QStringLiteral("/y.xml")));
}

TEST(SettingsDocument, FileScopeLoadSaveDeleteAndAutoSync)
{
  QTemporaryDir dir;
  const QString path = dir.filePath(QStringLiteral("auto.xml"));
  EXPECT_FALSE(SettingsDocument::DocumentExists(Scope::File, path));
  {
    SettingsDocument document(path, AutoSync::LoadOnly);
    document.Set("a", 1);
  } // LoadOnly never saves
  EXPECT_FALSE(QFile::exists(path));
  {
    SettingsDocument document(Scope::File, path, AutoSync::LoadAndSave);
    EXPECT_EQ(document.GetContext(), path);
    document.Set("a", 2);
  }
  EXPECT_TRUE(SettingsDocument::DocumentExists(Scope::File, path));
  {
    SettingsDocument document(path, AutoSync::LoadAndSave);
    EXPECT_EQ(document.Get<int>("a", 0), 2);
    document.Set("a", 3);
  }
  SettingsDocument off(path, AutoSync::Off);
  EXPECT_FALSE(off.Contains("a"));
  ASSERT_TRUE(off.Load());
  EXPECT_EQ(off.Get<int>("a", 0), 3);
  EXPECT_EQ(SettingsDocument::FilePathFor(Scope::File, path), path);

  EXPECT_FALSE(off.SaveAs(QString()));
  const QString copy = dir.filePath(QStringLiteral("deeper/copy.xml"));
  EXPECT_TRUE(off.SaveAs(copy));
  EXPECT_EQ(readFile(copy), readFile(path));

  EXPECT_TRUE(SettingsDocument::DeleteDocument(Scope::File, path));
  EXPECT_FALSE(QFile::exists(path));
  EXPECT_TRUE(SettingsDocument::DeleteDocument(Scope::File, path));
  EXPECT_FALSE(off.Load());
  EXPECT_TRUE(off.GetChildrenNames().isEmpty());
}

TEST(SettingsDocument, FailedLoadsLeaveAnEmptyUsableDocument)
{
  QTemporaryDir dir;
  const struct
  {
    const char* what;
    QByteArray content;
    const char* diagnostic;
  } cases[] = {
      {"empty file", QByteArray(), "Settings file is empty: "},
      {"not xml", "<root><a></root>", "failed: XML-parse error is: "},
      {"no root", "<?xml version=\"1.0\"?><settings><a class=\"int32\" value=\"1\"/></settings>",
       "XML content error: Root node not found. Content is: ###"},
  };
  for (const auto& c : cases)
  {
    SCOPED_TRACE(c.what);
    const QString path = dir.filePath(QStringLiteral("bad.xml"));
    ASSERT_TRUE(writeFile(path, c.content));
    SettingsDocument document(path, AutoSync::Off);
    document.Set("stale", 1);
    LogCapture capture("Core.Serialization");
    EXPECT_FALSE(document.Load());
    EXPECT_TRUE(document.GetChildrenNames().isEmpty());
    ASSERT_EQ(capture.messages().size(), 1);
    EXPECT_TRUE(capture.messages().first().contains(QString::fromUtf8(c.diagnostic)))
        << capture.messages().first().toStdString();
    document.Set("fresh", 2);
    EXPECT_TRUE(document.Save());
    EXPECT_EQ(SettingsDocument(path, AutoSync::LoadOnly).Get<int>("fresh", 0), 2);
  }
  SettingsDocument missing(dir.filePath(QStringLiteral("none.xml")), AutoSync::Off);
  EXPECT_FALSE(missing.Load());
}

TEST(SettingsDocument, ForeignDeclarationIsReplacedByTheStandardOne)
{
  QTemporaryDir dir;
  const QString path = dir.filePath(QStringLiteral("latin1.xml"));
  ASSERT_TRUE(writeFile(path, "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>\n"
                              "<root><name class=\"string\" value=\"M\xfcller\"/></root>"));
  SettingsDocument document(path, AutoSync::LoadOnly);
  EXPECT_EQ(document.Get<QString>("name", QString()), QStringLiteral("M\u00fcller"));
  ASSERT_TRUE(document.Save());
  const QByteArray written = readFile(path);
  EXPECT_TRUE(written.startsWith("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<root>")) << written.toStdString();
  EXPECT_TRUE(written.contains("M\xc3\xbcller"));
}

TEST(SettingsDocument, ContentTextsAndHasReports)
{
  SettingsDocument document;
  EXPECT_EQ(document.GetContent(), QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<root />"));
  EXPECT_TRUE(document.SetContent(QStringLiteral("<?xml version=\"1.0\"?><!-- note --><root><v class=\"int32\" "
                                                 "value=\"4\"/></root>")));
  EXPECT_EQ(document.GetContent(), QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                                  "<root>\n\t<v class=\"int32\" value=\"4\" />\n</root>"));
  EXPECT_FALSE(document.HasReports());
  EXPECT_EQ(document.Get<double>("v", 0), 4.0);
  EXPECT_TRUE(document.HasReports());
  EXPECT_TRUE(document.SetContent(document.GetContent()));
  EXPECT_FALSE(document.HasReports()); // a new text starts a new reading
  EXPECT_FALSE(document.SetContent(QString()));
  EXPECT_EQ(document.ToString(), QStringLiteral("<root />"));

  // Long texts reach the writer in many chunks: none may be lost or decoded wrongly.
  QString wide;
  for (int i = 0; i < 20000; ++i)
    wide += QStringLiteral("a\u00e4\u20ac\U0001F600");
  document.Set("wide", wide);
  document.AppendCollectionItem("wider", wide + wide);
  Storage::SettingsStringBasedDocument copy(document.GetContent());
  EXPECT_EQ(copy.Get<QString>("wide", QString()), wide);
  EXPECT_EQ(copy.GetCollectionItem<QString>("wider", 0, QString()), wide + wide);
  EXPECT_EQ(copy.ToString(), document.ToString());
}

TEST(SettingsDocument, LargeCollectionsOfAnyNameWriteEveryItemAsItsOwn)
{
  // Large collections are written through shared item texts; changing one item must not
  // change another, and nothing but the tree may reach the text. Names that are no plain
  // XML names take the ordinary way and must come out the same.
  const char* names[] = {"items", "\xc3\xa4nderung", "a b", "1x", "x\"y", "<x>", "-n", "n.m-1"};
  QTemporaryDir folder;
  ASSERT_TRUE(folder.isValid());
  for (const char* name : names)
  {
    SCOPED_TRACE(name);
    const QString collection = QString::fromUtf8(name);
    SettingsDocument document;
    for (int round = 0; round < 2; ++round)
    {
      for (int i = 0; i < 40; ++i)
        document.AppendCollectionItem(collection, i);
      document.AppendCollectionItem(collection, 40.5);
      ASSERT_EQ(document.Count(collection), 41u);
      const std::shared_ptr<Storage::Settings> item = document.findCollectionNode(collection, "double");
      ASSERT_TRUE(item);
      item->SetClass("changed");
      item->SetVersion(2);
      document.findCollectionNode(collection, "int32")->SetClass("first");

      const QString content = document.GetContent();
      const QString prefix = QStringLiteral("\t<") + collection;
      EXPECT_TRUE(content.contains(prefix + QStringLiteral(" index=\"0\" class=\"first\" value=\"0\" />\n")));
      EXPECT_TRUE(content.contains(prefix + QStringLiteral(" index=\"39\" class=\"int32\" value=\"39\" />\n")));
      EXPECT_TRUE(content.contains(
          prefix + QStringLiteral(" index=\"40\" class=\"changed\" value=\"40.5\" version=\"2\" />\n")));
      EXPECT_EQ(content.count(QStringLiteral("class=\"int32\"")), 39);
      EXPECT_TRUE(content.endsWith(QStringLiteral("\n</root>")));
      EXPECT_EQ(content.count(QLatin1Char('\n')), 43);
      EXPECT_EQ(document.GetChildrenNames(), QList<QString>{collection});
      for (int i = 1; i < 40; ++i)
        EXPECT_EQ(document.GetCollectionItem<int>(collection, static_cast<unsigned long long>(i), -1), i);

      const QString path = folder.filePath(QStringLiteral("large.xml"));
      ASSERT_TRUE(document.SaveAs(path));
      EXPECT_EQ(QString::fromUtf8(readFile(path)).trimmed(), content);
      // A new tree starts its shared texts afresh.
      if (round == 0)
        document.SetContent(QStringLiteral("<root/>"));
      else
        document.Clear();
    }
    EXPECT_EQ(document.GetContent(), QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<root />"));
  }
}

TEST(SettingsDocument, AppendedItemsComeOutAlikeWhateverTheTreeSeesInBetween)
{
  // Items appended one after another to a large collection may be held back until the
  // tree is looked at. A document that is looked at after every append holds nothing
  // back: both must write the same text and file, and whatever is done after the
  // appends must see every item where it belongs.
  // Every printable ASCII character, once with and once without those the writer escapes.
  QString printable;
  for (char16_t c = 0x20; c <= 0x7F; ++c)
    printable += QChar(c);
  const QString plain = QString(printable).remove(QRegularExpression(QStringLiteral("[&<>\"']")));
  const QString texts[] = {QStringLiteral("plain"),
                           QStringLiteral("a&b"),
                           QStringLiteral("x\"y"),
                           QStringLiteral("x'y"),
                           QStringLiteral("a<b"),
                           QStringLiteral("a>b"),
                           QStringLiteral("line\nbreak"),
                           QStringLiteral("t\tb"),
                           QStringLiteral("\u00e9"),
                           QString(),
                           plain,
                           printable};
  // The file's part: a high item index waiting in the collection, and a CDATA text that
  // looks like a processing instruction.
  const QString start = QStringLiteral("<root><outer><inner><v index=\"75\" class=\"string\" value=\"old\"/>"
                                       "<c><![CDATA[<?pending-items-0?>]]></c></inner></outer></root>");
  const auto build = [&](SettingsDocument& document, bool look)
  {
    ASSERT_TRUE(document.SetContent(start));
    const std::shared_ptr<Storage::Settings> inner = document.GetNode("outer")->GetNode("inner");
    const auto seen = [&] { return look ? inner->Count(QStringLiteral("v")) : 0u; };
    for (int i = 0; i < 60; ++i) // Count is the next index: item 0, then 2 to 60
    {
      inner->AppendCollectionItem("v", i);
      seen();
    }
    for (int i = 0; i < 30; ++i)
    {
      inner->AppendCollectionItem("u", 0.1 * i); // another collection of the same parent
      seen();
    }
    // Back to the first: items 61 to 74 are new, then item 75, which the file had, is
    // overwritten again and again.
    for (int i = 0; i < 20; ++i)
    {
      if (i == 0)
        inner->AppendCollectionItem("v", 1e20);
      else
        inner->AppendCollectionItem("v", 0.5f);
      seen();
    }
    document.AppendCollectionItem("w", true); // a small collection of root
    inner->Set("after", 1);
    for (const QString& text : texts) // items 30 and on, last: whatever follows sees them
    {
      inner->AppendCollectionItem("u", text);
      seen();
    }
  };
  QTemporaryDir folder;
  ASSERT_TRUE(folder.isValid());
  SettingsDocument looked;
  build(looked, true);
  const QString expected = looked.GetContent();
  ASSERT_TRUE(looked.SaveAs(folder.filePath("looked.xml")));
  EXPECT_EQ(looked.GetNode("outer")->GetNode("inner")->Count("v"), 75u);
  EXPECT_TRUE(expected.contains(QStringLiteral("\n\t\t\t<v index=\"75\" class=\"float\" value=\"0.5\" />\n")));
  EXPECT_TRUE(expected.contains(QStringLiteral("<![CDATA[<?pending-items-0?>]]>")));

  // Each way of looking at the tree after appends that were held back.
  const std::function<QString(SettingsDocument&)> looks[] = {
      [](SettingsDocument& d) { return d.GetContent(); },
      [&](SettingsDocument& d)
      {
        EXPECT_TRUE(d.SaveAs(folder.filePath("held.xml")));
        EXPECT_EQ(readFile(folder.filePath("held.xml")), readFile(folder.filePath("looked.xml")));
        return d.GetContent();
      },
      [&](SettingsDocument& d)
      {
        const std::shared_ptr<Storage::Settings> inner = d.GetNode("outer")->GetNode("inner");
        EXPECT_EQ(inner->Count("v"), 75u);
        EXPECT_EQ(inner->Count("u"), 42u);
        EXPECT_EQ(inner->GetCollectionItem<double>("v", 61, 0), 1e20);
        EXPECT_EQ(inner->GetCollectionItem<QString>("u", 36, QString()), QStringLiteral("line\nbreak"));
        EXPECT_EQ(inner->GetCollectionItem<QString>("u", 40, QString()), plain);
        EXPECT_EQ(inner->GetCollectionItem<QString>("u", 41, QString()), printable);
        EXPECT_EQ(inner->GetChildrenNames(), (QList<QString>{"v", "c", "u", "after"}));
        return d.GetContent();
      },
      [](SettingsDocument& d)
      {
        const QString node = d.GetNode("outer")->ToString();
        EXPECT_TRUE(node.contains(QStringLiteral("<v index=\"60\" class=\"int32\" value=\"59\" />")));
        return d.GetContent();
      },
      [](SettingsDocument& d)
      {
        d.GetNode("outer")->GetNode("inner")->Remove("u");
        EXPECT_FALSE(d.GetContent().contains(QStringLiteral("<u ")));
        d.GetNode("outer")->GetNode("inner")->Clear();
        return d.GetContent();
      },
  };
  for (std::size_t i = 0; i < std::size(looks); ++i)
  {
    SCOPED_TRACE(i);
    SettingsDocument held;
    build(held, false);
    SettingsDocument reference;
    build(reference, true);
    EXPECT_EQ(looks[i](held), looks[i](reference));
    EXPECT_EQ(Storage::SettingsStringBasedDocument(held.GetContent()).GetContent(), held.GetContent());
  }

  // Whatever the last item's text holds, it is written as its element would be.
  for (const QString& text : texts)
  {
    SCOPED_TRACE(text.toStdString());
    SettingsDocument held, flushed;
    for (SettingsDocument* document : {&held, &flushed})
    {
      for (int i = 0; i < 30; ++i)
        document->AppendCollectionItem("n", i);
      document->AppendCollectionItem("n", text);
    }
    EXPECT_EQ(flushed.Count("n"), 31u);
    EXPECT_EQ(held.GetContent(), flushed.GetContent());
  }

  // Replacing the tree drops what was held back; appending starts afresh.
  SettingsDocument replaced;
  build(replaced, false);
  ASSERT_TRUE(replaced.SetContent(QStringLiteral("<root/>")));
  for (int i = 0; i < 30; ++i)
    replaced.AppendCollectionItem("n", i);
  EXPECT_EQ(replaced.Count("n"), 30u);
  EXPECT_FALSE(replaced.GetContent().contains(QStringLiteral("pending")));
  EXPECT_FALSE(replaced.GetContent().contains(QStringLiteral("inner")));
}
