// "12bit": keeps the low 12 bits of every 16-bit little-endian word; two words become
// three bytes.
//
//   words 0x0ABC, 0x0123  ->  bytes 0xBC, 0xA2, 0x31
//
// Compress: code 2 for a source size of 1 or 3 modulo 4. Decompress: 0xFFFFFFFD for a
// source size of 1 modulo 3 (its text is "No error", kept as the format has always had it).
#pragma once

#include <Core/Common/Compression/I_Compression.h>

namespace RTE
{

class CORECOMMON_EXPORT C_12bit : public I_Compression
{
public:
  static constexpr uint32_t ErrorOddSourceSize12bit = 2;
  static constexpr uint32_t ErrorBadPackedSize = 0xFFFFFFFD;

  std::string GetName() const override;
  std::string GetDescription() const override;
  // (3 * n) / 4 + 4.
  unsigned long long GetMaxCompressedSize(unsigned long long sourceSize) override;
  // No parameters.
  void SetParameters(const QVariantMap& parameters) override;
  QVariantMap GetParameters() const override;
  // Writes 3 * (n / 4) + n % 4 bytes.
  uint32_t Compress(const void* source, unsigned long long sourceSize, void* destination,
                    unsigned long long& destinationSize) override;
  // Writes 4 * (n / 3) + n % 3 bytes.
  uint32_t Decompress(const void* source, unsigned long long sourceSize, void* destination,
                      unsigned long long& destinationSize) override;
  QString GetErrorText(uint32_t code) const override;
};

} // namespace RTE
