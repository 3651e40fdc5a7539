// A name and a value for XmlNode::setAttribute and XmlNode::removeAttribute.
//
//   node.setAttribute(Common::XmlAttribute{QStringLiteral("unit"), QStringLiteral("mm")});
#pragma once

#include <QString>

namespace Common
{

struct XmlAttribute
{
  QString name;
  QString value;
};

} // namespace Common
