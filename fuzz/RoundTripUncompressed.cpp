// libFuzzer target: Uncompressed compression followed by decompression.
#include "FuzzSupport.h"

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
  return fuzz::roundTrip<RTE::C_Uncompressed>(data, size);
}
