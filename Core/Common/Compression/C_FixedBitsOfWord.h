// "FixedBitsOfWord": keeps 8, 12 or 16 bits of every 16-bit word, starting at bit
// FixedStart, row by row.
//
//   codec.SetParameters({{"FixedBits", 8}, {"FixedStart", 4}, {"FixedWrapping", false}});
//   words 0x0230, 0x4560  ->  output word 0xFF23 (0x456 clamped to 0xFF)
//
// Parameters: "FixedBits" (8, 12 or 16; default 12), "FixedStart" (0 to 15; default 0),
// "FixedWrapping" (true: keep the low bits of values above the range; false, the
// default: clamp them), "Columns" (words per row; 0, the default, makes the whole source
// one row), "Rows" (default 1; below 1 nothing is written).
// Decompress shifts every value back left by FixedStart, so a block whose values fit
// comes back exactly. The row tails and the sizes are described in DESIGN.md.
#pragma once

#include <Core/Common/Compression/I_Compression.h>

namespace RTE
{

class CORECOMMON_EXPORT C_FixedBitsOfWord : public I_Compression
{
public:
  std::string GetName() const override;
  std::string GetDescription() const override;
  unsigned long long GetMaxCompressedSize(unsigned long long sourceSize) override;
  void SetParameters(const QVariantMap& parameters) override;
  QVariantMap GetParameters() const override;
  uint32_t Compress(const void* source, unsigned long long sourceSize, void* destination,
                    unsigned long long& destinationSize) override;
  uint32_t Decompress(const void* source, unsigned long long sourceSize, void* destination,
                      unsigned long long& destinationSize) override;
  QString GetErrorText(uint32_t code) const override;

private:
  // Bytes of one packed row of the given number of words.
  unsigned long long packedRowSize(unsigned long long columns) const;
  bool parametersValid() const;

  unsigned long long m_bits = 12;
  unsigned long long m_start = 0;
  bool m_wrapping = false;
  unsigned long long m_columns = 0;
  long long m_rows = 1;
};

} // namespace RTE
