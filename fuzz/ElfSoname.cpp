// libFuzzer target: the SONAME reader on arbitrary bytes. Any image gives a name or
// nothing; the sanitizers catch a read outside it.
#include <Core/Common/Utilities/ElfSoname_p.h>

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
  // A copy of exactly the input's length, so that any overrun is outside the allocation.
  const QByteArray image(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  const auto name = RTE::Elf::soname(image);
  if (name && name->size() >= image.size())
    __builtin_trap(); // a name is a part of the image
  return 0;
}
