#include <Core/Common/Compression/C_12bit.h>

#include <Core/Common/Compression/CompressionChecks_p.h>
#include <Core/Common/Compression/PackKernels_p.h>

#include <QCoreApplication>

namespace RTE
{

std::string C_12bit::GetName() const
{
  return "12bit";
}

std::string C_12bit::GetDescription() const
{
  return "Word to 12bit memory compression";
}

unsigned long long C_12bit::GetMaxCompressedSize(unsigned long long n)
{
  // (3 * n) / 4 + 4 without overflowing for huge n.
  return 3 * (n / 4) + (3 * (n % 4)) / 4 + 4;
}

void C_12bit::SetParameters(const QVariantMap&) {}

QVariantMap C_12bit::GetParameters() const
{
  return {};
}

uint32_t C_12bit::Compress(const void* source, unsigned long long sourceSize, void* destination,
                           unsigned long long& destinationSize)
{
  if (const uint32_t code = CompressionChecks::buffers(source, sourceSize, destination))
    return CompressionChecks::fail(code, destinationSize);
  if (sourceSize % 4 == 1 || sourceSize % 4 == 3)
    return CompressionChecks::fail(ErrorOddSourceSize12bit, destinationSize);
  const unsigned long long groups = sourceSize / 4;
  const unsigned long long size = 3 * groups + sourceSize % 4;
  if (size > destinationSize)
    return CompressionChecks::fail(ErrorDestinationTooSmall, destinationSize);

  const auto* s = static_cast<const uint8_t*>(source);
  auto* d = static_cast<uint8_t*>(destination);
  PackKernels::pack12bit(s, groups, d);
  if (sourceSize % 4 == 2)
  {
    // A last single word: its low byte, then its top nibble of 12 bits.
    d[3 * groups] = s[4 * groups];
    d[3 * groups + 1] = static_cast<uint8_t>((s[4 * groups + 1] & 0x0F) << 4);
  }
  destinationSize = size;
  return ErrorNone;
}

uint32_t C_12bit::Decompress(const void* source, unsigned long long sourceSize, void* destination,
                             unsigned long long& destinationSize)
{
  if (const uint32_t code = CompressionChecks::buffers(source, sourceSize, destination))
    return CompressionChecks::fail(code, destinationSize);
  if (sourceSize % 3 == 1)
    return CompressionChecks::fail(ErrorBadPackedSize, destinationSize);
  const unsigned long long groups = sourceSize / 3;
  const unsigned long long size = 4 * groups + sourceSize % 3;
  if (size > destinationSize)
    return CompressionChecks::fail(ErrorDestinationTooSmall, destinationSize);

  const auto* s = static_cast<const uint8_t*>(source);
  auto* d = static_cast<uint8_t*>(destination);
  PackKernels::unpack12bit(s, groups, d);
  if (sourceSize % 3 == 2)
  {
    d[4 * groups] = s[3 * groups];
    d[4 * groups + 1] = static_cast<uint8_t>(s[3 * groups + 1] >> 4);
  }
  destinationSize = size;
  return ErrorNone;
}

QString C_12bit::GetErrorText(uint32_t code) const
{
  if (code == ErrorOddSourceSize12bit)
    return QCoreApplication::translate("RTE::C_12bit", "Source size must be multiple of 2 (for words).");
  const QString common = CommonErrorText(code);
  return common.isNull() ? NoErrorText() : common;
}

} // namespace RTE
