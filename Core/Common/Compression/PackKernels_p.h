// Inner loops of the 12bit and FixedBitsOfWord formats, with a portable version and an
// AVX2 version picked at run time; not installed. Every function reads and writes
// exactly the bytes its counts describe (the callers check the sizes).
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <cstddef>
#include <cstdint>

namespace RTE::PackKernels
{

// 12bit: groups of 4 source bytes (two words) to 3 bytes, and back.
void pack12bit(const uint8_t* source, std::size_t groups, uint8_t* destination);
void unpack12bit(const uint8_t* source, std::size_t groups, uint8_t* destination);

// FixedBitsOfWord, 8 bits: pairs of words (shifted right by start, clamped or wrapped)
// to pairs of bytes.
void packFixed8(const uint8_t* source, std::size_t pairs, unsigned start, bool wrap, uint8_t* destination);
// FixedBitsOfWord, 12 bits: groups of four words to 6 bytes.
void packFixed12(const uint8_t* source, std::size_t groups, unsigned start, bool wrap, uint8_t* destination);
// FixedBitsOfWord, 16 bits: words shifted right by start.
void packFixed16(const uint8_t* source, std::size_t words, unsigned start, uint8_t* destination);
// The reverse: every value shifted left by start back to its place in the word.
void unpackFixed8(const uint8_t* source, std::size_t words, unsigned start, uint8_t* destination);
void unpackFixed12(const uint8_t* source, std::size_t groups, unsigned start, uint8_t* destination);
void unpackFixed16(const uint8_t* source, std::size_t words, unsigned start, uint8_t* destination);

// Value of one word after the shift, clamped to or wrapped into bits.
inline uint16_t fixedValue(uint16_t word, unsigned start, unsigned bits, bool wrap)
{
  const unsigned value = static_cast<unsigned>(word) >> start;
  const unsigned top = (1u << bits) - 1;
  return static_cast<uint16_t>(wrap ? (value & top) : (value > top ? top : value));
}

// For tests and benchmarks: true forces the portable loops even where AVX2 is there.
CORECOMMON_EXPORT void setPortableOnly(bool portableOnly);
// Whether the AVX2 loops run (the processor has AVX2 and nothing forces the portable ones).
CORECOMMON_EXPORT bool usesAvx2();

} // namespace RTE::PackKernels
