#include <Core/Common/Storage/Settings.h>
#include <Core/Common/Storage/SettingsStringBasedDocument.h>
#include <Core/Common/Storage/StorageExceptions.h>

#include "LogCapture.h"
#include "OperatingSystem/TestHelpers.h"
#include "StorageTestHelpers.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

using Storage::Settings;
using Storage::SettingsStringBasedDocument;

namespace
{

// The one child element line of a root that holds one leaf.
QString onlyChildLine(const Settings& settings)
{
  const QStringList lines = settings.ToString().split(QLatin1Char('\n'));
  return lines.size() == 3 ? lines[1].trimmed() : settings.ToString();
}

struct WriteCase
{
  const char* what;
  std::function<void(Settings&)> write;
  const char* line;
};

} // namespace

TEST(Settings, SetWritesTypeNameAndCLocaleText)
{
  const WriteCase cases[] = {
      {"string", [](Settings& s) { s.Set("v", QStringLiteral("a \"q\" & <b>")); },
       R"(<v class="string" value="a &quot;q&quot; &amp; &lt;b>" />)"},
      {"literal is text", [](Settings& s) { s.Set("v", "text"); }, R"(<v class="string" value="text" />)"},
      {"int8", [](Settings& s) { s.Set("v", static_cast<signed char>(-128)); }, R"(<v class="int8" value="-128" />)"},
      {"char as its code", [](Settings& s) { s.Set("v", 'A'); }, R"(<v class="char" value="65" />)"},
      {"char above 127", [](Settings& s) { s.Set("v", static_cast<char>(-1)); }, R"(<v class="char" value="255" />)"},
      {"uint8", [](Settings& s) { s.Set("v", static_cast<unsigned char>(255)); }, R"(<v class="uint8" value="255" />)"},
      {"int16", [](Settings& s) { s.Set("v", static_cast<short>(-32768)); }, R"(<v class="int16" value="-32768" />)"},
      {"uint16", [](Settings& s) { s.Set("v", static_cast<unsigned short>(65535)); },
       R"(<v class="uint16" value="65535" />)"},
      {"int32", [](Settings& s) { s.Set("v", -2147483647 - 1); }, R"(<v class="int32" value="-2147483648" />)"},
      {"uint32_t spelling", [](Settings& s) { s.Set("v", 4294967295u); },
       R"(<v class="uint32_t" value="4294967295" />)"},
      {"int64", [](Settings& s) { s.Set("v", std::numeric_limits<long long>::min()); },
       R"(<v class="int64" value="-9223372036854775808" />)"},
      {"uint64", [](Settings& s) { s.Set("v", std::numeric_limits<unsigned long long>::max()); },
       R"(<v class="uint64" value="18446744073709551615" />)"},
      {"float 10 digits from double", [](Settings& s) { s.Set("v", 0.1f); },
       R"(<v class="float" value="0.1000000015" />)"},
      {"float whole", [](Settings& s) { s.Set("v", 3.0f); }, R"(<v class="float" value="3" />)"},
      {"double 15 digits", [](Settings& s) { s.Set("v", 0.1); }, R"(<v class="double" value="0.1" />)"},
      {"double third", [](Settings& s) { s.Set("v", 1.0 / 3.0); }, R"(<v class="double" value="0.333333333333333" />)"},
      {"double exponent", [](Settings& s) { s.Set("v", 1e20); }, R"(<v class="double" value="1e+20" />)"},
      {"double small", [](Settings& s) { s.Set("v", -2.5e-7); }, R"(<v class="double" value="-2.5e-07" />)"},
      {"bool true", [](Settings& s) { s.Set("v", true); }, R"(<v class="bool" value="true" />)"},
      {"bool false", [](Settings& s) { s.Set("v", false); }, R"(<v class="bool" value="false" />)"},
  };
  for (const WriteCase& c : cases)
  {
    SCOPED_TRACE(c.what);
    SettingsStringBasedDocument document;
    c.write(document);
    EXPECT_EQ(onlyChildLine(document), QString::fromUtf8(c.line));
  }
}

TEST(Settings, AppendCollectionItemNumbersItemsWithIndexFirst)
{
  SettingsStringBasedDocument document;
  document.AppendCollectionItem("items", 5);
  document.AppendCollectionItem("items", 7u);
  document.AppendCollectionItem("items", QStringLiteral("x"));
  EXPECT_EQ(document.ToString(), QStringLiteral("<root>\n"
                                                " <items index=\"0\" class=\"int32\" value=\"5\" />\n"
                                                " <items index=\"1\" class=\"uint32_t\" value=\"7\" />\n"
                                                " <items index=\"2\" class=\"string\" value=\"x\" />\n"
                                                "</root>"));
  EXPECT_TRUE(document.IsCollection("items"));
  EXPECT_EQ(document.Count("items"), 3u);
  EXPECT_EQ(document.GetCollectionItem<int>("items", 1, -1), 7); // converted despite the class, and reported
  EXPECT_TRUE(document.HasReports());
  EXPECT_EQ(document.GetCollectionItem<int>("items", 3, -1), -1);
  EXPECT_EQ(document.GetClass("items", 2), QStringLiteral("string"));
  EXPECT_EQ(document.GetClass("items", 3), QString());
  EXPECT_EQ(document.GetClass("items"), QString()); // no plain child of that name
}

TEST(Settings, GetReadsBackEveryType)
{
  SettingsStringBasedDocument document;
  document.Set("s", QStringLiteral("line1\nline2\ttab"));
  document.Set("i8", static_cast<signed char>(-100));
  document.Set("c", static_cast<char>(200));
  document.Set("u8", static_cast<unsigned char>(200));
  document.Set("i16", static_cast<short>(-30000));
  document.Set("u16", static_cast<unsigned short>(60000));
  document.Set("i32", -123456);
  document.Set("u32", 4000000000u);
  document.Set("i64", -1234567890123LL);
  document.Set("u64", 12345678901234567890ULL);
  document.Set("f", 0.1f);
  document.Set("d", 0.1);
  document.Set("b", true);

  EXPECT_EQ(document.Get<QString>("s", QString()), QStringLiteral("line1\nline2\ttab"));
  EXPECT_EQ(document.Get<signed char>("i8", 0), -100);
  EXPECT_EQ(document.Get<char>("c", 0), static_cast<char>(200));
  EXPECT_EQ(document.Get<unsigned char>("u8", 0), 200);
  EXPECT_EQ(document.Get<short>("i16", 0), -30000);
  EXPECT_EQ(document.Get<unsigned short>("u16", 0), 60000);
  EXPECT_EQ(document.Get<int>("i32", 0), -123456);
  EXPECT_EQ(document.Get<unsigned int>("u32", 0), 4000000000u);
  EXPECT_EQ(document.Get<long long>("i64", 0), -1234567890123LL);
  EXPECT_EQ(document.Get<unsigned long long>("u64", 0), 12345678901234567890ULL);
  EXPECT_EQ(document.Get<float>("f", 0), 0.1f);
  EXPECT_EQ(document.Get<double>("d", 0), 0.1);
  EXPECT_TRUE(document.Get<bool>("b", false));
  EXPECT_FALSE(document.HasReports());
  EXPECT_EQ(document.Get<int>("missing", 42), 42);
  EXPECT_FALSE(document.HasReports());
}

TEST(Settings, ParsesTextsLenientlyInCLocale)
{
  auto document = parseSettings(R"(<root>
    <t class="bool" value="True"/>
    <one class="bool" value="1"/>
    <junk class="int32" value="12abc"/>
    <big class="int8" value="200"/>
    <neg class="uint32_t" value="-1"/>
    <c class="char" value="300"/>
    <comma class="double" value="1,5"/>
    <exp class="double" value="1e+20"/>
    <fl class="float" value="1e+50"/>
    <nan class="double" value="nan"/>
    <spaces class="int32" value=" 17 "/>
    <empty class="int64"/>
  </root>)");
  EXPECT_FALSE(document->Get<bool>("t", true));
  EXPECT_FALSE(document->Get<bool>("one", true));
  EXPECT_EQ(document->Get<int>("junk", 9), 0);
  EXPECT_EQ(document->Get<signed char>("big", 9), 0);
  EXPECT_EQ(document->Get<unsigned int>("neg", 9), 0u);
  EXPECT_EQ(document->Get<char>("c", 0), static_cast<char>(44));
  EXPECT_EQ(document->Get<double>("comma", 9), 0.0);
  EXPECT_EQ(document->Get<double>("exp", 0), 1e20);
  EXPECT_EQ(document->Get<float>("fl", 9), 0.0f);
  EXPECT_TRUE(std::isnan(document->Get<double>("nan", 0)));
  EXPECT_EQ(document->Get<int>("spaces", 0), 17);
  EXPECT_EQ(document->Get<long long>("empty", 9), 0);
  EXPECT_FALSE(document->HasReports());
}

TEST(Settings, ClassMismatchIsReportedWithPathButStillConverted)
{
  auto document = parseSettings(R"(<root><center class="point2D"><X class="string" value="10"/></center></root>)");
  LogCapture capture("Core.Serialization");
  EXPECT_FALSE(document->HasReports());
  EXPECT_EQ(document->GetNode("center")->Get<int>("X", 0), 10);
  EXPECT_TRUE(document->HasReports());
  ASSERT_EQ(capture.messages().size(), 1);
  EXPECT_EQ(
      capture.messages().first(),
      QStringLiteral("Path: root/center/X - Mismatching class - Expected class: \"int32\", Actual class: \"string\""));
}

TEST(Settings, PlainLookupAndSetNeverTouchACollectionItem)
{
  SettingsStringBasedDocument collection;
  collection.AppendCollectionItem("a", 1);
  collection.AppendCollectionItem("a", 2);
  const QString before = collection.ToString();
  collection.Set("a", 5);
  collection.Set("a", QStringLiteral("text"));
  EXPECT_EQ(collection.ToString(), before);

  auto document = parseSettings(R"(<root><a index="0" class="int32" value="1"/><a class="int32" value="2"/></root>)");
  EXPECT_TRUE(document->Contains("a"));
  EXPECT_THROW(document->GetNode("a"), Storage::NotExistingSetting);
  EXPECT_EQ(document->GetClass("a"), QString());
  EXPECT_THROW(document->Get<int>("a", 0), Storage::NotExistingSetting);
  EXPECT_EQ(document->GetCollectionItem<int>("a", 0, 0), 1);

  // Appending beside a plain element: index 0, and the plain lookup still finds the plain one.
  SettingsStringBasedDocument mixed;
  mixed.Set("a", 9);
  mixed.AppendCollectionItem("a", 1);
  EXPECT_EQ(mixed.Count("a"), 2u);
  EXPECT_TRUE(mixed.IsCollection("a"));
  EXPECT_EQ(mixed.Get<int>("a", 0), 9);
  EXPECT_EQ(mixed.GetCollectionItem<int>("a", 0, 0), 1);
  EXPECT_FALSE(mixed.AppendCollectionNode("a"));
}

TEST(Settings, CollectionLookupMatchesTheIndexTextExactly)
{
  auto document = parseSettings(R"(<root>
    <a index="01" class="int32" value="1"/>
    <a index="1" class="int32" value="2"/>
    <a index="1" class="int32" value="3"/>
    <a index="0" class="int32" value="4"/>
  </root>)");
  EXPECT_TRUE(document->IsCollection("a"));
  EXPECT_EQ(document->GetCollectionItem<int>("a", 1, 0), 2); // first exact match wins
  EXPECT_EQ(document->GetCollectionItem<int>("a", 0, 0), 4);
  document->AppendCollectionItem("a", 5); // next index is Count
  EXPECT_EQ(document->GetCollectionItem<int>("a", 4, 0), 5);
  document->Set("b", 1);
  EXPECT_FALSE(document->IsCollection("b"));
}

TEST(Settings, CreateNodeReplacesThePlainNodeButKeepsACollection)
{
  SettingsStringBasedDocument document;
  document.CreateNode("n")->Set("first", 1);
  document.CreateNode("n")->Set("second", 2);
  EXPECT_EQ(document.Count("n"), 1u);
  EXPECT_FALSE(document.GetNode("n")->Contains("first"));
  EXPECT_EQ(document.GetNode("n")->Get<int>("second", 0), 2);

  document.AppendCollectionNode("c")->SetClass("item");
  document.CreateNode("c")->SetClass("plain");
  // The first "c" is a collection item, so the plain lookup fails and nothing is removed.
  document.CreateNode("c")->SetClass("plain2");
  EXPECT_EQ(document.Count("c"), 3u);
  EXPECT_TRUE(document.IsCollection("c"));
  EXPECT_EQ(document.GetClass("c", 0), QStringLiteral("item"));
  EXPECT_EQ(document.GetChildrenNames(), (QList<QString>{QStringLiteral("n"), QStringLiteral("c")}));
}

TEST(Settings, NodesCarryClassAndVersion)
{
  SettingsStringBasedDocument document;
  auto node = document.CreateNode("camera");
  EXPECT_EQ(node->GetVersion(), 0u);
  EXPECT_EQ(node->GetClass(), QString());
  node->SetClass("Camera");
  node->SetVersion(3);
  node->SetVersion(4);
  EXPECT_TRUE(node->IsClass("Camera"));
  EXPECT_FALSE(node->IsClass("camera"));
  EXPECT_EQ(document.GetClass("camera"), QStringLiteral("Camera"));
  EXPECT_EQ(document.ToString(), QStringLiteral("<root>\n <camera class=\"Camera\" version=\"4\" />\n</root>"));
}

TEST(Settings, CollectionNodesAndFindByClass)
{
  SettingsStringBasedDocument document;
  for (const char* cls : {"a", "b", "b"})
    document.AppendCollectionNode("items")->SetClass(cls);
  auto found = document.findCollectionNode("items", "b");
  ASSERT_TRUE(found);
  found->Set("marker", 1);
  EXPECT_TRUE(document.GetCollectionNode("items", 1)->Contains("marker"));
  EXPECT_FALSE(document.GetCollectionNode("items", 2)->Contains("marker"));
  EXPECT_FALSE(document.findCollectionNode("items", "c"));
  EXPECT_FALSE(document.findCollectionNode("none", "a"));
}

TEST(Settings, RemoveAndClear)
{
  SettingsStringBasedDocument document;
  document.Set("a", 1);
  document.AppendCollectionItem("b", 1);
  document.AppendCollectionItem("b", 2);
  document.Set("c", 3);
  document.Remove("b");
  EXPECT_EQ(document.GetChildrenNames(), (QList<QString>{QStringLiteral("a"), QStringLiteral("c")}));
  document.Clear();
  EXPECT_TRUE(document.GetChildrenNames().isEmpty());
  EXPECT_EQ(document.ToString(), QStringLiteral("<root />"));
}

TEST(Settings, MissingNodesThrowNotExistingOrInvalidName)
{
  SettingsStringBasedDocument document;
  const auto plain = Caught<Storage::NotExistingSetting>([&] { document.GetNode("gain"); });
  ASSERT_TRUE(plain);
  EXPECT_EQ(plain->message(), QStringLiteral("Not existing setting error. (Setting name: 'gain')"));
  EXPECT_FALSE(plain->IsCollection());
  EXPECT_EQ(plain->sourceFile(), QStringLiteral("Core/Common/SettingsDomElem"));
  EXPECT_EQ(plain->sourceLine(), 141u);
  const auto item = Caught<Storage::NotExistingSetting>([&] { document.GetCollectionNode("gain", 3); });
  ASSERT_TRUE(item);
  EXPECT_TRUE(item->IsCollection());
  EXPECT_EQ(item->GetCollectionIndex(), 3u);
  const auto name = Caught<Storage::InvalidSettingsName>([&] { document.GetNode("9lives"); });
  ASSERT_TRUE(name);
  EXPECT_EQ(name->sourceFile(), QStringLiteral("Core/Common/Settings"));
  EXPECT_THROW(document.GetCollectionNode("xmlThing", 0), Storage::InvalidSettingsName);
  EXPECT_EQ(document.GetClass("missing"), QString());
}

TEST(Settings, ValidNames)
{
  const struct
  {
    const char* name;
    bool valid;
  } cases[] = {{"", false},   {"a", true},     {"Gain", true},      {"a_1", true},      {"_a", false},
               {"1a", false}, {"a-b", false},  {"a b", false},      {"XmlFile", false}, {"xml", false},
               {"xm", true},  {"myXml", true}, {"\xc3\xa4", false}, {"Z9_", true}};
  for (const auto& c : cases)
  {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(Storage::IsValidSettingsName(QString::fromUtf8(c.name)), c.valid);
  }
}

TEST(Settings, LargeCollectionsKeepTheLookupRules)
{
  // Enough children for the index tables, with the awkward cases among them.
  QString xml = QStringLiteral("<root>");
  xml += QStringLiteral("<a index=\"1\" class=\"int32\" value=\"-1\"/>"); // item 1 before item 0
  xml += QStringLiteral("<p class=\"int32\" value=\"-2\"/>");
  for (int i = 0; i < 100; ++i)
    xml += QStringLiteral("<a index=\"%1\" class=\"int32\" value=\"%1\"/>").arg(i);
  xml += QStringLiteral("<a index=\"007\" class=\"int32\" value=\"-7\"/>");
  xml += QStringLiteral("<a index=\"1000000\" class=\"int32\" value=\"-3\"/>");
  xml += QStringLiteral("<p index=\"0\" class=\"int32\" value=\"-4\"/>");
  xml += QStringLiteral("</root>");
  SettingsStringBasedDocument document(xml);

  EXPECT_EQ(document.Count("a"), 103u);
  EXPECT_EQ(document.GetCollectionItem<int>("a", 1, 0), -1);
  EXPECT_EQ(document.GetCollectionItem<int>("a", 7, 0), 7);
  EXPECT_EQ(document.GetCollectionItem<int>("a", 1000000, 0), -3);
  EXPECT_EQ(document.GetCollectionItem<int>("a", 100, 99), 99);
  EXPECT_EQ(document.Get<int>("p", 0), -2);
  EXPECT_TRUE(document.IsCollection("p"));

  document.AppendCollectionItem("a", 103);
  EXPECT_EQ(document.GetCollectionItem<int>("a", 103, 0), 103);
  for (int i = 0; i < 30; ++i)
    document.AppendCollectionNode("n")->Set("v", i);
  EXPECT_EQ(document.GetCollectionNode("n", 29)->Get<int>("v", 0), 29);

  document.Remove("a");
  EXPECT_EQ(document.Count("a"), 0u);
  EXPECT_FALSE(document.IsCollection("a"));
  document.AppendCollectionItem("a", 5);
  EXPECT_EQ(document.GetCollectionItem<int>("a", 0, 0), 5);
  document.Remove("n");
  for (int i = 0; i < 30; ++i)
    document.AppendCollectionNode("n")->Set("w", i);
  EXPECT_FALSE(document.GetCollectionNode("n", 0)->Contains("v"));
  EXPECT_EQ(document.GetCollectionNode("n", 17)->Get<int>("w", 0), 17);
  document.Clear();
  EXPECT_EQ(document.Count("n"), 0u);
  document.Set("p", 1);
  EXPECT_EQ(document.Get<int>("p", 0), 1);
}

TEST(Settings, WritesFollowTheLookupRulesInSmallAndLargeNodes)
{
  // The same awkward children, once alone and once among enough others for the index
  // tables: appending takes Count as the index and overwrites an item that already has
  // it; Set passes a collection by and appends beside an item that is not item 0.
  const char* awkward = "<a index=\"0\" class=\"int32\" value=\"0\"/>"
                        "<a index=\"2\" class=\"int32\" value=\"2\" keep=\"k\"><sub/></a>"
                        "<q index=\"1\" class=\"int32\" value=\"1\"/>"
                        "<p class=\"string\" value=\"old\" keep=\"k\"/>";
  for (const int fillers : {0, 40})
  {
    SCOPED_TRACE(fillers);
    QString xml = QStringLiteral("<root>");
    for (int i = 0; i < fillers; ++i)
      xml += QStringLiteral("<f%1/>").arg(i);
    xml += QString::fromUtf8(awkward) + QStringLiteral("</root>");
    SettingsStringBasedDocument document(xml);

    document.AppendCollectionItem("a", 2.5);
    EXPECT_EQ(document.Count("a"), 2u);
    EXPECT_EQ(document.GetCollectionItem<double>("a", 2, 0), 2.5);
    EXPECT_TRUE(document.ToString().contains(
        QStringLiteral("<a index=\"2\" class=\"double\" value=\"2.5\" keep=\"k\">\n  <sub />\n </a>")));
    document.AppendCollectionItem("a", 3); // still two items: item 2 again
    EXPECT_EQ(document.GetCollectionItem<int>("a", 2, 0), 3);
    EXPECT_EQ(document.Count("a"), 2u);

    document.Set("a", 9); // a collection: left alone
    EXPECT_EQ(document.Count("a"), 2u);
    EXPECT_EQ(document.GetCollectionItem<int>("a", 0, -1), 0);
    document.Set("q", 5); // q is no collection and its first element an item: a new plain leaf
    EXPECT_EQ(document.Count("q"), 2u);
    EXPECT_TRUE(document.ToString().contains(QStringLiteral("<q class=\"int32\" value=\"5\" />")));
    document.AppendCollectionItem("q", 6); // no item 0 yet: item 0, appended
    EXPECT_EQ(document.GetCollectionItem<int>("q", 0, 0), 6);
    EXPECT_EQ(document.GetCollectionItem<int>("q", 1, 0), 1);
    document.Set("p", QStringLiteral("new \u00e9"));
    EXPECT_TRUE(document.ToString().contains(QStringLiteral("<p class=\"string\" value=\"new \u00e9\" keep=\"k\" />")));
    document.Set("p", true);
    EXPECT_EQ(document.GetClass("p"), QStringLiteral("bool"));
    EXPECT_TRUE(document.Get<bool>("p", false));
  }
}
