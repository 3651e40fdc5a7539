#include <Core/Common/Compression/CompressionBlockSize.h>

#include <Core/Common/Exceptions/DataSizeTooLargeForCompression.h>
#include <Core/Common/Exceptions/Raise.h>

namespace RTE
{

void RequireCompressibleBlock(int compressionType, I_Compression& codec, unsigned long long blockSize)
{
  if (blockSize != 0 && codec.GetMaxCompressedSize(blockSize) == 0)
    Raise(DataSizeTooLargeForCompression(compressionType, codec.GetName(), blockSize));
}

} // namespace RTE
