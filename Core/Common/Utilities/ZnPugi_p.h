// Loading, saving and attribute reading for free-form XML files with pugixml. Internal:
// these take pugixml types, which host applications never see.
//
//   pugi::xml_document doc;
//   if (ZnPugi::loadFromFile(doc, path))
//     QString id = ZnPugi::attributeAsQString(doc.child("plugin"), "id");
#pragma once

#include <QString>

#include <pugixml.hpp>

namespace ZnPugi
{

// Reads the file as text (decoded by its byte-order mark, else as UTF-8), re-encodes it
// as UTF-8 and parses it with the default options. A file that cannot be opened gives a
// failed result and leaves doc unchanged.
pugi::xml_parse_result loadFromFile(pugi::xml_document& doc, const QString& path);

// Writes doc in UTF-8, one tab per indentation level. False when the file cannot be
// written; the previous file then stays as it was.
bool saveToFile(const pugi::xml_document& doc, const QString& path);

// The attribute's value decoded as UTF-8; empty when it is missing.
QString attributeAsQString(const pugi::xml_node& node, const char* name);

} // namespace ZnPugi
