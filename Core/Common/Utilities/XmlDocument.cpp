#include <Core/Common/Utilities/XmlDocument.h>

#include "UtilitiesLog_p.h"
#include "XmlNames_p.h"
#include "ZnPugi_p.h"

#include <QFileInfo>
#include <QObject>

#include <pugixml.hpp>

namespace Common
{

namespace
{

// The selected nodes in document order, or an empty set (logged) when the expression
// does not compile.
pugi::xpath_node_set select(const pugi::xml_document& document, const QString& xpath)
{
  const QByteArray expression = xpath.toLatin1();
  try
  {
    pugi::xpath_node_set nodes = document.select_nodes(expression.constData());
    nodes.sort();
    return nodes;
  }
  catch (const pugi::xpath_exception& e)
  {
    qCWarning(lcUtilities) << "XPath expression" << xpath << "not usable:" << e.what();
    return pugi::xpath_node_set();
  }
}

std::optional<QString> valueOfFirst(const pugi::xml_document& document, const QString& xpath)
{
  const pugi::xpath_node_set nodes = select(document, xpath);
  if (nodes.empty())
    return std::nullopt;
  const pugi::xpath_node& first = nodes.first();
  if (first.attribute())
    return QString::fromLatin1(first.attribute().value());
  return QString::fromLatin1(first.node().text().get());
}

// Collects the written bytes.
class ByteWriter final : public pugi::xml_writer
{
public:
  void write(const void* data, size_t size) override
  {
    bytes.append(static_cast<const char*>(data), static_cast<qsizetype>(size));
  }
  QByteArray bytes;
};

} // namespace

XmlDocument::XmlDocument() : m_document(std::make_unique<pugi::xml_document>())
{
  pugi::xml_node declaration = m_document->append_child(pugi::node_declaration);
  declaration.append_attribute("version").set_value("1.0");
  declaration.append_attribute("encoding").set_value("UTF-8");
}

XmlDocument::XmlDocument(XmlDocument&&) noexcept = default;
XmlDocument& XmlDocument::operator=(XmlDocument&&) noexcept = default;
XmlDocument::~XmlDocument() = default;

XmlDocument XmlDocument::loadFromFile(const QString& path)
{
  XmlDocument document;
  document.m_valid = static_cast<bool>(ZnPugi::loadFromFile(*document.m_document, path));
  return document;
}

XmlDocument XmlDocument::loadFromString(const QString& text)
{
  XmlDocument document;
  const QByteArray latin1 = text.toLatin1();
  document.m_valid =
      static_cast<bool>(document.m_document->load_buffer(latin1.constData(), static_cast<size_t>(latin1.size())));
  return document;
}

bool XmlDocument::isValid() const
{
  return m_valid;
}

XmlNode XmlDocument::createRootNode(const QString& name)
{
  if (name.isEmpty())
    Private::raiseEmptyName(QObject::tr("The name of the root node must not be empty"));
  return XmlNode(m_document->append_child(name.toLatin1().constData()).internal_object());
}

std::optional<XmlNode> XmlDocument::selectNode(const QString& xpath) const
{
  for (const pugi::xpath_node& selected : select(*m_document, xpath))
  {
    if (selected.node())
      return XmlNode(selected.node().internal_object());
  }
  return std::nullopt;
}

std::vector<XmlNode> XmlDocument::selectNodeList(const QString& xpath) const
{
  std::vector<XmlNode> nodes;
  for (const pugi::xpath_node& selected : select(*m_document, xpath))
  {
    if (selected.node())
      nodes.push_back(XmlNode(selected.node().internal_object()));
  }
  return nodes;
}

QString XmlDocument::toString() const
{
  ByteWriter writer;
  m_document->save(writer, "\t", pugi::format_default, pugi::encoding_utf8);
  return QString::fromLatin1(writer.bytes).trimmed();
}

std::optional<QString> XmlDocument::getValueFrom(const QFileInfo& file, const QString& xpath)
{
  if (!file.exists())
    return std::nullopt;
  pugi::xml_document document;
  if (!ZnPugi::loadFromFile(document, file.absoluteFilePath()))
    return std::nullopt;
  return valueOfFirst(document, xpath);
}

std::optional<QString> XmlDocument::getValueFrom(const QString& xmlText, const QString& xpath)
{
  const XmlDocument document = loadFromString(xmlText);
  if (!document.isValid())
    return std::nullopt;
  return valueOfFirst(*document.m_document, xpath);
}

} // namespace Common
