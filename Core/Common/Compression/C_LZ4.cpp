#include <Core/Common/Compression/C_LZ4.h>

#include <Core/Common/Compression/CompressionChecks_p.h>

#include <QCoreApplication>

#include <lz4.h>

#include <algorithm>
#include <climits>

namespace RTE
{

namespace
{

int capacity(unsigned long long destinationSize)
{
  return static_cast<int>(std::min<unsigned long long>(destinationSize, INT_MAX));
}

} // namespace

std::string C_LZ4::GetName() const
{
  return "LZ4";
}

std::string C_LZ4::GetDescription() const
{
  return "LZ4 memory compression";
}

unsigned long long C_LZ4::GetMaxCompressedSize(unsigned long long sourceSize)
{
  if (sourceSize > LZ4_MAX_INPUT_SIZE)
    return 0;
  return static_cast<unsigned long long>(LZ4_compressBound(static_cast<int>(sourceSize)));
}

void C_LZ4::SetParameters(const QVariantMap&) {}

QVariantMap C_LZ4::GetParameters() const
{
  return {};
}

uint32_t C_LZ4::Compress(const void* source, unsigned long long sourceSize, void* destination,
                         unsigned long long& destinationSize)
{
  if (const uint32_t code = CompressionChecks::buffers(source, sourceSize, destination))
    return CompressionChecks::fail(code, destinationSize);
  if (sourceSize > LZ4_MAX_INPUT_SIZE)
    return CompressionChecks::fail(ErrorSourceTooLarge, destinationSize);
  const int written = LZ4_compress_default(static_cast<const char*>(source), static_cast<char*>(destination),
                                           static_cast<int>(sourceSize), capacity(destinationSize));
  destinationSize = static_cast<unsigned long long>(std::max(written, 0));
  return ErrorNone;
}

uint32_t C_LZ4::Decompress(const void* source, unsigned long long sourceSize, void* destination,
                           unsigned long long& destinationSize)
{
  if (const uint32_t code = CompressionChecks::buffers(source, sourceSize, destination))
    return CompressionChecks::fail(code, destinationSize);
  if (sourceSize > INT_MAX)
    return CompressionChecks::fail(ErrorSourceTooLarge, destinationSize);
  const int result = LZ4_decompress_safe(static_cast<const char*>(source), static_cast<char*>(destination),
                                         static_cast<int>(sourceSize), capacity(destinationSize));
  if (result < 0)
    return CompressionChecks::fail(static_cast<uint32_t>(result), destinationSize);
  destinationSize = static_cast<unsigned long long>(result);
  return ErrorNone;
}

QString C_LZ4::GetErrorText(uint32_t code) const
{
  if (code == ErrorNone)
    return NoErrorText();
  if (const QString common = CommonErrorText(code); !common.isNull())
    return common;
  if (static_cast<int32_t>(code) == -1)
    return QCoreApplication::translate("RTE::C_LZ4", "Empty input or output buffer.");
  return QCoreApplication::translate("RTE::C_LZ4", "LZ4 decompression failed after reading %1 bytes.")
      .arg(-static_cast<long long>(static_cast<int32_t>(code)));
}

} // namespace RTE
