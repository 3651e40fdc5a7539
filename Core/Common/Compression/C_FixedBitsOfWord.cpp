#include <Core/Common/Compression/C_FixedBitsOfWord.h>

#include <Core/Common/Compression/CompressionChecks_p.h>
#include <Core/Common/Compression/PackKernels_p.h>

#include <limits>

namespace RTE
{

namespace
{

// Bytes of a 12-bit row tail of 0 to 3 words: the first bytes of a full group.
constexpr unsigned tail12Bytes[4] = {0, 2, 3, 5};

// rows * columns words as bytes, or false when that overflows.
bool blockBytes(unsigned long long columns, unsigned long long rows, unsigned long long& bytes)
{
  constexpr unsigned long long largest = std::numeric_limits<unsigned long long>::max() / 2;
  if (columns != 0 && rows > largest / columns)
    return false;
  bytes = 2 * columns * rows;
  return true;
}

} // namespace

std::string C_FixedBitsOfWord::GetName() const
{
  return "FixedBitsOfWord";
}

std::string C_FixedBitsOfWord::GetDescription() const
{
  return "Word to 8 or 12 bit compression";
}

unsigned long long C_FixedBitsOfWord::packedRowSize(unsigned long long columns) const
{
  if (m_bits == 8)
    return (columns + 1) / 2 * 2;
  if (m_bits == 12)
    return columns / 4 * 6 + tail12Bytes[columns % 4];
  return columns * 2;
}

bool C_FixedBitsOfWord::parametersValid() const
{
  return (m_bits == 8 || m_bits == 12 || m_bits == 16) && m_start <= 15;
}

unsigned long long C_FixedBitsOfWord::GetMaxCompressedSize(unsigned long long n)
{
  if (m_columns > 0 && m_rows > 0)
  {
    unsigned long long perRow = m_columns * 2;
    if (m_bits == 8)
      perRow = (m_columns + 1) / 2 * 2;
    else if (m_bits == 12)
      perRow = (m_columns + 3) / 4 * 6;
    const auto rows = static_cast<unsigned long long>(m_rows);
    if (rows > std::numeric_limits<unsigned long long>::max() / perRow)
      return 0;
    return perRow * rows;
  }
  if (m_bits == 8)
  {
    // (n + 1) / 2, and the second byte an odd last word takes.
    return (n + 1) / 2 + (n / 2) % 2;
  }
  if (m_bits == 12)
    return (n / 4 + (n % 4 != 0 ? 1 : 0)) * 3;
  return n;
}

void C_FixedBitsOfWord::SetParameters(const QVariantMap& parameters)
{
  CompressionChecks::readCount(parameters, "FixedBits", m_bits);
  CompressionChecks::readCount(parameters, "FixedStart", m_start);
  CompressionChecks::readFlag(parameters, "FixedWrapping", m_wrapping);
  CompressionChecks::readCount(parameters, "Columns", m_columns);
  const auto rows = parameters.constFind(QStringLiteral("Rows"));
  bool ok = false;
  if (rows != parameters.constEnd())
  {
    const qlonglong value = rows->toLongLong(&ok);
    if (ok)
      m_rows = value;
  }
}

QVariantMap C_FixedBitsOfWord::GetParameters() const
{
  return {{QStringLiteral("FixedBits"), QVariant::fromValue(m_bits)},
          {QStringLiteral("FixedStart"), QVariant::fromValue(m_start)},
          {QStringLiteral("FixedWrapping"), m_wrapping},
          {QStringLiteral("Columns"), QVariant::fromValue(m_columns)},
          {QStringLiteral("Rows"), QVariant::fromValue(m_rows)}};
}

uint32_t C_FixedBitsOfWord::Compress(const void* source, unsigned long long sourceSize, void* destination,
                                     unsigned long long& destinationSize)
{
  if (const uint32_t code = CompressionChecks::buffers(source, sourceSize, destination))
    return CompressionChecks::fail(code, destinationSize);
  if (!parametersValid())
    return CompressionChecks::fail(ErrorInvalidParameter, destinationSize);
  if (m_rows < 1)
  {
    destinationSize = 0;
    return ErrorNone;
  }
  unsigned long long columns = m_columns;
  unsigned long long rows = static_cast<unsigned long long>(m_rows);
  if (columns == 0)
  {
    if (sourceSize % 2 != 0)
      return CompressionChecks::fail(ErrorOddSourceSize, destinationSize);
    columns = sourceSize / 2;
    rows = 1;
  }
  unsigned long long needed = 0;
  if (!blockBytes(columns, rows, needed) || needed > sourceSize)
    return CompressionChecks::fail(ErrorSourceTooShort, destinationSize);
  const unsigned long long rowSize = packedRowSize(columns);
  // rowSize <= 2 * columns, so this cannot overflow once the block fits the source.
  const unsigned long long size = rowSize * rows;
  if (size > destinationSize)
    return CompressionChecks::fail(ErrorDestinationTooSmall, destinationSize);

  const auto start = static_cast<unsigned>(m_start);
  const auto* s = static_cast<const uint8_t*>(source);
  auto* d = static_cast<uint8_t*>(destination);
  for (unsigned long long row = 0; row < rows; ++row, s += 2 * columns, d += rowSize)
  {
    if (m_bits == 8)
    {
      PackKernels::packFixed8(s, columns / 2, start, m_wrapping, d);
      if (columns % 2 != 0)
      {
        // The odd last word keeps its low 8 bits, also when clamping.
        const uint16_t word = static_cast<uint16_t>(s[2 * columns - 2] | (s[2 * columns - 1] << 8));
        d[columns - 1] = static_cast<uint8_t>(word >> start);
        d[columns] = 0;
      }
    }
    else if (m_bits == 12)
    {
      const unsigned long long groups = columns / 4;
      PackKernels::packFixed12(s, groups, start, m_wrapping, d);
      if (const unsigned tail = columns % 4; tail != 0)
      {
        // Pack the tail as a group padded with zero words and keep the bytes that hold it.
        uint8_t words[8] = {};
        uint8_t packed[6];
        CompressionChecks::copyBytes(words, s + 8 * groups, 2 * tail);
        PackKernels::packFixed12(words, 1, start, m_wrapping, packed);
        CompressionChecks::copyBytes(d + 6 * groups, packed, tail12Bytes[tail]);
      }
    }
    else
    {
      PackKernels::packFixed16(s, columns, start, d);
    }
  }
  destinationSize = size;
  return ErrorNone;
}

uint32_t C_FixedBitsOfWord::Decompress(const void* source, unsigned long long sourceSize, void* destination,
                                       unsigned long long& destinationSize)
{
  if (const uint32_t code = CompressionChecks::buffers(source, sourceSize, destination))
    return CompressionChecks::fail(code, destinationSize);
  if (!parametersValid())
    return CompressionChecks::fail(ErrorInvalidParameter, destinationSize);
  if (m_rows < 1)
  {
    destinationSize = 0;
    return ErrorNone;
  }
  unsigned long long columns = m_columns;
  unsigned long long rows = static_cast<unsigned long long>(m_rows);
  if (columns == 0)
  {
    // One row: its length follows from the source size.
    rows = 1;
    if (m_bits == 12)
    {
      const unsigned long long rest = sourceSize % 6;
      if (rest == 1 || rest == 4)
        return CompressionChecks::fail(ErrorCorruptData, destinationSize);
      columns = sourceSize / 6 * 4 + (rest == 0 ? 0 : rest == 2 ? 1 : rest == 3 ? 2 : 3);
    }
    else if (sourceSize % 2 != 0)
    {
      return CompressionChecks::fail(ErrorOddSourceSize, destinationSize);
    }
    else if (m_bits == 16)
    {
      columns = sourceSize / 2;
    }
    else
    {
      // 8 bits: an odd word count packs like the next even one; a destination one word
      // short of the even count tells that the last byte is padding.
      columns = sourceSize;
      if (sourceSize != 0 && destinationSize / 2 == sourceSize - 1)
        columns = sourceSize - 1;
    }
  }
  const unsigned long long rowSize = packedRowSize(columns);
  if (rowSize != 0 && rows > std::numeric_limits<unsigned long long>::max() / rowSize)
    return CompressionChecks::fail(ErrorSourceTooShort, destinationSize);
  if (rowSize * rows > sourceSize)
    return CompressionChecks::fail(ErrorSourceTooShort, destinationSize);
  unsigned long long size = 0;
  if (!blockBytes(columns, rows, size) || size > destinationSize)
    return CompressionChecks::fail(ErrorDestinationTooSmall, destinationSize);

  const auto start = static_cast<unsigned>(m_start);
  const auto* s = static_cast<const uint8_t*>(source);
  auto* d = static_cast<uint8_t*>(destination);
  for (unsigned long long row = 0; row < rows; ++row, s += rowSize, d += 2 * columns)
  {
    if (m_bits == 8)
    {
      PackKernels::unpackFixed8(s, columns, start, d);
    }
    else if (m_bits == 12)
    {
      const unsigned long long groups = columns / 4;
      PackKernels::unpackFixed12(s, groups, start, d);
      if (const unsigned tail = columns % 4; tail != 0)
      {
        uint8_t packed[6] = {};
        uint8_t words[8];
        CompressionChecks::copyBytes(packed, s + 6 * groups, tail12Bytes[tail]);
        PackKernels::unpackFixed12(packed, 1, start, words);
        CompressionChecks::copyBytes(d + 8 * groups, words, 2 * tail);
      }
    }
    else
    {
      PackKernels::unpackFixed16(s, columns, start, d);
    }
  }
  destinationSize = size;
  return ErrorNone;
}

QString C_FixedBitsOfWord::GetErrorText(uint32_t code) const
{
  const QString common = CommonErrorText(code);
  return common.isNull() ? NoErrorText() : common;
}

} // namespace RTE
