#include "ZnPugi_p.h"

#include <Core/Common/Storage/PugiXmlWriterToQFile_p.h>

#include <QFile>
#include <QSaveFile>
#include <QStringEncoder>
#include <QTextStream>

namespace ZnPugi
{

pugi::xml_parse_result loadFromFile(pugi::xml_document& doc, const QString& path)
{
  QFile file(path);
  if (!file.open(QIODevice::ReadOnly | QIODevice::Text))
    return pugi::xml_parse_result();
  QTextStream stream(&file);
  // Read in pieces so that a large file is never held twice as UTF-16 and UTF-8; the
  // encoder keeps a surrogate pair that straddles two pieces whole.
  constexpr qint64 chunkCharacters = 10'000'000;
  QStringEncoder toUtf8(QStringEncoder::Utf8);
  QByteArray buffer;
  while (!stream.atEnd())
    buffer += QByteArray(toUtf8(stream.read(chunkCharacters)));
  // QByteArray keeps a zero byte after its data: the text is terminated.
  return doc.load_string(buffer.constData());
}

bool saveToFile(const pugi::xml_document& doc, const QString& path)
{
  QSaveFile file(path);
  if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate))
    return false;
  Storage::Private::PugiXmlWriterToQFile writer(file);
  doc.save(writer, "\t", pugi::format_default, pugi::encoding_utf8);
  if (writer.Failed())
  {
    file.cancelWriting();
    return false;
  }
  return file.commit();
}

QString attributeAsQString(const pugi::xml_node& node, const char* name)
{
  return QString::fromUtf8(node.attribute(name).value());
}

} // namespace ZnPugi
