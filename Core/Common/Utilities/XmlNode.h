// One node of a Common::XmlDocument: a non-owning handle, cheap to copy, that must not
// outlive its document. Names and values cross this interface as Latin-1.
//
//   Common::XmlNode camera = doc.createRootNode(QStringLiteral("camera"));
//   camera.setAttribute(QStringLiteral("id"), QStringLiteral("cam1"));
//   camera.appendChild(QStringLiteral("gain")).setValue(QStringLiteral("1.5"));
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Utilities/XmlAttribute.h>

#include <QString>

#include <optional>
#include <vector>

namespace pugi
{
struct xml_node_struct;
}

namespace Common
{

class CORECOMMON_EXPORT XmlNode
{
public:
  // An empty node: refers to nothing, every query answers empty.
  XmlNode() = default;

  explicit operator bool() const { return m_node != nullptr; }

  // Appends an element child. Throws RTE::InvalidArgumentError when name is empty.
  XmlNode appendChild(const QString& name);
  // Appends a deep copy of node (from this or another document). Throws
  // RTE::InvalidArgumentError when node has no name.
  XmlNode appendChild(XmlNode node);

  QString getNodeName() const;
  // In document order.
  std::vector<QString> getAllAttributeNames() const;
  // Nothing when there is no such attribute.
  std::optional<QString> getAttributeValue(const QString& name) const;
  // Sets the value of the attribute, appending it when missing. An empty name changes
  // nothing.
  void setAttribute(const QString& name, const QString& value);
  void setAttribute(const XmlAttribute& attribute);
  // Removes the attribute of that name, if any.
  void removeAttribute(const XmlAttribute& attribute);
  // The element's text; nothing when it has none (never an empty text).
  std::optional<QString> getValue() const;
  void setValue(const QString& text);

private:
  friend class XmlDocument;
  explicit XmlNode(pugi::xml_node_struct* node) : m_node(node) {}

  pugi::xml_node_struct* m_node = nullptr;
};

} // namespace Common
