// "LZ4": the block compressed with LZ4's block format (LZ4_compress_default and
// LZ4_decompress_safe). A compression that does not fit the capacity writes nothing and
// still returns 0 with a size of 0; a decompression that fails returns LZ4's negative
// result (minus the bytes read, minus one).
#pragma once

#include <Core/Common/Compression/I_Compression.h>

namespace RTE
{

class CORECOMMON_EXPORT C_LZ4 : public I_Compression
{
public:
  std::string GetName() const override;
  std::string GetDescription() const override;
  // LZ4's compress bound; 0 above 0x7E000000 bytes, the most LZ4 takes.
  unsigned long long GetMaxCompressedSize(unsigned long long sourceSize) override;
  // No parameters.
  void SetParameters(const QVariantMap& parameters) override;
  QVariantMap GetParameters() const override;
  // ErrorSourceTooLarge above 0x7E000000 bytes.
  uint32_t Compress(const void* source, unsigned long long sourceSize, void* destination,
                    unsigned long long& destinationSize) override;
  uint32_t Decompress(const void* source, unsigned long long sourceSize, void* destination,
                      unsigned long long& destinationSize) override;
  QString GetErrorText(uint32_t code) const override;
};

} // namespace RTE
