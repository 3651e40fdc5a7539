#include <Core/Common/Utilities/XmlNode.h>

#include "XmlNames_p.h"

#include <QObject>

#include <pugixml.hpp>

namespace Common
{

namespace
{

pugi::xml_node handle(pugi::xml_node_struct* node)
{
  return pugi::xml_node(node);
}

} // namespace

XmlNode XmlNode::appendChild(const QString& name)
{
  if (name.isEmpty())
    Private::raiseEmptyName(QObject::tr("The name of the child node must not be empty"));
  return XmlNode(handle(m_node).append_child(name.toLatin1().constData()).internal_object());
}

XmlNode XmlNode::appendChild(XmlNode node)
{
  const pugi::xml_node source = handle(node.m_node);
  if (*source.name() == '\0')
    Private::raiseEmptyName(QObject::tr("The name of the child node must not be empty"));
  return XmlNode(handle(m_node).append_copy(source).internal_object());
}

QString XmlNode::getNodeName() const
{
  return QString::fromLatin1(handle(m_node).name());
}

std::vector<QString> XmlNode::getAllAttributeNames() const
{
  std::vector<QString> names;
  for (const pugi::xml_attribute& attribute : handle(m_node).attributes())
    names.push_back(QString::fromLatin1(attribute.name()));
  return names;
}

std::optional<QString> XmlNode::getAttributeValue(const QString& name) const
{
  const pugi::xml_attribute attribute = handle(m_node).attribute(name.toLatin1().constData());
  if (!attribute)
    return std::nullopt;
  return QString::fromLatin1(attribute.value());
}

void XmlNode::setAttribute(const QString& name, const QString& value)
{
  // An attribute without a name would make the document unreadable.
  if (name.isEmpty())
    return;
  pugi::xml_node node = handle(m_node);
  const QByteArray latin1Name = name.toLatin1();
  pugi::xml_attribute attribute = node.attribute(latin1Name.constData());
  if (!attribute)
    attribute = node.append_attribute(latin1Name.constData());
  attribute.set_value(value.toLatin1().constData());
}

void XmlNode::setAttribute(const XmlAttribute& attribute)
{
  setAttribute(attribute.name, attribute.value);
}

void XmlNode::removeAttribute(const XmlAttribute& attribute)
{
  handle(m_node).remove_attribute(attribute.name.toLatin1().constData());
}

std::optional<QString> XmlNode::getValue() const
{
  const char* text = handle(m_node).text().get();
  if (*text == '\0')
    return std::nullopt;
  return QString::fromLatin1(text);
}

void XmlNode::setValue(const QString& text)
{
  handle(m_node).text().set(text.toLatin1().constData());
}

} // namespace Common
