#include <Core/Common/Compression/C_Uncompressed.h>

#include <Core/Common/Compression/CompressionChecks_p.h>

namespace RTE
{

namespace
{

uint32_t copyBlock(const void* source, unsigned long long sourceSize, void* destination,
                   unsigned long long& destinationSize)
{
  if (const uint32_t code = CompressionChecks::buffers(source, sourceSize, destination))
    return CompressionChecks::fail(code, destinationSize);
  if (sourceSize > destinationSize)
    return CompressionChecks::fail(I_Compression::ErrorDestinationTooSmall, destinationSize);
  CompressionChecks::copyBytes(destination, source, sourceSize);
  destinationSize = sourceSize;
  return I_Compression::ErrorNone;
}

} // namespace

std::string C_Uncompressed::GetName() const
{
  return "Uncompressed";
}

std::string C_Uncompressed::GetDescription() const
{
  return "Uncompressed memory compression";
}

unsigned long long C_Uncompressed::GetMaxCompressedSize(unsigned long long sourceSize)
{
  return sourceSize;
}

void C_Uncompressed::SetParameters(const QVariantMap&) {}

QVariantMap C_Uncompressed::GetParameters() const
{
  return {};
}

uint32_t C_Uncompressed::Compress(const void* source, unsigned long long sourceSize, void* destination,
                                  unsigned long long& destinationSize)
{
  return copyBlock(source, sourceSize, destination, destinationSize);
}

uint32_t C_Uncompressed::Decompress(const void* source, unsigned long long sourceSize, void* destination,
                                    unsigned long long& destinationSize)
{
  return copyBlock(source, sourceSize, destination, destinationSize);
}

QString C_Uncompressed::GetErrorText(uint32_t code) const
{
  const QString text = CommonErrorText(code);
  return text.isNull() ? NoErrorText() : text;
}

} // namespace RTE
