// The UTF-8 form of a short text without a heap allocation: settings names, type names
// and number texts are short ASCII texts, converted on every access to the tree.
#pragma once

#include <QByteArray>
#include <QStringView>

#include <string_view>

namespace Storage::Private
{

class Utf8Buffer
{
public:
  explicit Utf8Buffer(QStringView text)
  {
    const qsizetype size = text.size();
    if (size < kInline)
    {
      const char16_t* source = text.utf16();
      qsizetype i = 0;
      for (; i < size && source[i] < 0x80; ++i)
        m_inline[i] = static_cast<char>(source[i]);
      if (i == size)
      {
        m_inline[size] = '\0';
        m_size = size;
        return;
      }
    }
    m_heap = text.toUtf8();
    m_data = m_heap.constData();
    m_size = m_heap.size();
  }
  Utf8Buffer(const Utf8Buffer&) = delete;
  Utf8Buffer& operator=(const Utf8Buffer&) = delete;

  // Followed by '\0'.
  const char* c_str() const { return m_data; }
  std::string_view view() const { return std::string_view(m_data, static_cast<size_t>(m_size)); }

private:
  static constexpr qsizetype kInline = 120;
  char m_inline[kInline];
  QByteArray m_heap;
  const char* m_data = m_inline;
  qsizetype m_size = 0;
};

} // namespace Storage::Private
