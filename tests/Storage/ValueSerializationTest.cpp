#include <Core/Common/Storage/ValueSerialization.h>

#include "StorageTestHelpers.h"

#include <Zn/Utils/LinearScale.h>

#include <QByteArray>
#include <QDateTime>
#include <QFileInfo>
#include <QLine>
#include <QRect>
#include <QSize>
#include <QStringList>
#include <QUuid>
#include <QVariant>

#include <gtest/gtest.h>

#include <vector>

using Storage::DeserializeFrom;
using Storage::SerializeTo;
using Storage::SettingsStringBasedDocument;

namespace
{

// Writes value under "v", goes through the document text, and reads it back.
template <typename T>
T roundTrip(const T& value, QString* xml = nullptr)
{
  SettingsStringBasedDocument written;
  SerializeTo(*written.CreateNode("v"), value);
  SettingsStringBasedDocument read(written.GetContent());
  if (xml)
    *xml = read.GetNode("v")->ToString();
  T result{};
  DeserializeFrom(*read.GetNode("v"), result);
  EXPECT_FALSE(read.HasReports());
  return result;
}

} // namespace

TEST(ValueSerialization, EveryTypeRoundTrips)
{
  const QByteArray bytes("\x00\x01\xff binary", 10);
  EXPECT_EQ(roundTrip(bytes), bytes);
  EXPECT_EQ(roundTrip(QChar(0x00b5)), QChar(0x00b5));
  const QDateTime now = QDateTime::fromMSecsSinceEpoch(1763700000123LL, Qt::UTC);
  EXPECT_EQ(roundTrip(now), now);
  const QDateTime old(QDate(1960, 5, 17), QTime(8, 30, 1, 250), Qt::UTC);
  EXPECT_EQ(roundTrip(old), old); // negative milliseconds wrap through uint64 and back
  EXPECT_EQ(roundTrip(QFileInfo(QStringLiteral("/data/run 1/a.xml"))).absoluteFilePath(),
            QStringLiteral("/data/run 1/a.xml"));
  EXPECT_EQ(roundTrip(QLine(1, -2, 3, 4)), QLine(1, -2, 3, 4));
  EXPECT_EQ(roundTrip(QLineF(0.5, -2.25, 1e-3, 4e10)), QLineF(0.5, -2.25, 1e-3, 4e10));
  EXPECT_EQ(roundTrip(QPoint(-7, 9)), QPoint(-7, 9));
  EXPECT_EQ(roundTrip(QPointF(0.1, -1e20)), QPointF(0.1, -1e20));
  EXPECT_EQ(roundTrip(QRect(1, 2, 30, 40)), QRect(1, 2, 30, 40));
  EXPECT_EQ(roundTrip(QRectF(1.5, 2, 30.25, 40)), QRectF(1.5, 2, 30.25, 40));
  EXPECT_EQ(roundTrip(QSize(640, 480)), QSize(640, 480));
  EXPECT_EQ(roundTrip(QSizeF(6.4, 4.8)), QSizeF(6.4, 4.8));
  EXPECT_EQ(roundTrip(QStringLiteral("two\nlines")), QStringLiteral("two\nlines"));
  const QUuid id = QUuid::fromString(QStringLiteral("{67c8770b-44f1-410a-ab9a-f9b5446f13ee}"));
  EXPECT_EQ(roundTrip(id), id);
  const Zn::LinearScale scale(0.001, -5.0, QStringLiteral("m"), QStringLiteral("mm to m"));
  EXPECT_EQ(roundTrip(scale), scale);
  for (const QVariant& variant : {QVariant(5), QVariant(QStringLiteral("text")), QVariant(2.5),
                                  QVariant(QStringList{QStringLiteral("a"), QStringLiteral("b")}),
                                  QVariant(QByteArray("raw")), QVariant(QPointF(1, 2)), QVariant()})
  {
    SCOPED_TRACE(variant.typeName() ? variant.typeName() : "invalid");
    EXPECT_EQ(roundTrip(variant), variant);
  }
}

TEST(ValueSerialization, WritesTheDocumentedForm)
{
  QString xml;
  roundTrip(QPointF(1.5, 2), &xml);
  EXPECT_EQ(xml, QStringLiteral("<v class=\"point2DF\" version=\"1\">\n"
                                " <x class=\"double\" value=\"1.5\" />\n"
                                " <y class=\"double\" value=\"2\" />\n</v>"));
  EXPECT_EQ(roundTrip(QSize(), &xml), QSize(-1, -1));
  EXPECT_EQ(xml, QStringLiteral("<v class=\"size\">\n"
                                " <Width class=\"uint32_t\" value=\"4294967295\" />\n"
                                " <Height class=\"uint32_t\" value=\"4294967295\" />\n</v>"));
  roundTrip(QRect(1, 2, 3, 4), &xml);
  EXPECT_EQ(xml, QStringLiteral("<v class=\"rect\">\n <X class=\"int32\" value=\"1\" />\n"
                                " <Y class=\"int32\" value=\"2\" />\n <W class=\"int32\" value=\"3\" />\n"
                                " <H class=\"int32\" value=\"4\" />\n</v>"));
  roundTrip(QLine(1, 2, 3, 4), &xml);
  EXPECT_TRUE(xml.startsWith(QStringLiteral("<v class=\"line\" version=\"1\">\n <Point1 class=\"point2D\">\n")));
  roundTrip(QVariant(5), &xml); // type 2, not null, 5: QDataStream version 17
  EXPECT_EQ(xml, QStringLiteral("<v class=\"variant\" version=\"1\">\n <variant class=\"bytearray\">\n"
                                "  <ContentString class=\"string\" value=\"AAAAAgAAAAAF\" />\n </variant>\n</v>"));
  roundTrip(QUuid::fromString(QStringLiteral("{67c8770b-44f1-410a-ab9a-f9b5446f13ee}")), &xml);
  EXPECT_TRUE(xml.contains(QStringLiteral("value=\"{67c8770b-44f1-410a-ab9a-f9b5446f13ee}\"")));
  roundTrip(Zn::LinearScale(), &xml);
  EXPECT_EQ(
      xml, QStringLiteral("<v class=\"LinearScale\" version=\"1\">\n"
                          " <Offset class=\"double\" value=\"0\" />\n <Factor class=\"double\" value=\"1\" />\n"
                          " <Unit class=\"string\" value=\"\" />\n <Description class=\"string\" value=\"\" />\n</v>"));
}

TEST(ValueSerialization, WrongClassesVersionsMissingLeavesAndCorruptVariants)
{
  auto document = parseSettings(R"(<root>
    <upper class="point2DF" version="1"><X class="double" value="3"/><Y class="double" value="4"/></upper>
    <future class="datetime" version="2"><msSinceEpoch class="uint64" value="1000"/></future>
    <other class="point2D"><X class="int32" value="3"/></other>
    <scale class="LinearScale" version="1"><Offset class="double" value="2"/></scale>
    <partial class="rect"><W class="int32" value="5"/></partial>
    <variant class="variant" version="1"><variant class="bytearray"><ContentString class="string" value="AAAA"/></variant></variant>
    <emptyVariant class="variant" version="1"/>
  </root>)");
  QPointF point(9, 9);
  DeserializeFrom(*document->GetNode("upper"), point);
  EXPECT_EQ(point, QPointF(0, 0)); // only "x" and "y" are known
  QPointF fromOther(9, 9);
  DeserializeFrom(*document->GetNode("other"), fromOther); // another class: default, not reported
  EXPECT_EQ(fromOther, QPointF());
  QRect partial;
  DeserializeFrom(*document->GetNode("partial"), partial);
  EXPECT_EQ(partial, QRect(0, 0, 5, 0));
  Zn::LinearScale scale(3, 3, QStringLiteral("x"), QStringLiteral("y"));
  DeserializeFrom(*document->GetNode("scale"), scale);
  EXPECT_EQ(scale, Zn::LinearScale(1.0, 2.0, QString(), QString()));
  EXPECT_FALSE(document->HasReports());

  QDateTime date = QDateTime::currentDateTime();
  DeserializeFrom(*document->GetNode("future"), date);
  EXPECT_FALSE(date.isValid());
  EXPECT_TRUE(document->HasReports());

  // Corrupt or missing variant data reads as an invalid variant.
  for (const char* name : {"variant", "emptyVariant"})
  {
    QVariant value(7);
    DeserializeFrom(*document->GetNode(name), value);
    EXPECT_FALSE(value.isValid()) << name;
  }
}

TEST(ValueSerialization, ListsOfTexts)
{
  const QStringList texts{QStringLiteral("a"), QString(), QStringLiteral("two\nlines")};
  EXPECT_EQ(roundTrip(texts), texts);
  EXPECT_EQ(roundTrip(QStringList()), QStringList());

  SettingsStringBasedDocument document;
  auto node = document.CreateNode("list");
  SerializeTo(*node, QStringList{QStringLiteral("old1"), QStringLiteral("old2"), QStringLiteral("old3")});
  SerializeTo(*node, std::vector<QString>{QStringLiteral("new")});
  std::vector<QString> read{QStringLiteral("stale")};
  DeserializeFrom(*node, read);
  EXPECT_EQ(read, std::vector<QString>{QStringLiteral("new")});
  EXPECT_EQ(node->ToString(), QStringLiteral("<list class=\"list\" version=\"1\">\n"
                                             " <item index=\"0\" class=\"string\" value=\"new\" />\n</list>"));
}
