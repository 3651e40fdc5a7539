// Shared by the fuzz targets. An input is a small header that picks the codec's
// parameters and the destination capacity, followed by the data. Source and destination
// are heap blocks of exactly their sizes, so any read or write outside them is caught.
// Broken promises (a size beyond the capacity, a round trip that changes the data) trap.
#pragma once

#include <Core/Common/Compression/C_12bit.h>
#include <Core/Common/Compression/C_FixedBitsOfWord.h>
#include <Core/Common/Compression/C_IMX.h>
#include <Core/Common/Compression/C_LZ4.h>
#include <Core/Common/Compression/C_Uncompressed.h>
#include <Core/Common/Compression/C_Zlib.h>
#include <Core/Common/Compression/ImxCoder_p.h>
#include <Core/Common/Compression/PackKernels_p.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>
#include <vector>

namespace fuzz
{

constexpr std::size_t headerSize = 6;

inline void check(bool condition)
{
  if (!condition)
    __builtin_trap();
}

struct Setup
{
  unsigned bits = 16, start = 0;
  bool wrapping = false;
  unsigned long long columns = 0, rows = 0;
  unsigned long long capacity = 0;
  bool parallel = false, portable = false;
  unsigned imxLoops = 0; // 0 chosen, 1 blocks, 2 groups, 3 groups without AVX-512
};

// Header: [0] bits/flags/IMX loops, [1] start, [2..3] columns, [4] rows, [5] capacity byte.
inline Setup readSetup(const uint8_t* data)
{
  Setup setup;
  static const unsigned bits[] = {8, 12, 16, 16};
  setup.bits = bits[data[0] & 3];
  setup.wrapping = (data[0] & 4) != 0;
  setup.parallel = (data[0] & 8) != 0;
  setup.portable = (data[0] & 16) != 0;
  setup.imxLoops = (data[0] >> 5) & 3;
  setup.start = data[1] % 16;
  setup.columns = (data[2] | (data[3] << 8)) % 1024;
  setup.rows = data[4] % 32;
  setup.capacity = data[5];
  return setup;
}

inline void configure(RTE::I_Compression& codec, const Setup& setup)
{
  RTE::PackKernels::setPortableOnly(setup.portable);
  using RTE::ImxCoder::VectorLoops;
  static const VectorLoops loops[] = {VectorLoops::Chosen, VectorLoops::Blocks, VectorLoops::Groups,
                                      VectorLoops::Groups};
  RTE::ImxCoder::setVectorLoops(loops[setup.imxLoops]);
  RTE::ImxCoder::allowAvx512(setup.imxLoops != 3);
  codec.SetParameters({{"FixedBits", setup.bits},
                       {"FixedStart", setup.start},
                       {"FixedWrapping", setup.wrapping},
                       {"Columns", setup.columns},
                       {"Rows", setup.rows},
                       {"Parallel", setup.parallel}});
}

inline std::unique_ptr<uint8_t[]> copyOf(const uint8_t* data, std::size_t size)
{
  std::unique_ptr<uint8_t[]> copy(new uint8_t[size == 0 ? 1 : size]);
  if (size != 0)
    std::memcpy(copy.get(), data, size);
  return copy;
}

// Decompresses arbitrary data into a destination whose capacity the header picks.
template <typename Codec>
int decompress(const uint8_t* data, std::size_t size)
{
  if (size < headerSize)
    return 0;
  Codec codec;
  const Setup setup = readSetup(data);
  configure(codec, setup);
  const std::size_t sourceSize = size - headerSize;
  const auto source = copyOf(data + headerSize, sourceSize);
  // Capacity: up to 8 times the source plus a little, so that whole blocks fit too.
  const unsigned long long capacity = setup.capacity * (sourceSize / 32 + 1) + (data[5] & 1 ? 16 * sourceSize : 0);
  std::unique_ptr<uint8_t[]> destination(new uint8_t[capacity == 0 ? 1 : capacity]);
  unsigned long long written = capacity;
  const uint32_t code = codec.Decompress(source.get(), sourceSize, destination.get(), written);
  check(written <= capacity);
  check(code == 0 || written == 0 || codec.GetName() == "Zlib");
  check(!codec.GetErrorText(code).isEmpty());
  return 0;
}

// The words of data the codec keeps, as decompression gives them back.
inline std::vector<uint8_t> expectedRoundTrip(const RTE::I_Compression& codec, const Setup& setup, const uint8_t* data,
                                              std::size_t size)
{
  std::vector<uint8_t> expected(data, data + size);
  const std::string name = codec.GetName();
  if (name == "12bit")
    for (std::size_t i = 1; i < size; i += 2)
      expected[i] &= 0x0F;
  if (name == "FixedBitsOfWord")
  {
    const std::size_t columns = setup.columns == 0 ? size / 2 : setup.columns;
    for (std::size_t i = 0; i + 1 < size; i += 2)
    {
      const auto word = static_cast<uint16_t>(data[i] | (data[i + 1] << 8));
      const bool oddLast = setup.bits == 8 && columns % 2 == 1 && (i / 2) % columns == columns - 1;
      const unsigned value = oddLast ? (static_cast<unsigned>(word >> setup.start) & 0xFF)
                                     : RTE::PackKernels::fixedValue(word, setup.start, setup.bits, setup.wrapping);
      const auto back = static_cast<uint16_t>(value << setup.start);
      expected[i] = static_cast<uint8_t>(back);
      expected[i + 1] = static_cast<uint8_t>(back >> 8);
    }
  }
  return expected;
}

// Compresses data, checks the stream decompresses to what the codec keeps of it, and
// that a smaller capacity either gives the same stream or a clean refusal.
template <typename Codec>
int roundTrip(const uint8_t* data, std::size_t size)
{
  if (size < headerSize)
    return 0;
  Codec codec;
  const Setup setup = readSetup(data);
  configure(codec, setup);
  const std::size_t rawSize = size - headerSize;
  const auto raw = copyOf(data + headerSize, rawSize);

  const unsigned long long bound = codec.GetMaxCompressedSize(rawSize);
  std::unique_ptr<uint8_t[]> packed(new uint8_t[bound == 0 ? 1 : bound]);
  unsigned long long packedSize = bound;
  const uint32_t code = codec.Compress(raw.get(), rawSize, packed.get(), packedSize);
  check(packedSize <= bound);
  if (code != 0)
  {
    // Only the refusals the parameters explain.
    check(packedSize == 0);
    return 0;
  }

  // The block the codec took: with Columns and Rows it may be shorter than the source.
  std::size_t blockSize = rawSize;
  if (setup.columns != 0 && setup.rows != 0 && codec.GetName() != "12bit" && codec.GetName() != "LZ4" &&
      codec.GetName() != "Zlib" && codec.GetName() != "Uncompressed")
    blockSize = static_cast<std::size_t>(setup.columns * setup.rows * 2);
  if (codec.GetName() == "IMX" && setup.columns != 0 && setup.rows == 0)
    blockSize = rawSize / 2 / setup.columns * setup.columns * 2;
  if (codec.GetName() == "IMX" && setup.columns == 0)
    codec.SetParameters({{"Columns", qulonglong(rawSize / 2)}, {"Rows", 1}});
  if (codec.GetName() == "IMX" && setup.columns != 0 && setup.rows == 0)
    codec.SetParameters({{"Rows", qulonglong(rawSize / 2 / setup.columns)}});
  if (codec.GetName() == "FixedBitsOfWord" && setup.rows == 0)
    blockSize = 0;

  const auto packedCopy = copyOf(packed.get(), packedSize);
  std::unique_ptr<uint8_t[]> back(new uint8_t[blockSize == 0 ? 1 : blockSize]);
  unsigned long long backSize = blockSize;
  check(codec.Decompress(packedCopy.get(), packedSize, back.get(), backSize) == 0);
  check(backSize == blockSize);
  const std::vector<uint8_t> expected = expectedRoundTrip(codec, setup, raw.get(), blockSize);
  check(blockSize == 0 || std::memcmp(back.get(), expected.data(), blockSize) == 0);

  // A tighter destination: the same stream, or a refusal that writes nothing.
  const unsigned long long tight = packedSize * setup.capacity / 256;
  std::unique_ptr<uint8_t[]> small(new uint8_t[tight == 0 ? 1 : tight]);
  unsigned long long smallSize = tight;
  configure(codec, setup);
  const uint32_t smallCode = codec.Compress(raw.get(), rawSize, small.get(), smallSize);
  check(smallSize <= tight);
  if (smallCode == 0 && smallSize != 0)
    check(smallSize == packedSize && std::memcmp(small.get(), packed.get(), smallSize) == 0);
  return 0;
}

} // namespace fuzz
