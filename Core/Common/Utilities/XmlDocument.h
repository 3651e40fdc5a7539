// A free-form XML document (not a settings tree) with XPath selection. Names, values,
// texts and XPath expressions cross this interface as Latin-1: loadFromString keeps "é"
// as the single byte 0xE9 inside the document.
//
//   const Common::XmlDocument doc = Common::XmlDocument::loadFromFile(path);
//   if (doc.isValid())
//     for (const Common::XmlNode& lens : doc.selectNodeList(QStringLiteral("//lens[@focal>50]"))) ...
//   Common::XmlDocument::getValueFrom(QFileInfo(path), QStringLiteral("/camera/@id"));
//
// An XPath expression that does not compile selects nothing (and is logged as a warning
// under "Core.Utilities").
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Utilities/XmlNode.h>

#include <QString>

#include <memory>
#include <optional>
#include <vector>

class QFileInfo;

namespace pugi
{
class xml_document;
}

namespace Common
{

class CORECOMMON_EXPORT XmlDocument
{
public:
  // An empty, valid document holding only the declaration <?xml version="1.0"
  // encoding="UTF-8"?>.
  XmlDocument();
  XmlDocument(XmlDocument&&) noexcept;
  XmlDocument& operator=(XmlDocument&&) noexcept;
  XmlDocument(const XmlDocument&) = delete;
  XmlDocument& operator=(const XmlDocument&) = delete;
  ~XmlDocument();

  // The file's document (decoded by its byte-order mark, else as UTF-8, and held as
  // UTF-8); isValid is false when it cannot be opened or does not parse.
  static XmlDocument loadFromFile(const QString& path);
  // The document of the Latin-1 form of text; isValid is false when it does not parse.
  static XmlDocument loadFromString(const QString& text);

  // Whether the last load parsed.
  bool isValid() const;

  // Appends an element to the document. Throws RTE::InvalidArgumentError when name is
  // empty.
  XmlNode createRootNode(const QString& name);

  // The first node (in document order) the expression selects; nothing when it selects
  // none or only attributes.
  std::optional<XmlNode> selectNode(const QString& xpath) const;
  // Every selected node in document order (attributes left out).
  std::vector<XmlNode> selectNodeList(const QString& xpath) const;

  // The document written with tab indentation, trimmed.
  QString toString() const;

  // The first node xpath selects in the file: an attribute's value, or an element's text.
  // Nothing when the file does not exist or parse, or nothing is selected.
  static std::optional<QString> getValueFrom(const QFileInfo& file, const QString& xpath);
  // The same on an XML text.
  static std::optional<QString> getValueFrom(const QString& xmlText, const QString& xpath);

private:
  std::unique_ptr<pugi::xml_document> m_document;
  bool m_valid = true;
};

} // namespace Common
