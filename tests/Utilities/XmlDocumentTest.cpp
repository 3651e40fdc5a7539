// Common::XmlDocument, Common::XmlNode and the ZnPugi file helpers.
#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Utilities/XmlDocument.h>

#include "OperatingSystem/TestHelpers.h"
#include "TestFiles.h"
#include "Units/QStringPrinter.h"

#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using Common::XmlDocument;
using Common::XmlNode;

namespace
{

const QString cameraXml = QStringLiteral("<camera id=\"cam1\" model=\"x\">"
                                         "<lens focal=\"35\">wide</lens><lens focal=\"85\"/>"
                                         "<note/></camera>");

} // namespace

TEST(XmlDocument, SelectsNodesAndValuesByXPath)
{
  const XmlDocument doc = XmlDocument::loadFromString(cameraXml);
  ASSERT_TRUE(doc.isValid());
  const std::vector<XmlNode> lenses = doc.selectNodeList(QStringLiteral("//lens"));
  ASSERT_EQ(lenses.size(), 2u);
  EXPECT_EQ(lenses[1].getAttributeValue(QStringLiteral("focal")), QStringLiteral("85"));
  EXPECT_EQ(lenses[0].getValue(), QStringLiteral("wide"));
  EXPECT_EQ(lenses[1].getValue(), std::nullopt); // no text: nothing, not ""
  EXPECT_EQ(lenses[1].getAttributeValue(QStringLiteral("missing")), std::nullopt);

  const std::optional<XmlNode> camera = doc.selectNode(QStringLiteral("/camera"));
  ASSERT_TRUE(camera.has_value());
  EXPECT_EQ(camera->getNodeName(), QStringLiteral("camera"));
  EXPECT_EQ(camera->getAllAttributeNames(), (std::vector<QString>{QStringLiteral("id"), QStringLiteral("model")}));
  EXPECT_FALSE(doc.selectNode(QStringLiteral("//tripod")).has_value());
  EXPECT_TRUE(doc.selectNodeList(QStringLiteral("//tripod")).empty());
  // An attribute is no node; an expression that does not compile selects nothing.
  EXPECT_FALSE(doc.selectNode(QStringLiteral("/camera/@id")).has_value());
  EXPECT_TRUE(doc.selectNodeList(QStringLiteral("//lens[")).empty());

  EXPECT_EQ(XmlDocument::getValueFrom(cameraXml, QStringLiteral("/camera/lens[2]/@focal")), QStringLiteral("85"));
  EXPECT_EQ(XmlDocument::getValueFrom(cameraXml, QStringLiteral("//lens")), QStringLiteral("wide"));
  EXPECT_EQ(XmlDocument::getValueFrom(cameraXml, QStringLiteral("//note")), QString());
  EXPECT_EQ(XmlDocument::getValueFrom(cameraXml, QStringLiteral("//none")), std::nullopt);
  EXPECT_EQ(XmlDocument::getValueFrom(cameraXml, QStringLiteral("///")), std::nullopt);
  EXPECT_EQ(XmlDocument::getValueFrom(QStringLiteral("<a><b>"), QStringLiteral("//a")), std::nullopt);
}

TEST(XmlDocument, BuildsEditsAndWritesDocuments)
{
  XmlDocument doc;
  EXPECT_TRUE(doc.isValid());
  EXPECT_EQ(doc.toString(), QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>"));
  XmlNode root = doc.createRootNode(QStringLiteral("setup"));
  root.setAttribute(QStringLiteral("id"), QStringLiteral("1"));
  root.setAttribute(Common::XmlAttribute{QStringLiteral("id"), QStringLiteral("2")});
  root.setAttribute(QStringLiteral("unit"), QStringLiteral("mm"));
  root.setAttribute(QString(), QStringLiteral("ignored"));
  root.removeAttribute(Common::XmlAttribute{QStringLiteral("unit"), QString()});
  XmlNode gain = root.appendChild(QStringLiteral("gain"));
  gain.setValue(QStringLiteral("1.5"));
  EXPECT_EQ(doc.toString(), QStringLiteral("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
                                           "<setup id=\"2\">\n\t<gain>1.5</gain>\n</setup>"));

  // A deep copy from another document.
  const XmlDocument other = XmlDocument::loadFromString(cameraXml);
  root.appendChild(*other.selectNode(QStringLiteral("//lens")));
  EXPECT_EQ(doc.selectNode(QStringLiteral("/setup/lens"))->getValue(), QStringLiteral("wide"));

  EXPECT_EQ(MessageOf<RTE::InvalidArgumentError>([&] { doc.createRootNode(QString()); }),
            QStringLiteral("The name of the root node must not be empty"));
  EXPECT_EQ(MessageOf<RTE::InvalidArgumentError>([&] { root.appendChild(XmlNode()); }),
            QStringLiteral("The name of the child node must not be empty"));
  EXPECT_THROW(root.appendChild(QString()), RTE::InvalidArgumentError);

  XmlNode empty;
  EXPECT_FALSE(empty);
  EXPECT_EQ(empty.getNodeName(), QString());
  EXPECT_EQ(empty.getValue(), std::nullopt);
}

TEST(XmlDocument, KeepsLatin1AcrossTheInterface)
{
  const XmlDocument doc =
      XmlDocument::loadFromString(QStringLiteral("<caf\u00e9 a=\"\u00e9\">\u00e9t\u00e9</caf\u00e9>"));
  ASSERT_TRUE(doc.isValid());
  const std::optional<XmlNode> root = doc.selectNode(QStringLiteral("/caf\u00e9"));
  ASSERT_TRUE(root.has_value());
  EXPECT_EQ(root->getValue(), QStringLiteral("\u00e9t\u00e9"));
  EXPECT_EQ(root->getAttributeValue(QStringLiteral("a")), QStringLiteral("\u00e9"));
  // One byte per character inside: the text written out is the Latin-1 byte, read back
  // as the same character.
  EXPECT_TRUE(doc.toString().contains(QStringLiteral("<caf\u00e9 a=\"\u00e9\">")));
}

TEST(XmlDocument, LoadsFilesByTheirByteOrderMark)
{
  QTemporaryDir dir;
  const QString path = dir.filePath(QStringLiteral("camera.xml"));
  // UTF-8 with a byte-order mark: decoded, held as UTF-8 and so read back byte by byte.
  ASSERT_TRUE(writeFile(path, "\xEF\xBB\xBF<camera id=\"c\xC3\xA9\"><lens>35</lens></camera>"));
  EXPECT_TRUE(XmlDocument::loadFromFile(path).isValid());
  EXPECT_EQ(XmlDocument::getValueFrom(QFileInfo(path), QStringLiteral("/camera/@id")), QStringLiteral("c\u00c3\u00a9"));
  EXPECT_EQ(XmlDocument::getValueFrom(QFileInfo(path), QStringLiteral("//lens")), QStringLiteral("35"));

  // UTF-16 with its mark: re-encoded before parsing.
  QByteArray utf16("\xFF\xFE");
  const QString text = QStringLiteral("<camera id=\"u16\"/>");
  utf16.append(reinterpret_cast<const char*>(text.utf16()), text.size() * 2);
  ASSERT_TRUE(writeFile(path, utf16));
  EXPECT_EQ(XmlDocument::getValueFrom(QFileInfo(path), QStringLiteral("/camera/@id")), QStringLiteral("u16"));

  const QString missing = dir.filePath(QStringLiteral("missing.xml"));
  EXPECT_FALSE(XmlDocument::loadFromFile(missing).isValid());
  EXPECT_FALSE(XmlDocument::loadFromFile(dir.path()).isValid());
  EXPECT_EQ(XmlDocument::getValueFrom(QFileInfo(missing), QStringLiteral("/a")), std::nullopt);
  ASSERT_TRUE(writeFile(path, "<camera>"));
  EXPECT_FALSE(XmlDocument::loadFromFile(path).isValid());
  EXPECT_EQ(XmlDocument::getValueFrom(QFileInfo(path), QStringLiteral("/camera")), std::nullopt);
}
