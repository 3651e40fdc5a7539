// "Uncompressed": the block stored as it is.
#pragma once

#include <Core/Common/Compression/I_Compression.h>

namespace RTE
{

class CORECOMMON_EXPORT C_Uncompressed : public I_Compression
{
public:
  std::string GetName() const override;
  std::string GetDescription() const override;
  // n.
  unsigned long long GetMaxCompressedSize(unsigned long long sourceSize) override;
  // No parameters.
  void SetParameters(const QVariantMap& parameters) override;
  QVariantMap GetParameters() const override;
  // Copies the source; ErrorDestinationTooSmall when it does not fit.
  uint32_t Compress(const void* source, unsigned long long sourceSize, void* destination,
                    unsigned long long& destinationSize) override;
  uint32_t Decompress(const void* source, unsigned long long sourceSize, void* destination,
                      unsigned long long& destinationSize) override;
  QString GetErrorText(uint32_t code) const override;
};

} // namespace RTE
