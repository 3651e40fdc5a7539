// For code that stores blocks with a compressor: refuses a block the compressor cannot
// take before anything is written.
//
//   RTE::RequireCompressibleBlock(3, *codec, block.size()); // throws for LZ4 above 0x7E000000 bytes
#pragma once

#include <Core/Common/Compression/I_Compression.h>

namespace RTE
{

// Raises DataSizeTooLargeForCompression ("Compression type %1 (%2) can't handle a data
// block of %3 byte.") when the codec's largest size for blockSize is 0 although the block
// is not empty. compressionType is the caller's number for the codec.
CORECOMMON_EXPORT void RequireCompressibleBlock(int compressionType, I_Compression& codec,
                                                unsigned long long blockSize);

} // namespace RTE
