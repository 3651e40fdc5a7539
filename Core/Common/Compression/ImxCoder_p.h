// The IMX token stream: serial encoder, row-parallel encoder and decoder; not installed.
// The format and the parallel split are described in DESIGN.md.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <cstddef>
#include <cstdint>

namespace RTE::ImxCoder
{

// Most bytes the encoder writes for the given number of words (every word a literal).
constexpr std::size_t maxEncodedSize(std::size_t words)
{
  return 3 * words;
}

// Encodes rows x columns words (little-endian bytes at source) into destination, which
// holds at least maxEncodedSize(rows * columns) bytes. Returns the bytes written.
std::size_t encode(const uint8_t* source, std::size_t rows, std::size_t columns, uint8_t* destination);

// The same stream, the rows split among threads (threads <= 1: serial). The output is
// byte for byte the serial encoder's.
std::size_t encodeParallel(const uint8_t* source, std::size_t rows, std::size_t columns, uint8_t* destination,
                           unsigned threads);

enum class DecodeResult
{
  Ok,
  Truncated, // the source ends inside the block
  Corrupt    // a token describes words beyond the block
};

// Decodes words words into destination; consumed tells how many source bytes were read.
DecodeResult decode(const uint8_t* source, std::size_t sourceSize, uint8_t* destination, std::size_t words,
                    std::size_t& consumed);

// Which vector loops run, for tests and benchmarks: those that suit the data, judged from
// a sample of it (the default); the block encoder and the AVX2 decoder; or the group
// encoder and, with AVX-512, the wide decoder.
enum class VectorLoops
{
  Chosen,
  Blocks,
  Groups
};
CORECOMMON_EXPORT void setVectorLoops(VectorLoops loops);

// Whether the AVX-512 loops may run where the processor has them (the default); off,
// the AVX2 loops run. For tests and benchmarks.
CORECOMMON_EXPORT void allowAvx512(bool allowed);
// Whether this processor and system can run the AVX-512 loops.
CORECOMMON_EXPORT bool hasAvx512();

// The number of threads the codec uses for the parallel encoder: 0 (the default) means
// one per processor. For tests and benchmarks.
CORECOMMON_EXPORT void setParallelThreads(unsigned threads);
unsigned parallelThreads(std::size_t rows);

} // namespace RTE::ImxCoder
