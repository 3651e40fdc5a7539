// Output sink of the XML writer that decodes the UTF-8 chunks into a QString. The
// decoder keeps its state between chunks, so a character split across two chunks
// still comes out whole.
#pragma once

#include <QString>
#include <QStringDecoder>

#include <algorithm>

#include <pugixml.hpp>

namespace Storage::Private
{

class PugiXmlWriterToQString final : public pugi::xml_writer
{
public:
  explicit PugiXmlWriterToQString(QString& text) : m_text(text) {}

  void write(const void* data, size_t size) override
  {
    // Decoded straight into the text, which grows geometrically: documents are written
    // in many small chunks.
    const QByteArrayView chunk(static_cast<const char*>(data), static_cast<qsizetype>(size));
    const qsizetype used = m_text.size();
    const qsizetype needed = used + m_decoder.requiredSpace(chunk.size());
    if (needed > m_text.capacity())
      m_text.reserve(std::max(needed, 2 * m_text.capacity()));
    m_text.resize(needed);
    QChar* end = m_decoder.appendToBuffer(m_text.data() + used, chunk);
    m_text.resize(end - m_text.constData());
  }

private:
  QString& m_text;
  QStringDecoder m_decoder{QStringDecoder::Utf8};
};

} // namespace Storage::Private
