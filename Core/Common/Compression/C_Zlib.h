// "Zlib": the block deflated by zlib's compress() and inflated by uncompress().
// Codes -1 to -6 are zlib's own results (Z_ERRNO ... Z_VERSION_ERROR); a destination
// that is too small gives Z_BUF_ERROR, a damaged or cut stream Z_DATA_ERROR.
#pragma once

#include <Core/Common/Compression/I_Compression.h>

namespace RTE
{

class CORECOMMON_EXPORT C_Zlib : public I_Compression
{
public:
  std::string GetName() const override;
  std::string GetDescription() const override;
  // zlib's compress bound; 0 when the size does not fit in 32 bits.
  unsigned long long GetMaxCompressedSize(unsigned long long sourceSize) override;
  // No parameters.
  void SetParameters(const QVariantMap& parameters) override;
  QVariantMap GetParameters() const override;
  uint32_t Compress(const void* source, unsigned long long sourceSize, void* destination,
                    unsigned long long& destinationSize) override;
  uint32_t Decompress(const void* source, unsigned long long sourceSize, void* destination,
                      unsigned long long& destinationSize) override;
  QString GetErrorText(uint32_t code) const override;
};

} // namespace RTE
