#include <Core/Common/Compression/C_IMX.h>

#include <Core/Common/Compression/CompressionChecks_p.h>
#include <Core/Common/Compression/ImxCoder_p.h>

#include <QCoreApplication>

#include <limits>
#include <vector>

namespace RTE
{

std::string C_IMX::GetName() const
{
  return "IMX";
}

std::string C_IMX::GetDescription() const
{
  return "IMX memory compression";
}

unsigned long long C_IMX::GetMaxCompressedSize(unsigned long long n)
{
  // (3 * n) / 2, which is n + n / 2; 0 when even that does not fit.
  if (n > std::numeric_limits<unsigned long long>::max() - n / 2)
    return 0;
  return n + n / 2;
}

void C_IMX::SetParameters(const QVariantMap& parameters)
{
  CompressionChecks::readCount(parameters, "Columns", m_columns);
  CompressionChecks::readCount(parameters, "Rows", m_rows);
  CompressionChecks::readFlag(parameters, "Parallel", m_parallel);
  CompressionChecks::readFlag(parameters, "ParallelAuto", m_parallelAuto);
}

QVariantMap C_IMX::GetParameters() const
{
  return {{QStringLiteral("Columns"), QVariant::fromValue(m_columns)},
          {QStringLiteral("Rows"), QVariant::fromValue(m_rows)},
          {QStringLiteral("Parallel"), m_parallel},
          {QStringLiteral("ParallelAuto"), m_parallelAuto},
          {QStringLiteral("Size"), QVariant::fromValue(m_size)}};
}

uint32_t C_IMX::Compress(const void* source, unsigned long long sourceSize, void* destination,
                         unsigned long long& destinationSize)
{
  m_size = 0;
  if (const uint32_t code = CompressionChecks::buffers(source, sourceSize, destination))
    return CompressionChecks::fail(code, destinationSize);
  const unsigned long long words = sourceSize / 2;
  unsigned long long columns = m_columns;
  unsigned long long rows = m_rows;
  if (columns == 0)
  {
    if (sourceSize % 2 != 0)
      return CompressionChecks::fail(ErrorOddSourceSize, destinationSize);
    columns = words;
    rows = words == 0 ? 0 : 1;
  }
  else if (rows == 0)
  {
    rows = words / columns;
  }
  if (columns == 0 || rows == 0)
    return CompressionChecks::fail(ErrorColumnsOrRowsMissing, destinationSize);
  if (rows > words / columns)
    return CompressionChecks::fail(ErrorSourceTooShort, destinationSize);

  const bool parallel = (m_parallelAuto && rows >= ParallelAutoRows) || m_parallel;
  const auto* s = static_cast<const uint8_t*>(source);
  const std::size_t blockWords = columns * rows;
  const auto encodeInto = [&](uint8_t* out)
  {
    return parallel ? ImxCoder::encodeParallel(s, rows, columns, out, ImxCoder::parallelThreads(rows))
                    : ImxCoder::encode(s, rows, columns, out);
  };

  std::size_t size = 0;
  if (destinationSize >= ImxCoder::maxEncodedSize(blockWords))
  {
    size = encodeInto(static_cast<uint8_t*>(destination));
  }
  else
  {
    // The encoder writes without checks; a destination that may be too small gets a
    // copy of the stream only when it fits.
    std::vector<uint8_t> buffer(ImxCoder::maxEncodedSize(blockWords));
    size = encodeInto(buffer.data());
    if (size > destinationSize)
      return CompressionChecks::fail(ErrorDestinationTooSmall, destinationSize);
    CompressionChecks::copyBytes(destination, buffer.data(), size);
  }
  destinationSize = size;
  m_size = size;
  return ErrorNone;
}

uint32_t C_IMX::Decompress(const void* source, unsigned long long sourceSize, void* destination,
                           unsigned long long& destinationSize)
{
  m_size = 0;
  if (const uint32_t code = CompressionChecks::buffers(source, sourceSize, destination))
    return CompressionChecks::fail(code, destinationSize);
  if (m_columns == 0)
    return CompressionChecks::fail(ErrorColumnsMissing, destinationSize);
  const unsigned long long rows = m_rows == 0 ? 1 : m_rows;
  if (rows > destinationSize / 2 / m_columns)
    return CompressionChecks::fail(ErrorDestinationTooSmall, destinationSize);
  const unsigned long long words = rows * m_columns;

  std::size_t consumed = 0;
  const ImxCoder::DecodeResult result = ImxCoder::decode(static_cast<const uint8_t*>(source), sourceSize,
                                                         static_cast<uint8_t*>(destination), words, consumed);
  if (result == ImxCoder::DecodeResult::Truncated)
    return CompressionChecks::fail(ErrorSourceTooShort, destinationSize);
  if (result == ImxCoder::DecodeResult::Corrupt)
    return CompressionChecks::fail(ErrorCorruptData, destinationSize);
  destinationSize = 2 * words;
  m_size = consumed;
  return ErrorNone;
}

QString C_IMX::GetErrorText(uint32_t code) const
{
  if (code == ErrorColumnsMissing)
    return QCoreApplication::translate("RTE::C_IMX", "Number of columns missing.");
  if (code == ErrorColumnsOrRowsMissing)
    return QCoreApplication::translate("RTE::C_IMX", "Number of columns or number of rows missing.");
  const QString common = CommonErrorText(code);
  return common.isNull() ? NoErrorText() : common;
}

} // namespace RTE
