// libFuzzer target: IMX decompression of arbitrary data.
#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
  return fuzz::decompress<RTE::C_IMX>(data, size);
}
