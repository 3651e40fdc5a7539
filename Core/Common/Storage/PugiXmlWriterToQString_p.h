// Output sink of the XML writer that decodes the UTF-8 chunks into a QString. The
// decoder keeps its state between chunks, so a character split across two chunks
// still comes out whole.
#pragma once

#include <QString>
#include <QStringDecoder>

#include <pugixml.hpp>

namespace Storage::Private
{

class PugiXmlWriterToQString final : public pugi::xml_writer
{
public:
  explicit PugiXmlWriterToQString(QString& text) : m_text(text) {}

  void write(const void* data, size_t size) override
  {
    m_text += m_decoder.decode(QByteArrayView(static_cast<const char*>(data), static_cast<qsizetype>(size)));
  }

private:
  QString& m_text;
  QStringDecoder m_decoder{QStringDecoder::Utf8};
};

} // namespace Storage::Private
