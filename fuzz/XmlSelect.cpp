// libFuzzer target: Common::XmlDocument::loadFromString and XPath selection on arbitrary
// documents and expressions.
//
// Input: the XPath expression up to the first line feed, then the document; both are
// taken as Latin-1, as the object model takes its texts.
#include <Core/Common/Utilities/XmlDocument.h>

#include <QString>

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace
{

void check(bool condition)
{
  if (!condition)
    __builtin_trap();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
  const char* bytes = reinterpret_cast<const char*>(data);
  const void* newline = std::memchr(bytes, '\n', size);
  const std::size_t xpathSize = newline ? static_cast<std::size_t>(static_cast<const char*>(newline) - bytes) : size;
  const QString xpath = QString::fromLatin1(bytes, static_cast<qsizetype>(xpathSize));
  const std::size_t xmlStart = newline ? xpathSize + 1 : size;
  const QString xml = QString::fromLatin1(bytes + xmlStart, static_cast<qsizetype>(size - xmlStart));

  const Common::XmlDocument doc = Common::XmlDocument::loadFromString(xml);
  const std::optional<QString> value = Common::XmlDocument::getValueFrom(xml, xpath);
  if (!doc.isValid())
  {
    check(!value.has_value());
    return 0;
  }
  const std::vector<Common::XmlNode> nodes = doc.selectNodeList(xpath);
  const std::optional<Common::XmlNode> first = doc.selectNode(xpath);
  check(first.has_value() == !nodes.empty());
  for (const Common::XmlNode& node : nodes)
  {
    check(static_cast<bool>(node));
    (void)node.getNodeName();
    for (const QString& name : node.getAllAttributeNames())
      check(node.getAttributeValue(name).has_value());
    const std::optional<QString> text = node.getValue();
    check(!text || !text->isEmpty());
  }
  if (first)
    check(first->getNodeName() == nodes.front().getNodeName());
  (void)doc.toString();
  return 0;
}
