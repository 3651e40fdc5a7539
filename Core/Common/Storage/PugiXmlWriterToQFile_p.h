// Output sink of the XML writer that writes the bytes to an open file (a QSaveFile for
// settings documents, so a failed write is remembered and the commit refuses).
#pragma once

#include <QFileDevice>

#include <pugixml.hpp>

namespace Storage::Private
{

class PugiXmlWriterToQFile final : public pugi::xml_writer
{
public:
  explicit PugiXmlWriterToQFile(QFileDevice& file) : m_file(file) {}

  void write(const void* data, size_t size) override
  {
    if (m_file.write(static_cast<const char*>(data), static_cast<qint64>(size)) != static_cast<qint64>(size))
      m_failed = true;
  }

  // Whether any chunk could not be written completely.
  bool Failed() const { return m_failed; }

private:
  QFileDevice& m_file;
  bool m_failed = false;
};

} // namespace Storage::Private
