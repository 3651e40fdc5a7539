// What the IMX coder's files share: the tokens, the word-by-word encoder, the target
// macros, the settings and the functions one file calls in another; not installed.
#pragma once

#include <Core/Common/Compression/ImxCoder_p.h>

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define RTE_IMX_X86 1
// The vector loops also use the bit instructions every processor with AVX2 has.
#define RTE_IMX_VECTOR "avx2,bmi,bmi2,popcnt,pclmul"
// The AVX-512 loops: the encoder's group kernel and the wide and dense decoders.
#define RTE_IMX_WIDE "avx2,bmi,bmi2,popcnt,pclmul,avx512f,avx512bw,avx512vl,avx512vbmi,avx512vbmi2"
#endif

// g++ 12's AVX-512 headers start some values from themselves on purpose ("undefined"),
// which its warnings take for a mistake around the AVX-512 loops.
#if defined(__GNUC__) && !defined(__clang__)
#define RTE_IMX_WIDE_BEGIN                                                                                             \
  _Pragma("GCC diagnostic push") _Pragma("GCC diagnostic ignored \"-Wuninitialized\"")                                 \
      _Pragma("GCC diagnostic ignored \"-Wmaybe-uninitialized\"")
#define RTE_IMX_WIDE_END _Pragma("GCC diagnostic pop")
#else
#define RTE_IMX_WIDE_BEGIN
#define RTE_IMX_WIDE_END
#endif

namespace RTE::ImxCoder::detail
{

constexpr uint8_t literalToken = 0x80;
constexpr uint8_t literalRunToken = 0x7F;
constexpr uint8_t nibbleToken = 0x81;
constexpr uint8_t nibbleEnd = 0x08;
constexpr unsigned longestLiteralRun = 255;
constexpr std::size_t shortestNibbleRun = 7;

// The loops chosen by setVectorLoops (ImxCoder.cpp).
extern std::atomic<VectorLoops> vectorLoopsChoice;

inline unsigned loadWord(const uint8_t* p)
{
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ == __ORDER_LITTLE_ENDIAN__
  uint16_t word;
  std::memcpy(&word, p, 2);
  return word;
#else
  return static_cast<unsigned>(p[0]) | (static_cast<unsigned>(p[1]) << 8);
#endif
}

inline bool isSmall(int delta)
{
  return static_cast<unsigned>(delta + 7) <= 14;
}

inline bool fitsByte(int delta)
{
  return static_cast<unsigned>(delta + 126) <= 252;
}

// Rewrites the last count literal tokens (0x80, low, high) before end as one run token
// (0x7F, count, words); returns the new end.
inline uint8_t* foldLiterals(uint8_t* end, unsigned count)
{
  uint8_t* run = end - 3 * static_cast<std::size_t>(count);
  const uint8_t first[2] = {run[1], run[2]};
  run[0] = literalRunToken;
  run[1] = static_cast<uint8_t>(count);
  run[2] = first[0];
  run[3] = first[1];
  // Word i moves from 3i + 1 to 2i + 2: never ahead of what is still to be read.
  for (std::size_t i = 1; i < count; ++i)
  {
    run[2 * i + 2] = run[3 * i + 1];
    run[2 * i + 3] = run[3 * i + 2];
  }
  return run + 2 + 2 * static_cast<std::size_t>(count);
}

// Rewrites a run of length one-byte small deltas starting at run as a nibble block;
// returns the new end. An even run keeps its first delta as a byte. With SSE2, step
// pairs at a time (8 or 16): the last store may write up to step - 1 bytes past the
// block's end (the caller keeps anything it needs from there), and the loads reach up
// to 2 * step - 3 bytes past the run. With 8, the 3 bytes per word of the output always
// leave room for that; the vector loops, which stop well before the end, take 16.
template <std::size_t step = 8>
inline uint8_t* packNibbles(uint8_t* run, std::size_t length)
{
  const std::size_t even = (length & 1) ^ 1; // without a branch: the parity is random
  run += even;
  length -= even;
  const std::size_t pairs = (length - 1) / 2;
  // Read before the pair stores can reach it.
  const auto last = static_cast<uint8_t>((run[length - 1] << 4) | nibbleEnd);
#if defined(__SSE2__)
  // Pairs i .. i + step - 1 are read from 2i on and written from i + 1 on: never ahead
  // of the reading. Each little-endian word of two deltas gives (first << 4) | (second &
  // 0xF). A run has at least 3 pairs, so the first step needs no test.
  static_assert(step == 8 || step == 16);
  const __m128i low = _mm_set1_epi16(0x0F);
  const auto packPairs = [&](const uint8_t* from)
  {
    const __m128i words = _mm_loadu_si128(reinterpret_cast<const __m128i*>(from));
    return _mm_or_si128(_mm_slli_epi16(_mm_and_si128(words, low), 4), _mm_and_si128(_mm_srli_epi16(words, 8), low));
  };
  std::size_t i = 0;
  do
  {
    const __m128i first = packPairs(run + 2 * i);
    if constexpr (step == 8)
      _mm_storel_epi64(reinterpret_cast<__m128i*>(run + 1 + i), _mm_packus_epi16(first, first));
    else
      _mm_storeu_si128(reinterpret_cast<__m128i*>(run + 1 + i), _mm_packus_epi16(first, packPairs(run + 2 * i + 16)));
    i += step;
  } while (i < pairs);
#else
  // Pair i is read from 2i, 2i + 1 and written at i + 1: never ahead of the reading.
  const uint8_t firstHigh = run[0];
  for (std::size_t i = 0; i < pairs; ++i)
  {
    const uint8_t high = i == 0 ? firstHigh : run[2 * i];
    run[i + 1] = static_cast<uint8_t>((high << 4) | (run[2 * i + 1] & 0x0F));
  }
#endif
  run[0] = nibbleToken;
  run[pairs + 1] = last;
  return run + pairs + 2;
}

// The serial encoder's state between calls: previous is the running value, pending the
// number of literal tokens already written just before the output that may still fold.
struct EncoderState
{
  unsigned previous = 0;
  unsigned pending = 0;
};

// At most 32 bytes, kept while the bytes before them are rewritten, then stored lower.
struct HeldBytes
{
#if defined(__SSE2__)
  __m128i low, high;
  HeldBytes(const uint8_t* from, std::size_t) :
      low(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from))),
      high(_mm_loadu_si128(reinterpret_cast<const __m128i*>(from + 16)))
  {
  }
  // All 32 bytes: they came from higher up, so the room is there.
  void store(uint8_t* to, std::size_t) const
  {
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to), low);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(to + 16), high);
  }
#else
  uint8_t bytes[32];
  HeldBytes(const uint8_t* from, std::size_t count)
  {
    std::memcpy(bytes, from, count);
  }
  void store(uint8_t* to, std::size_t count) const
  {
    std::memcpy(to, bytes, count);
  }
#endif
};

// The word-by-word encoder; the vector loops use it for the words they do not take.
struct Encoder
{
  uint8_t* out;
  unsigned previous;
  unsigned pending;
  std::size_t runLength = 0; // the open run: its one-byte small deltas end at out

  [[gnu::always_inline]] inline void writeLiteral(unsigned word)
  {
    out[0] = literalToken;
    out[1] = static_cast<uint8_t>(word);
    out[2] = static_cast<uint8_t>(word >> 8);
    out += 3;
    if (++pending == longestLiteralRun)
    {
      out = foldLiterals(out, pending);
      pending = 0;
    }
  }

  [[gnu::always_inline]] inline void flushLiterals()
  {
    if (pending >= 3)
      out = foldLiterals(out, pending);
    pending = 0;
  }

  // last: the row's last word, which closes any run.
  [[gnu::always_inline]] inline void step(unsigned word, bool last)
  {
    const int delta = static_cast<int>(word) - static_cast<int>(previous);
    previous = word;
    if (isSmall(delta) && !last)
    {
      if (pending != 0)
        flushLiterals();
      ++runLength;
      *out++ = static_cast<uint8_t>(delta);
      return;
    }
    if (runLength >= shortestNibbleRun)
      out = packNibbles(out - runLength, runLength);
    runLength = 0;
    if (fitsByte(delta))
    {
      if (pending != 0)
        flushLiterals();
      *out++ = static_cast<uint8_t>(delta);
    }
    else
    {
      writeLiteral(word);
    }
  }

  // The delta bytes of count words are stored at out (flushed literals before them);
  // small is the bit mask of their small deltas, closes (bit 32 + i for word i) the words
  // at which a run of at least 7 ends. Packs those runs in place and moves the bytes
  // after each one up.
  [[gnu::always_inline]] inline void takeDeltaBytes(unsigned count, uint32_t small, uint64_t closes)
  {
    uint8_t* const base = out;
    std::size_t moved = 0; // bytes the block has moved up by packing
    while (closes != 0)
    {
      const unsigned i = static_cast<unsigned>(__builtin_ctzll(closes)) - 32;
      closes &= closes - 1;
      const uint32_t othersBefore = ~small & ((1u << i) - 1);
      // The run began after the last other word of the block or, without one, it is the
      // open run. Chosen without a branch: which it is follows no pattern. first is the
      // bit length of othersBefore (0 for none).
      const auto first = static_cast<unsigned>(63 - __builtin_clzll((uint64_t{othersBefore} << 1) | 1));
      const std::size_t before = runLength & (std::size_t{0} - (othersBefore == 0));
      uint8_t* const start = base + first - moved - before;
      const std::size_t length = before + i - first;
      uint8_t* const rest = base + i - moved;
      const HeldBytes held(rest, count - i); // the packing may write over them
      uint8_t* const packedEnd = packNibbles<16>(start, length);
      held.store(packedEnd, count - i);
      moved += static_cast<std::size_t>(rest - packedEnd);
    }
    out = base + count - moved;
    const uint32_t all = count == 32 ? 0xFFFFFFFFu : (1u << count) - 1;
    // The run still open is the small deltas at the end of the block.
    if (small == all)
      runLength += count;
    else
      runLength = static_cast<std::size_t>(__builtin_clz(~(small << (32 - count))));
  }

  // Bits 32 + i of the result: word i of a block of 32 ends a run of 7 or more small
  // deltas (the run open before the block counts).
  [[gnu::always_inline]] inline uint64_t runCloses(uint64_t small) const
  {
    const uint64_t carried = runLength >= 32 ? 0xFFFFFFFFull : (0xFFFFFFFFull << (32 - runLength)) & 0xFFFFFFFFull;
    const uint64_t runs = (small << 32) | carried;
    const uint64_t two = runs & (runs << 1), four = two & (two << 2), seven = four & (four << 3);
    return (seven << 1) & ~runs;
  }
};

enum class EncoderLoops
{
  Portable,
  Blocks,
  Groups,
  WideGroups
};

#if defined(RTE_IMX_X86)
// The run-time checks (ImxCoder.cpp).
bool vectorLoops();
bool wideSupported();
bool wideLoops();
#endif

// The encoder choice, the serial encoder's rows and the literal test the parallel
// encoder needs for its pieces (ImxEncoder.cpp).
EncoderLoops chooseEncoder(const uint8_t* source, std::size_t words);
uint8_t* encodeRows(const uint8_t* source, std::size_t rows, std::size_t columns, EncoderState& state, uint8_t* out,
                    EncoderLoops loops);
bool isLiteral(const uint8_t* source, std::size_t index);

} // namespace RTE::ImxCoder::detail
