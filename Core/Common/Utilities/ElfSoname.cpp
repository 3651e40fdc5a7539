#include <Core/Common/Utilities/ElfSoname_p.h>

#include <cstdint>

namespace RTE::Elf
{

namespace
{

constexpr std::uint32_t sectionTypeDynamic = 6; // SHT_DYNAMIC
constexpr std::uint64_t tagNull = 0;            // DT_NULL
constexpr std::uint64_t tagSoname = 14;         // DT_SONAME

// Bounds-checked reads of fields of 2, 4 or 8 bytes in the image's byte order.
class Reader
{
public:
  Reader(QByteArrayView image, bool bigEndian) : m_image(image), m_bigEndian(bigEndian) {}

  // False when [offset, offset + size) is not inside the image (overflow included).
  bool contains(std::uint64_t offset, std::uint64_t size) const
  {
    const auto length = static_cast<std::uint64_t>(m_image.size());
    return offset <= length && size <= length - offset;
  }

  std::optional<std::uint64_t> read(std::uint64_t offset, int size) const
  {
    if (!contains(offset, static_cast<std::uint64_t>(size)))
      return std::nullopt;
    std::uint64_t value = 0;
    for (int i = 0; i < size; ++i)
    {
      const int index = m_bigEndian ? i : size - 1 - i;
      value = (value << 8) | static_cast<std::uint8_t>(m_image[static_cast<qsizetype>(offset) + index]);
    }
    return value;
  }

  QByteArrayView image() const { return m_image; }

private:
  QByteArrayView m_image;
  bool m_bigEndian;
};

struct Layout
{
  int word;            // 4 or 8: size of addresses, offsets and dynamic entries' fields
  std::uint64_t shoff; // where e_shoff is
  std::uint64_t shentsize;
  std::uint64_t shnum;
  std::uint64_t minSectionHeader; // bytes of a section header we read
  std::uint64_t shType, shOffset, shSize, shLink;
};

constexpr Layout layout32{4, 0x20, 0x2E, 0x30, 40, 4, 16, 20, 24};
constexpr Layout layout64{8, 0x28, 0x3A, 0x3C, 64, 4, 24, 32, 40};

struct Section
{
  std::uint32_t type = 0;
  std::uint64_t offset = 0;
  std::uint64_t size = 0;
  std::uint32_t link = 0;
};

} // namespace

std::optional<QByteArray> soname(QByteArrayView image)
{
  if (image.size() < 0x40 || image[0] != '\x7F' || image[1] != 'E' || image[2] != 'L' || image[3] != 'F')
    return std::nullopt;
  const char elfClass = image[4]; // 1: 32 bit, 2: 64 bit
  const char data = image[5];     // 1: little endian, 2: big endian
  if ((elfClass != 1 && elfClass != 2) || (data != 1 && data != 2))
    return std::nullopt;
  const Layout& l = elfClass == 1 ? layout32 : layout64;
  const Reader r(image, data == 2);

  const auto shoff = r.read(l.shoff, l.word);
  const auto shentsize = r.read(l.shentsize, 2);
  auto shnum = r.read(l.shnum, 2);
  if (!shoff || !shentsize || !shnum || *shoff == 0 || *shentsize < l.minSectionHeader)
    return std::nullopt;

  const auto section = [&](std::uint64_t index) -> std::optional<Section>
  {
    if (index >= *shnum)
      return std::nullopt;
    const std::uint64_t at = *shoff + index * *shentsize; // index < 2^16, entry size < 2^16
    if (at < *shoff || !r.contains(at, l.minSectionHeader))
      return std::nullopt;
    const auto type = r.read(at + l.shType, 4);
    const auto offset = r.read(at + l.shOffset, l.word);
    const auto size = r.read(at + l.shSize, l.word);
    const auto link = r.read(at + l.shLink, 4);
    if (!type || !offset || !size || !link || !r.contains(*offset, *size))
      return std::nullopt;
    return Section{static_cast<std::uint32_t>(*type), *offset, *size, static_cast<std::uint32_t>(*link)};
  };

  // More than 0xFF00 sections: the count is kept in the first section header's size.
  if (*shnum == 0)
  {
    shnum = 1;
    const auto first = section(0);
    if (!first || first->size == 0 || first->size > 0xFFFFFFFF)
      return std::nullopt;
    shnum = first->size;
  }

  for (std::uint64_t i = 0; i < *shnum; ++i)
  {
    const std::optional<Section> dynamic = section(i);
    if (!dynamic || dynamic->type != sectionTypeDynamic)
      continue;
    const std::optional<Section> strings = section(dynamic->link);
    if (!strings)
      return std::nullopt;
    const auto entrySize = static_cast<std::uint64_t>(2 * l.word);
    for (std::uint64_t at = dynamic->offset; at - dynamic->offset + entrySize <= dynamic->size; at += entrySize)
    {
      const auto tag = r.read(at, l.word);
      const auto value = r.read(at + l.word, l.word);
      if (!tag || !value || *tag == tagNull)
        return std::nullopt;
      if (*tag != tagSoname)
        continue;
      if (*value >= strings->size)
        return std::nullopt;
      // The name must end inside the string table.
      const QByteArrayView table =
          image.sliced(static_cast<qsizetype>(strings->offset), static_cast<qsizetype>(strings->size));
      const qsizetype start = static_cast<qsizetype>(*value);
      const qsizetype end = table.indexOf('\0', start);
      if (end < 0)
        return std::nullopt;
      return table.sliced(start, end - start).toByteArray();
    }
    return std::nullopt;
  }
  return std::nullopt;
}

} // namespace RTE::Elf
