#include <Core/Common/Compression/ImxCoder_p.h>

#include <Core/Common/Compression/PackKernels_p.h>
#include <Core/Common/Utilities/InstructionSets.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstring>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <thread>
#include <vector>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define RTE_IMX_X86 1
// The vector loops also use the bit instructions every processor with AVX2 has.
#define RTE_IMX_VECTOR "avx2,bmi,bmi2,popcnt,pclmul"
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

namespace RTE::ImxCoder
{
namespace
{

constexpr uint8_t literalToken = 0x80;
constexpr uint8_t literalRunToken = 0x7F;
constexpr uint8_t nibbleToken = 0x81;
constexpr uint8_t nibbleEnd = 0x08;
constexpr unsigned longestLiteralRun = 255;
constexpr std::size_t shortestNibbleRun = 7;

std::atomic<unsigned> configuredThreads{0};
std::atomic<bool> avx512Allowed{true};
std::atomic<VectorLoops> vectorLoopsChoice{VectorLoops::Chosen};

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

// Where the SSE2 loop of a row stops: before its last word, and early enough that its
// wide loads and stores (less than 48 bytes past the output before a block) stay inside
// the 3 bytes per word of the whole call. left is the words of the call from the row on.
inline std::size_t vectorEnd(std::size_t columns, std::size_t left)
{
  constexpr std::size_t margin = 16;
  return std::min(columns - 1, left > margin ? left - margin : 0);
}

uint8_t* encodeRowsPortable(const uint8_t* source, std::size_t rows, std::size_t columns, EncoderState& state,
                            uint8_t* out)
{
  Encoder e{out, state.previous, state.pending};
  for (std::size_t row = 0; row < rows; ++row, source += 2 * columns)
  {
    std::size_t column = 0;
#if defined(__SSE2__)
    // Sixteen words at a time: the longest prefix of one-byte deltas is written as its 16
    // delta bytes at once, then the runs of 7 or more small deltas closing inside it are
    // packed. A word that needs a literal goes the plain way. Word 0 does too (its
    // predecessor is not in this row).
    e.step(loadWord(source), columns == 1);
    column = 1;
    const std::size_t stop = vectorEnd(columns, (rows - row) * columns);
    while (column + 16 <= stop)
    {
      const uint8_t* at = source + 2 * column;
      const __m128i current0 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at));
      const __m128i current1 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + 16));
      const __m128i before0 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at - 2));
      const __m128i before1 = _mm_loadu_si128(reinterpret_cast<const __m128i*>(at + 14));
      // |delta| as unsigned 16-bit values: one of the two saturated differences is 0.
      const __m128i size0 = _mm_or_si128(_mm_subs_epu16(current0, before0), _mm_subs_epu16(before0, current0));
      const __m128i size1 = _mm_or_si128(_mm_subs_epu16(current1, before1), _mm_subs_epu16(before1, current1));
      const __m128i zero = _mm_setzero_si128();
      const auto fitMask = static_cast<uint32_t>(
          _mm_movemask_epi8(_mm_packs_epi16(_mm_cmpeq_epi16(_mm_subs_epu16(size0, _mm_set1_epi16(126)), zero),
                                            _mm_cmpeq_epi16(_mm_subs_epu16(size1, _mm_set1_epi16(126)), zero))));
      const unsigned count = fitMask == 0xFFFF ? 16 : static_cast<unsigned>(__builtin_ctz(~fitMask));
      if (count == 0)
      {
        // Literals: take all those at the block's start the plain way.
        const unsigned literals = fitMask == 0 ? 16 : static_cast<unsigned>(__builtin_ctz(fitMask));
        for (const std::size_t end = column + literals; column < end; ++column)
          e.step(loadWord(source + 2 * column), false);
        continue;
      }
      if (e.pending != 0)
        e.flushLiterals();
      const uint32_t prefix = count == 16 ? 0xFFFFu : (1u << count) - 1;
      const uint32_t small = static_cast<uint32_t>(_mm_movemask_epi8(
                                 _mm_packs_epi16(_mm_cmpeq_epi16(_mm_subs_epu16(size0, _mm_set1_epi16(7)), zero),
                                                 _mm_cmpeq_epi16(_mm_subs_epu16(size1, _mm_set1_epi16(7)), zero)))) &
                             prefix;
      const __m128i mask = _mm_set1_epi16(0xFF);
      const __m128i bytes = _mm_packus_epi16(_mm_and_si128(_mm_sub_epi16(current0, before0), mask),
                                             _mm_and_si128(_mm_sub_epi16(current1, before1), mask));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(e.out), bytes);
      e.takeDeltaBytes(count, small, e.runCloses(small) & (static_cast<uint64_t>(prefix) << 32));
      e.previous = loadWord(at + 2 * (count - 1));
      column += count;
    }
#endif
    for (; column < columns; ++column)
      e.step(loadWord(source + 2 * column), column + 1 == columns);
  }
  state.previous = e.previous;
  state.pending = e.pending;
  return e.out;
}

#if defined(RTE_IMX_X86)

// Whether the AVX2 loops run (they may be switched off for tests and benchmarks).
bool vectorLoops()
{
  using Feature = RTE::InstructionSets::E_Feature;
  static const bool bits = RTE::InstructionSets::host().has(Feature::BMI1) &&
                           RTE::InstructionSets::host().has(Feature::BMI2) &&
                           RTE::InstructionSets::host().has(Feature::POPCNT) && __builtin_cpu_supports("pclmul");
  return bits && PackKernels::usesAvx2();
}

__attribute__((target(RTE_IMX_VECTOR))) inline __m256i load(const uint8_t* p)
{
  return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
}

// The 32 words of a block: their one-byte deltas (the low bytes of the wrapped
// differences) and bit masks of the words whose delta fits a byte and is small.
struct Block
{
  __m256i bytes;
  uint32_t fit, small;
};

__attribute__((target(RTE_IMX_VECTOR))) inline Block classify(const uint8_t* at)
{
  // The plain difference of two words is the saturated signed difference of the words
  // less 0x8000: exact where it matters (-126..126), far outside where it does not. Its
  // low byte is a one-byte delta. packs works per 128-bit lane; the permute puts the 32
  // results back in order.
  const __m256i bias = _mm256_set1_epi16(static_cast<short>(0x8000));
  const __m256i difference0 = _mm256_subs_epi16(_mm256_xor_si256(load(at), bias), _mm256_xor_si256(load(at - 2), bias));
  const __m256i difference1 =
      _mm256_subs_epi16(_mm256_xor_si256(load(at + 32), bias), _mm256_xor_si256(load(at + 30), bias));
  const __m256i bytes = _mm256_permute4x64_epi64(_mm256_packs_epi16(difference0, difference1), 0xD8);
  // |delta| as an unsigned byte: -128 (from -32768..-128) gives 128.
  const __m256i sizes = _mm256_abs_epi8(bytes);
  const __m256i fit = _mm256_cmpeq_epi8(_mm256_min_epu8(sizes, _mm256_set1_epi8(126)), sizes);
  const __m256i small = _mm256_cmpeq_epi8(_mm256_min_epu8(sizes, _mm256_set1_epi8(7)), sizes);
  return {bytes, static_cast<uint32_t>(_mm256_movemask_epi8(fit)), static_cast<uint32_t>(_mm256_movemask_epi8(small))};
}

// Pick-up patterns for bytesFrom: byte j of the first picks byte j of the low half
// (j < 16), of the second byte j - 16 of the high half (16 <= j < 32); others give 0.
struct alignas(64) ShiftTables
{
  uint8_t low[96], high[96];
  constexpr ShiftTables() : low(), high()
  {
    for (int j = 0; j < 96; ++j)
    {
      low[j] = j < 16 ? static_cast<uint8_t>(j) : 0x80;
      high[j] = j >= 16 && j < 32 ? static_cast<uint8_t>(j - 16) : 0x80;
    }
  }
};
constexpr ShiftTables shiftTables;

// Bytes from, from + 1, ... of the 32 bytes whose halves are in both lanes of low and
// high (0 past the end), without a round trip through memory; from <= 64.
__attribute__((target(RTE_IMX_VECTOR))) inline __m256i bytesFrom(__m256i low, __m256i high, unsigned from)
{
  return _mm256_or_si256(
      _mm256_shuffle_epi8(low, _mm256_loadu_si256(reinterpret_cast<const __m256i*>(shiftTables.low + from))),
      _mm256_shuffle_epi8(high, _mm256_loadu_si256(reinterpret_cast<const __m256i*>(shiftTables.high + from))));
}

// Stores the token of the literal at word index (32: none) and the delta bytes after it,
// for a block whose bytes start at o and in which shift bytes of earlier tokens come
// before it. A missing literal writes only past the block's bytes.
__attribute__((target(RTE_IMX_VECTOR), always_inline)) inline void
insertLiteral(uint8_t* o, const uint8_t* at, __m256i low, __m256i high, unsigned index, unsigned shift)
{
  const uint32_t token = literalToken | (loadWord(at + 2 * index) << 8);
  std::memcpy(o + index + shift, &token, 4);
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(o + index + shift + 3), bytesFrom(low, high, index + 1));
}

// The quick way for the first count words of a block: at most four literals, no literal
// streak of three (with those pending before) and no run of 7 small deltas closing. Then
// nothing folds or packs, and pending literals before the block just end. The delta
// bytes are stored, then for each literal its token and the delta bytes after it, 2
// bytes further up than the one before: the first always (a missing literal counts as
// word 32 and writes only past the block's bytes, so half the blocks, which have none,
// need no branch), the others when there are any. Returns false, having written
// nothing, for any other block.
// tail: the small-delta bits of the 32 words before the block (the open run at its top);
// the block's own bits after a full block.
__attribute__((target(RTE_IMX_VECTOR), always_inline)) inline bool
quickBlock(Encoder& e, const uint8_t* at, const Block& block, unsigned count, uint32_t& tail)
{
  const uint32_t valid = count == 32 ? 0xFFFFFFFFu : (1u << count) - 1;
  const uint32_t literals = ~block.fit & valid;
  const uint32_t second = literals & (literals - 1); // the literals from the second one on
  const uint32_t third = second & (second - 1);
  const uint32_t small = block.small & valid;
  // A run of 7 (the open one included) closes inside the block.
  const uint64_t runs = (uint64_t{small} << 32) | tail;
  const uint64_t two = runs & (runs << 1), four = two & (two << 2), seven = four & (four << 3);
  if (((seven << 1) & ~runs & (uint64_t{valid} << 32)) != 0)
    return false;
  // Branches on what is rare: pending literals, more than two literals.
  if (e.pending != 0 && e.pending + _tzcnt_u32(~literals) >= 3)
    return false;
  if (third != 0)
  {
    const uint32_t fourth = third & (third - 1);
    if ((fourth & (fourth - 1)) != 0 || (literals & (literals >> 1) & (literals >> 2)) != 0)
      return false;
  }
  uint8_t* const o = e.out;
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(o), block.bytes);
  const __m256i low = _mm256_permute2x128_si256(block.bytes, block.bytes, 0x00);
  const __m256i high = _mm256_permute2x128_si256(block.bytes, block.bytes, 0x11);
  // tzcnt gives 32 for no literal.
  insertLiteral(o, at, low, high, _tzcnt_u32(literals), 0);
  if (second != 0)
    insertLiteral(o, at, low, high, _tzcnt_u32(second), 2);
  if (third != 0)
  {
    insertLiteral(o, at, low, high, _tzcnt_u32(third), 4);
    insertLiteral(o, at, low, high, _tzcnt_u32(third & (third - 1)), 6);
  }
  e.out = o + count + 2 * static_cast<unsigned>(__builtin_popcount(literals));
  // The literals and the small deltas at the block's end stay pending and open.
  e.pending = static_cast<unsigned>(__builtin_clz(~(literals << (32 - count))));
  e.runLength =
      small == valid ? e.runLength + count : static_cast<std::size_t>(__builtin_clz(~(small << (32 - count))));
  tail = small;
  return true;
}

// Bits 32 + i: word i of a block ends a run of at least 7 small deltas; small holds the
// block's small-delta bits, tail those of the 32 words before it.
inline uint64_t closingRuns(uint32_t small, uint32_t tail)
{
  const uint64_t runs = (uint64_t{small} << 32) | tail;
  const uint64_t two = runs & (runs << 1), four = two & (two << 2), seven = four & (four << 3);
  return (seven << 1) & ~runs & ~uint64_t{0xFFFFFFFF};
}

// The tail bits of an open run of the given length.
inline uint32_t runBits(std::size_t runLength)
{
  return runLength >= 32 ? 0xFFFFFFFFu : static_cast<uint32_t>(0xFFFFFFFFull << (32 - runLength));
}

// The literal tokens (0x80, low, high) of the ten words from words, in 32 bytes at o
// (the last two bytes are the next token's start).
__attribute__((target(RTE_IMX_VECTOR), always_inline)) inline void literalTokens(uint8_t* o, const uint8_t* words)
{
  constexpr char x = -128; // a zero byte, to be made a token
  const __m128i first = _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(words)),
                                         _mm_setr_epi8(x, 0, 1, x, 2, 3, x, 4, 5, x, 6, 7, x, 8, 9, x));
  const __m128i second = _mm_shuffle_epi8(_mm_loadu_si128(reinterpret_cast<const __m128i*>(words + 10)),
                                          _mm_setr_epi8(0, 1, x, 2, 3, x, 4, 5, x, 6, 7, x, 8, 9, x, 10));
  const __m256i tokens = _mm256_setr_epi8(x, 0, 0, x, 0, 0, x, 0, 0, x, 0, 0, x, 0, 0, x, //
                                          0, 0, x, 0, 0, x, 0, 0, x, 0, 0, x, 0, 0, x, 0);
  _mm256_storeu_si256(reinterpret_cast<__m256i*>(o), _mm256_or_si256(_mm256_set_m128i(second, first), tokens));
}

// Any other block of 32 words; returns the words taken (at least one). A block of
// one-byte deltas is stored as its 32 delta bytes, then the runs of 7 or more small
// deltas closing inside it are packed. A block with literals but no such run is written
// segment by segment: the delta bytes between literals as one wide store each, every
// literal streak as 0x80 tokens or, when it ends inside the block and nothing is pending
// before it, directly as a 0x7F run. The rest (literals and closing runs in one block,
// 255 pending literals) goes the plain way.
__attribute__((target(RTE_IMX_VECTOR), noinline)) unsigned fullBlock(Encoder& e, const uint8_t* at, Block block)
{
  const uint32_t literals = ~block.fit;
  const uint32_t small = block.small;
  const uint64_t closes = e.runCloses(small);
  if (literals == 0)
  {
    if (e.pending != 0)
      e.flushLiterals();
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(e.out), block.bytes);
    e.takeDeltaBytes(32, small, closes);
    return 32;
  }
  if (closes != 0)
  {
    // Literals and a closing run: the delta prefix as above, or the literals at the
    // block's start word by word.
    const auto count = static_cast<unsigned>(__builtin_ctz(literals));
    if (count == 0)
    {
      const unsigned streak = block.fit == 0 ? 32 : static_cast<unsigned>(__builtin_ctz(block.fit));
      e.previous = loadWord(at - 2);
      for (unsigned k = 0; k < streak; ++k)
        e.step(loadWord(at + 2 * k), false);
      return streak;
    }
    if (e.pending != 0)
      e.flushLiterals();
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(e.out), block.bytes);
    const uint32_t prefix = (1u << count) - 1;
    e.takeDeltaBytes(count, small & prefix, closes & (uint64_t{prefix} << 32));
    return count;
  }
  const __m256i low = _mm256_permute2x128_si256(block.bytes, block.bytes, 0x00);
  const __m256i high = _mm256_permute2x128_si256(block.bytes, block.bytes, 0x11);
  uint8_t* o = e.out;
  unsigned pending = e.pending;
  unsigned i = 0; // the next word to write
  for (;;)
  {
    const uint32_t ahead = i == 32 ? 0 : literals >> i << i;
    const unsigned j = ahead == 0 ? 32 : static_cast<unsigned>(__builtin_ctz(ahead));
    if (j > i)
    {
      // Delta bytes i .. j - 1 (all one-byte: no run closes in this block).
      if (pending != 0)
      {
        if (pending >= 3)
          o = foldLiterals(o, pending);
        pending = 0;
      }
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(o), bytesFrom(low, high, i));
      o += j - i;
    }
    if (j == 32)
      break;
    const uint32_t fitAhead = block.fit >> j;
    const unsigned end = fitAhead == 0 ? 32 : j + static_cast<unsigned>(__builtin_ctz(fitAhead));
    const unsigned streak = end - j;
    if (pending + streak >= longestLiteralRun)
    {
      e.out = o;
      e.pending = pending;
      for (unsigned k = j; k < end; ++k)
        e.writeLiteral(loadWord(at + 2 * k));
      o = e.out;
      pending = e.pending;
    }
    else if (end < 32 && pending == 0 && streak >= 3)
    {
      // A delta follows inside the block: the streak folds at once.
      o[0] = literalRunToken;
      o[1] = static_cast<uint8_t>(streak);
      const uint8_t* words = at + 2 * j;
      _mm256_storeu_si256(reinterpret_cast<__m256i*>(o + 2),
                          _mm256_loadu_si256(reinterpret_cast<const __m256i*>(words)));
      if (streak > 16)
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(o + 34),
                            _mm256_loadu_si256(reinterpret_cast<const __m256i*>(words + 32)));
      o += 2 + 2 * streak;
    }
    else
    {
      // Ten tokens per store, so that a streak of random length seldom needs a second
      // round: stores reach at most 29 bytes past the streak's tokens.
      for (unsigned k = 0; k < streak; k += 10)
        literalTokens(o + 3 * k, at + 2 * (j + k));
      o += 3 * streak;
      pending += streak;
    }
    i = end;
  }
  e.out = o;
  e.pending = pending;
  e.runLength = small >> 31 != 0 ? static_cast<std::size_t>(__builtin_clz(~small)) : 0;
  return 32;
}

// The AVX2 block encoder: 32 words at a time; see quickBlock and fullBlock. The blocks of a row end before its
// last word (the last block may be shorter and then only goes the quick way). A block
// reads up to 48 words from its start and writes less than 128 bytes past the output's
// end before it, which is at most 3 bytes per word taken: so when the call holds 48
// words from the block's start, every write stays inside its 3 bytes per word.
__attribute__((target(RTE_IMX_VECTOR))) uint8_t*
encodeRowsBlocks(const uint8_t* source, std::size_t rows, std::size_t columns, EncoderState& state, uint8_t* out)
{
  constexpr std::size_t reach = 48;
  Encoder e{out, state.previous, state.pending};
  for (std::size_t row = 0; row < rows; ++row, source += 2 * columns)
  {
    e.step(loadWord(source), columns == 1);
    std::size_t column = 1;
    const std::size_t left = (rows - row) * columns;
    if (left >= reach && columns > 1)
    {
      const std::size_t stop = std::min(columns - 1, left - reach + 32);
      uint32_t tail = runBits(e.runLength);
      while (column + 32 <= stop)
      {
        const uint8_t* at = source + 2 * column;
        const Block block = classify(at);
        if (block.fit == 0xFFFFFFFFu && e.pending == 0)
        {
          // 32 one-byte deltas, most blocks of a low-noise image: the runs closing in
          // the block are packed.
          _mm256_storeu_si256(reinterpret_cast<__m256i*>(e.out), block.bytes);
          e.takeDeltaBytes(32, block.small, closingRuns(block.small, tail));
          tail = block.small;
          column += 32;
        }
        else if (quickBlock(e, at, block, 32, tail))
        {
          column += 32;
        }
        else
        {
          // Through a copy, so that the encoder's state can stay in registers here.
          Encoder state = e;
          column += fullBlock(state, at, block);
          e = state;
          tail = runBits(e.runLength);
        }
      }
      if (column < stop && column + reach <= left)
      {
        const uint8_t* at = source + 2 * column;
        const auto count = static_cast<unsigned>(stop - column);
        if (quickBlock(e, at, classify(at), count, tail))
          column += count;
      }
      e.previous = loadWord(source + 2 * (column - 1));
    }
    for (; column < columns; ++column)
      e.step(loadWord(source + 2 * column), column + 1 == columns);
  }
  state.previous = e.previous;
  state.pending = e.pending;
  return e.out;
}

// The delta bytes and masks of a group of 64 words (the word before it is read too).
struct Group
{
  __m256i low, high; // one-byte deltas of words 0-31 and 32-63
  uint64_t fit, small;
};

__attribute__((target(RTE_IMX_VECTOR))) inline Group classifyGroup(const uint8_t* at)
{
  const Block low = classify(at), high = classify(at + 64);
  return {low.bytes, high.bytes, low.fit | uint64_t{high.fit} << 32, low.small | uint64_t{high.small} << 32};
}

// Bit i set for every word i of a run of at least 7 small deltas. small holds the group's
// bits, before those of the 64 words before it and after those of the 64 after it: a
// word's run is long when 7 small deltas in a row cover it, which is decided within 6
// words on either side.
[[gnu::always_inline]] inline uint64_t longRuns(uint64_t before, uint64_t small, uint64_t after)
{
  using Wide = unsigned __int128;
  // Bit i of seven: words i - 6 .. i are all small.
  const auto sevens = [](uint64_t low, uint64_t high)
  {
    const Wide all = (Wide{high} << 64) | low;
    const Wide two = all & (all << 1), four = two & (two << 2);
    return static_cast<uint64_t>((four & (four << 3)) >> 64);
  };
  Wide covered = (Wide{sevens(small, after) & 0x3F} << 64) | sevens(before, small);
  covered |= covered >> 1;
  covered |= covered >> 2;
  covered |= covered >> 3;
  return static_cast<uint64_t>(covered) & small;
}

// Bit i set where the number of words from small delta i to the end of its run (its
// last word counting 0) is odd. A run ends at the first word that is not small (zeros
// of small); terminatorOdd tells whether that word, for the run reaching past the group,
// sits at an odd place counted from the group's start.
__attribute__((target("bmi,bmi2,popcnt,pclmul"), always_inline)) inline uint64_t oddFromEnd(uint64_t small,
                                                                                            bool terminatorOdd)
{
  constexpr uint64_t oddPlaces = 0xAAAAAAAAAAAAAAAAull;
  const uint64_t ends = ~small;
  const auto count = static_cast<unsigned>(__builtin_popcountll(ends));
  // Bit k: the k-th end is at an odd place; the one past the group follows the last.
  uint64_t odd = _pext_u64(oddPlaces, ends);
  if (count < 64)
    odd |= uint64_t{terminatorOdd} << count;
  // Each end toggles to the parity of the next one; the prefix xor of the toggles
  // below a word gives the parity of the end of its run.
  const uint64_t toggles = _pdep_u64(odd ^ (odd >> 1), ends);
  // Prefix xor: the carry-less product with all ones.
  const auto prefix = static_cast<uint64_t>(_mm_cvtsi128_si64(
      _mm_clmulepi64_si128(_mm_cvtsi64_si128(static_cast<long long>(toggles)), _mm_set1_epi64x(-1), 0)));
  const uint64_t endOdd = (prefix << 1) ^ (uint64_t{0} - (odd & 1));
  // From word i to its end at e there are e - 1 - i words.
  return ~(endOdd ^ oddPlaces);
}

// What each word of a group becomes (bit i for word i). A word of a run of 7 or more
// small deltas, counted from the run's end (its last word 0), is: 0 the block's end
// byte (delta << 4 | 8); odd a pair byte (the delta before << 4 | its own), or at the
// run's first word a plain delta; even and first or second of the run the 0x81 token,
// otherwise nothing. Other words that fit a byte stay one-byte deltas; literals are the
// rest.
struct Roles
{
  uint64_t keep;     // words that give a byte
  uint64_t pair;     // ... a pair byte
  uint64_t last;     // ... a block's end byte
  uint64_t token;    // ... the 0x81 token
  uint64_t literals; // words that are literals
};

// The bits of one group of 64 words; its 64 delta bytes are kept apart.
struct GroupBits
{
  uint64_t fit, small;
};

// The roles of the groups of a row, group after group. A word is in a run of 7 or more
// when its run's first word has 6 small deltas after it (seen by the 7-wide AND of the
// bits, which may reach into the next group); from there the whole run is marked by the
// carry of an addition, which runs through it. A run reaching in from the group before
// is marked from its first bit when that group found it long.
class RowRuns
{
public:
  // small: the bits of the row's first group.
  explicit RowRuns(uint64_t small) :
      m_small(small),
      m_two(small & (small << 1)),
      m_four(m_two & (m_two << 2)),
      m_seven(m_four & (m_four << 3))
  {
  }

  // The current group's roles (count words, fit its bits), from the next group's small
  // bits (0 past the row) and whether the end of a run reaching past the group is at an
  // odd place counted from the group's start; then the next group becomes the current.
  // skipQuiet: return at once for a group without nibble blocks, a branch that pays
  // where most groups have none (brighter images) and costs where many do.
  template <bool skipQuiet>
  [[gnu::always_inline, gnu::target("bmi,bmi2,popcnt,pclmul")]] inline Roles advance(uint64_t fit, unsigned count,
                                                                                     uint64_t next, bool terminatorOdd)
  {
    const uint64_t small = m_small, before = m_before;
    const uint64_t nextTwo = next & ((next << 1) | (small >> 63));
    const uint64_t nextFour = nextTwo & ((nextTwo << 2) | (m_two >> 62));
    const uint64_t nextSeven = nextFour & ((nextFour << 3) | (m_four >> 61));
    const uint64_t shifted1 = (small << 1) | (before >> 63), shifted2 = (small << 2) | (before >> 62);
    const uint64_t first = small & ~shifted1, second = small & shifted1 & ~shifted2;
    const uint64_t seeds = first & ((m_seven >> 6) | (nextSeven << 58));
    const uint64_t inLong = ((small + seeds + (m_long >> 63 & small & 1)) ^ small) & small;
    const uint64_t valid = count == 64 ? ~uint64_t{0} : (uint64_t{1} << count) - 1;
    fit &= valid;
    m_before = small;
    m_small = next;
    m_two = nextTwo;
    m_four = nextFour;
    m_seven = nextSeven;
    m_long = inLong;
    m_blocks += inLong != 0;
    if (skipQuiet && inLong == 0)
      return {fit, 0, 0, 0, ~fit & valid};
    const uint64_t odd = oddFromEnd(small, terminatorOdd) & inLong;
    const uint64_t last = inLong & ~((small >> 1) | (next << 63));
    const uint64_t dropped = inLong & ~odd & ~last & ~first & ~second;
    return {fit & ~dropped, odd & ~first, last, inLong & ~odd & ~last & (first | second), ~fit & valid};
  }

  // The number of groups with nibble blocks so far.
  std::size_t groupsWithBlocks() const { return m_blocks; }

private:
  std::size_t m_blocks = 0;
  uint64_t m_small;                // the current group's small bits
  uint64_t m_before = 0;           // the group before's
  uint64_t m_two, m_four, m_seven; // 2, 4 and 7 small deltas in a row end at these words
  uint64_t m_long = 0;             // the group before's long-run bits
};

// Byte j of the result is 0xFF where bit j of mask is set.
__attribute__((target(RTE_IMX_VECTOR))) inline __m256i byteMask(uint32_t mask)
{
  const __m256i spread = _mm256_shuffle_epi8(_mm256_set1_epi32(static_cast<int>(mask)),
                                             _mm256_setr_epi8(0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1, 1, 1, //
                                                              2, 2, 2, 2, 2, 2, 2, 2, 3, 3, 3, 3, 3, 3, 3, 3));
  const __m256i bits = _mm256_set1_epi64x(static_cast<long long>(0x8040201008040201ull));
  return _mm256_cmpeq_epi8(_mm256_and_si256(spread, bits), bits);
}

// For each 8-bit mask, the places of its set bits in order: a byte shuffle that moves
// the kept bytes of 8 to the front. high: the same for the upper 8 bytes of a register.
struct alignas(64) CompactTables
{
  uint8_t low[256][8], high[256][8];
  constexpr CompactTables() : low(), high()
  {
    for (unsigned mask = 0; mask < 256; ++mask)
    {
      unsigned kept = 0;
      for (unsigned bit = 0; bit < 8; ++bit)
        if ((mask >> bit & 1) != 0)
        {
          low[mask][kept] = static_cast<uint8_t>(bit);
          high[mask][kept] = static_cast<uint8_t>(bit + 8);
          ++kept;
        }
      for (; kept < 8; ++kept)
        low[mask][kept] = high[mask][kept] = 0x80;
    }
  }
};
constexpr CompactTables compactTables;

// The bytes of 64 (two registers) whose bits are set in keep, written one after the
// other from out: 8 at a time, each 8 stored whole where the kept ones before it end.
// Writes up to 8 bytes past the kept ones; only the groups of 8 from first to last
// (inclusive) are stored, which must hold every kept byte.
__attribute__((target(RTE_IMX_VECTOR), always_inline)) inline uint8_t*
storeKept(__m256i low, __m256i high, uint64_t keep, uint8_t* out, unsigned first = 0, unsigned last = 7)
{
  // Kept bytes per group of 8, then their running sums: where each group goes.
  uint64_t counts = keep - ((keep >> 1) & 0x5555555555555555ull);
  counts = (counts & 0x3333333333333333ull) + ((counts >> 2) & 0x3333333333333333ull);
  counts = (counts + (counts >> 4)) & 0x0F0F0F0F0F0F0F0Full;
  const uint64_t ends = counts * 0x0101010101010101ull; // byte c: kept in groups 0..c
  const uint64_t starts = ends << 8;
  const __m128i lanes[4] = {_mm256_castsi256_si128(low), _mm256_extracti128_si256(low, 1), _mm256_castsi256_si128(high),
                            _mm256_extracti128_si256(high, 1)};
#pragma GCC unroll 8
  for (unsigned c = first; c <= last; ++c)
  {
    const auto mask = static_cast<unsigned>(keep >> (8 * c) & 0xFF);
    const uint8_t(&table)[256][8] = (c & 1) == 0 ? compactTables.low : compactTables.high;
    const __m128i packed =
        _mm_shuffle_epi8(lanes[c / 2], _mm_loadl_epi64(reinterpret_cast<const __m128i*>(table[mask])));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(out + (starts >> (8 * c) & 0xFF)), packed);
  }
  return out + (ends >> (8 * last) & 0xFF);
}

// The final bytes of 32 words from their delta bytes (before: those of the 32 words
// before them): pair bytes, block ends and 0x81 tokens where their bits are set.
__attribute__((target(RTE_IMX_VECTOR))) inline __m256i finalBytes(__m256i deltas, __m256i before, uint64_t pair,
                                                                  uint64_t last, uint64_t token)
{
  const __m256i nibbleLow = _mm256_set1_epi8(0x0F), nibbleHigh = _mm256_set1_epi8(static_cast<char>(0xF0));
  // The delta before each word: the bytes moved up by one, across the lanes.
  const __m256i previous = _mm256_alignr_epi8(deltas, _mm256_permute2x128_si256(before, deltas, 0x21), 15);
  const __m256i pairs = _mm256_or_si256(_mm256_and_si256(_mm256_slli_epi16(previous, 4), nibbleHigh),
                                        _mm256_and_si256(deltas, nibbleLow));
  const __m256i ends =
      _mm256_or_si256(_mm256_and_si256(_mm256_slli_epi16(deltas, 4), nibbleHigh), _mm256_set1_epi8(nibbleEnd));
  __m256i bytes = _mm256_blendv_epi8(deltas, pairs, byteMask(static_cast<uint32_t>(pair)));
  bytes = _mm256_blendv_epi8(bytes, ends, byteMask(static_cast<uint32_t>(last)));
  return _mm256_blendv_epi8(bytes, _mm256_set1_epi8(static_cast<char>(nibbleToken)),
                            byteMask(static_cast<uint32_t>(token)));
}

// The words of a group from i on: those before the next literal (up to end) and the
// literal streak that follows (up to streakEnd).
inline void nextStretch(uint64_t literals, unsigned count, unsigned i, unsigned& end, unsigned& streakEnd)
{
  const uint64_t literalsAhead = literals >> i << i;
  end = literalsAhead == 0 ? count : static_cast<unsigned>(__builtin_ctzll(literalsAhead));
  const uint64_t others = end == 64 ? 0 : ~literals >> end << end; // bits past count count as others
  streakEnd = others == 0 ? count : std::min(count, static_cast<unsigned>(__builtin_ctzll(others)));
}

// Bits from .. to - 1.
inline uint64_t bitRange(unsigned from, unsigned to)
{
  return (to == 64 ? ~uint64_t{0} : (uint64_t{1} << to) - 1) & ~((uint64_t{1} << from) - 1);
}

// A stretch of groups of a row, classified before any of it is written, so that the
// roles of every group are known from its neighbours' bits: the delta bytes of group i
// at deltas + 64 * (i + 1), those of the group before the stretch at deltas.
struct Stretch
{
  static constexpr std::size_t most = 64; // groups

  const uint8_t* rowWords;
  std::size_t columns;
  std::size_t first; // the stretch's first group in the row
  std::size_t groups;
  alignas(64) uint8_t deltas[64 * (most + 2)];
  GroupBits bits[most + 1]; // and the group after the stretch (0 past the row)
  Roles roles[most];

  unsigned count(std::size_t i) const
  {
    return static_cast<unsigned>(std::min<std::size_t>(64, columns - 64 * (first + i)));
  }
};

// Where group g of a row is read from (the word before it too): the row itself, or a
// copy of its words when the group starts the call (its word before is the running
// value, previous) or ends the row short, so that no wide load reaches outside the
// source.
class GroupSource
{
public:
  GroupSource(const uint8_t* rowWords, std::size_t columns, std::size_t g, bool callStart, unsigned previous) :
      m_count(static_cast<unsigned>(std::min<std::size_t>(64, columns - 64 * g))),
      m_rowEnd(64 * g + m_count == columns),
      m_at(rowWords + 128 * g)
  {
    if (m_count < 64 || (callStart && g == 0))
    {
      const unsigned before = g == 0 ? previous : loadWord(m_at - 2);
      m_padded[0] = static_cast<uint8_t>(before);
      m_padded[1] = static_cast<uint8_t>(before >> 8);
      std::memcpy(m_padded + 2, m_at, 2 * std::size_t{m_count});
      std::memset(m_padded + 2 + 2 * std::size_t{m_count}, 0, sizeof m_padded - 2 - 2 * std::size_t{m_count});
      m_at = m_padded + 2;
    }
  }
  GroupSource(const GroupSource&) = delete;
  GroupSource& operator=(const GroupSource&) = delete;

  const uint8_t* words() const { return m_at; }

  // The group's bits, none past its words; small ends at the row's last word, which
  // closes any run.
  GroupBits masked(uint64_t fit, uint64_t small) const
  {
    const uint64_t valid = m_count == 64 ? ~uint64_t{0} : (uint64_t{1} << m_count) - 1;
    small &= valid;
    if (m_rowEnd)
      small &= ~(uint64_t{1} << (m_count - 1));
    return {fit & valid, small};
  }

private:
  unsigned m_count;
  bool m_rowEnd;
  const uint8_t* m_at;
  alignas(64) uint8_t m_padded[2 + 128 + 62]; // set only when used
};

struct Avx2Groups
{
  __attribute__((target(RTE_IMX_VECTOR))) static void classify(const uint8_t* rowWords, std::size_t columns,
                                                               std::size_t first, std::size_t groups, bool callStart,
                                                               unsigned previous, GroupBits* bits, uint8_t* deltas)
  {
    for (std::size_t g = first; g < first + groups; ++g, ++bits, deltas += 64)
    {
      const GroupSource source(rowWords, columns, g, callStart, previous);
      const Group group = classifyGroup(source.words());
      _mm256_store_si256(reinterpret_cast<__m256i*>(deltas), group.low);
      _mm256_store_si256(reinterpret_cast<__m256i*>(deltas + 32), group.high);
      *bits = source.masked(group.fit, group.small);
    }
  }

  __attribute__((target(RTE_IMX_VECTOR))) static void write(Encoder& e, const Stretch& stretch, std::size_t narrowFrom)
  {
    for (std::size_t i = 0; i < stretch.groups; ++i)
    {
      const Roles& r = stretch.roles[i];
      const uint8_t* deltas = stretch.deltas + 64 * (i + 1);
      const __m256i low = finalBytes(load(deltas), load(deltas - 32), r.pair, r.last, r.token);
      const __m256i high = finalBytes(load(deltas + 32), load(deltas), r.pair >> 32, r.last >> 32, r.token >> 32);
      const bool wide = i < narrowFrom;
      if (r.literals == 0 && wide)
      {
        if (e.pending != 0)
          e.flushLiterals();
        e.out = storeKept(low, high, r.keep, e.out);
        continue;
      }
      alignas(32) uint8_t bytes[64];
      _mm256_store_si256(reinterpret_cast<__m256i*>(bytes), low);
      _mm256_store_si256(reinterpret_cast<__m256i*>(bytes + 32), high);
      const unsigned count = stretch.count(i);
      const uint8_t* words = stretch.rowWords + 128 * (stretch.first + i);
      for (unsigned k = 0, end = 0, streakEnd = 0; k < count; k = streakEnd)
      {
        nextStretch(r.literals, count, k, end, streakEnd);
        if (end > k)
        {
          if (e.pending != 0)
            e.flushLiterals();
          if (wide)
          {
            e.out = storeKept(low, high, r.keep & bitRange(k, end), e.out, k / 8, (end - 1) / 8);
          }
          else
          {
            for (unsigned j = k; j < end; ++j)
              if ((r.keep >> j & 1) != 0)
                *e.out++ = bytes[j];
          }
        }
        for (unsigned j = end; j < streakEnd; ++j)
          e.writeLiteral(loadWord(words + 2 * j));
      }
    }
  }
};

// Encodes the rows a stretch of groups at a time: the groups are classified (with the
// group after the stretch, and as many more as a run reaching past the stretch needs to
// find its end), their roles follow from the bits (see RowRuns), then the kernel writes
// them.
template <typename Kernel>
__attribute__((target("bmi,bmi2,popcnt,pclmul"))) uint8_t*
encodeRowsInGroups(const uint8_t* source, std::size_t rows, std::size_t columns, EncoderState& state, uint8_t* out)
{
  Encoder e{out, state.previous, state.pending};
  const std::size_t groups = (columns + 63) / 64;
  auto stretch = std::make_unique<Stretch>();
  stretch->columns = columns;
  std::size_t groupsBefore = 0, blocksBefore = 0; // the groups of the rows before, and those with nibble blocks
  for (std::size_t row = 0; row < rows; ++row)
  {
    const uint8_t* const rowWords = source + 2 * columns * row;
    const std::size_t wordsAfterRow = (rows - row - 1) * columns;
    stretch->rowWords = rowWords;
    std::memset(stretch->deltas, 0, 64);
    std::optional<RowRuns> runs;
    for (std::size_t first = 0; first < groups; first += Stretch::most)
    {
      Stretch& s = *stretch;
      s.first = first;
      s.groups = std::min(Stretch::most, groups - first);
      if (first != 0)
        std::memcpy(s.deltas, s.deltas + 64 * Stretch::most, 64);
      // The stretch's groups and the one after it.
      const std::size_t after = first + s.groups;
      Kernel::classify(rowWords, columns, first, s.groups + (after < groups ? 1 : 0), row == 0, e.previous, s.bits,
                       s.deltas + 64);
      if (after == groups)
        s.bits[s.groups] = GroupBits{0, 0};
      // Where the run reaching past each group ends (its first word that is not small),
      // from the last group back; past the stretch, found by reading further groups.
      std::size_t runEnd = 64 * (after + 1);
      if (s.bits[s.groups].small == ~uint64_t{0})
      {
        GroupBits later{};
        alignas(64) uint8_t ignored[64];
        std::size_t h = after; // never past the row: its last word ends every run
        do
          Kernel::classify(rowWords, columns, ++h, 1, false, 0, &later, ignored);
        while (later.small == ~uint64_t{0});
        runEnd = 64 * h + static_cast<std::size_t>(__builtin_ctzll(~later.small));
      }
      uint64_t endOdd = 0; // bit i for group i
      for (std::size_t i = s.groups; i-- > 0;)
      {
        const uint64_t next = s.bits[i + 1].small;
        runEnd =
            next != ~uint64_t{0} ? 64 * (first + i + 1) + static_cast<std::size_t>(__builtin_ctzll(~next)) : runEnd;
        endOdd |= uint64_t{runEnd & 1} << i;
      }
      if (!runs)
        runs.emplace(s.bits[0].small);
      // Groups without nibble blocks are skipped while they are 15 in 16 of those so far.
      if (16 * (blocksBefore + runs->groupsWithBlocks()) <= groupsBefore)
        for (std::size_t i = 0; i < s.groups; ++i)
          s.roles[i] = runs->advance<true>(s.bits[i].fit, s.count(i), s.bits[i + 1].small, (endOdd >> i & 1) != 0);
      else
        for (std::size_t i = 0; i < s.groups; ++i)
          s.roles[i] = runs->advance<false>(s.bits[i].fit, s.count(i), s.bits[i + 1].small, (endOdd >> i & 1) != 0);
      groupsBefore += s.groups;
      // Groups whose wide stores would reach past the 3 bytes per word of the call.
      std::size_t narrowFrom = s.groups;
      while (narrowFrom > 0 && columns - 64 * (first + narrowFrom - 1) - s.count(narrowFrom - 1) + wordsAfterRow < 24)
        --narrowFrom;
      Kernel::write(e, s, narrowFrom);
    }
    blocksBefore += runs->groupsWithBlocks();
    e.previous = loadWord(rowWords + 2 * (columns - 1));
  }
  state.previous = e.previous;
  state.pending = e.pending;
  return e.out;
}

// The group encoder with AVX-512 (BW, VBMI, VBMI2): the same steps, with the bit masks
// used as they are and the kept bytes of a group packed by one compress instruction.
RTE_IMX_WIDE_BEGIN
#define RTE_IMX_WIDE "avx2,bmi,bmi2,popcnt,pclmul,avx512f,avx512bw,avx512vl,avx512vbmi,avx512vbmi2"

bool wideSupported()
{
  // __builtin_cpu_supports also asks whether the system saves the AVX-512 registers.
  static const bool supported = __builtin_cpu_supports("avx512f") && __builtin_cpu_supports("avx512bw") &&
                                __builtin_cpu_supports("avx512vl") && __builtin_cpu_supports("avx512vbmi") &&
                                __builtin_cpu_supports("avx512vbmi2");
  return supported;
}

bool wideLoops()
{
  return wideSupported() && vectorLoops() && avx512Allowed.load(std::memory_order_relaxed);
}

struct WideGroup
{
  __m512i bytes; // one-byte deltas of the 64 words
  uint64_t fit, small;
};

__attribute__((target(RTE_IMX_WIDE))) inline WideGroup classifyWide(const uint8_t* at)
{
  // As classify: the saturated difference of the words less 0x8000.
  const __m512i bias = _mm512_set1_epi16(static_cast<short>(0x8000));
  const __m512i difference0 = _mm512_subs_epi16(_mm512_xor_si512(_mm512_loadu_si512(at), bias),
                                                _mm512_xor_si512(_mm512_loadu_si512(at - 2), bias));
  const __m512i difference1 = _mm512_subs_epi16(_mm512_xor_si512(_mm512_loadu_si512(at + 64), bias),
                                                _mm512_xor_si512(_mm512_loadu_si512(at + 62), bias));
  const __m512i size0 = _mm512_abs_epi16(difference0), size1 = _mm512_abs_epi16(difference1);
  const __m512i fitLimit = _mm512_set1_epi16(126), smallLimit = _mm512_set1_epi16(7);
  const uint64_t fit = _mm512_cmple_epu16_mask(size0, fitLimit) | uint64_t{_mm512_cmple_epu16_mask(size1, fitLimit)}
                                                                      << 32;
  const uint64_t small =
      _mm512_cmple_epu16_mask(size0, smallLimit) | uint64_t{_mm512_cmple_epu16_mask(size1, smallLimit)} << 32;
  const __m512i bytes = _mm512_inserti64x4(_mm512_castsi256_si512(_mm512_cvtepi16_epi8(difference0)),
                                           _mm512_cvtepi16_epi8(difference1), 1);
  return {bytes, fit, small};
}

// The byte permutes of the group encoder's literal writing. A word has four slots: its
// byte or token, a run's count, and the literal's two bytes.
struct alignas(64) SlotTables
{
  uint8_t places[2][64];    // byte i: i, and i + 1
  uint8_t pairOrder[2][64]; // (first, count) of words 0-31, and of 32-63, from two registers
  uint8_t slotOrder[2][64]; // per 16 words (first, count, low, high), from the pairs and the words
  uint8_t slotWord[4][64];  // the word of each slot of words 0-15, 16-31, 32-47 and 48-63
  constexpr SlotTables() : places(), pairOrder(), slotOrder(), slotWord()
  {
    for (unsigned i = 0; i < 64; ++i)
    {
      places[0][i] = static_cast<uint8_t>(i);
      places[1][i] = static_cast<uint8_t>(i + 1);
      for (unsigned h = 0; h < 2; ++h)
      {
        pairOrder[h][i] = static_cast<uint8_t>(32 * h + i / 2 + (i % 2) * 64);
        slotOrder[h][i] = static_cast<uint8_t>(32 * h + 2 * (i / 4) + (i % 2) + (i % 4 >= 2 ? 64 : 0));
      }
      for (unsigned q = 0; q < 4; ++q)
        slotWord[q][i] = static_cast<uint8_t>(16 * q + i / 4);
    }
  }
};
constexpr SlotTables slotTables;

struct WideGroups
{
  __attribute__((target(RTE_IMX_WIDE))) static void classify(const uint8_t* rowWords, std::size_t columns,
                                                             std::size_t first, std::size_t groups, bool callStart,
                                                             unsigned previous, GroupBits* bits, uint8_t* deltas)
  {
    for (std::size_t g = first; g < first + groups; ++g, ++bits, deltas += 64)
    {
      const GroupSource source(rowWords, columns, g, callStart, previous);
      const WideGroup group = classifyWide(source.words());
      _mm512_store_si512(deltas, group.bytes);
      *bits = source.masked(group.fit, group.small);
    }
  }

  // A full group with a few literals, none of which folds: its bytes with 0x80 tokens
  // in the literals' places, packed at once and stored; after each literal its word,
  // then the packed bytes after it again, stored two bytes further up.
  static constexpr int fewLiterals = 4;
  __attribute__((target(RTE_IMX_WIDE))) static void writeFewLiterals(Encoder& e, const uint8_t* words, const Roles& r,
                                                                     __m512i bytes)
  {
    if (e.pending != 0)
      e.flushLiterals();
    const uint64_t literals = r.literals, kept = r.keep | literals;
    const __m512i packed = _mm512_maskz_compress_epi8(
        kept, _mm512_mask_mov_epi8(bytes, literals, _mm512_set1_epi8(static_cast<char>(literalToken))));
    const __m512i places0 = _mm512_load_si512(slotTables.places[0]);
    uint8_t* out = e.out;
    _mm512_storeu_si512(out, packed);
    for (uint64_t rest = literals; rest != 0; rest &= rest - 1)
    {
      const auto at = static_cast<unsigned>(__builtin_ctzll(rest));
      // The packed bytes up to the literal's token, and the words inserted before it.
      const auto through = static_cast<unsigned>(__builtin_popcountll(_bzhi_u64(kept, at + 1)));
      uint8_t* const word = out + through;
      std::memcpy(word, words + 2 * at, 2);
      out += 2;
      _mm512_storeu_si512(
          word + 2,
          _mm512_permutexvar_epi8(_mm512_add_epi8(places0, _mm512_set1_epi8(static_cast<char>(through))), packed));
    }
    e.out = out + __builtin_popcountll(kept);
    // The literals at the group's end stay pending.
    e.pending = literals >> 63 == 0 ? 0 : static_cast<unsigned>(__builtin_clzll(~literals));
  }

  // Folds the pending literal tokens before out into one run token whose count also
  // takes the continuing words of the group that follow (total in all, at most 255).
  __attribute__((target(RTE_IMX_WIDE))) static uint8_t* foldPending(uint8_t* out, unsigned pending, unsigned total)
  {
    uint8_t* const run = out - 3 * std::size_t{pending};
    if (pending > 21) // more than one register holds
    {
      uint8_t* const end = foldLiterals(out, pending);
      run[1] = static_cast<uint8_t>(total);
      return end;
    }
    // The words (bytes 3i + 1 and 3i + 2 of the tokens) read at once, then stored lower.
    const __m512i words =
        _mm512_maskz_compress_epi8(_bzhi_u64(0x6DB6DB6DB6DB6DB6ull, 3 * pending), _mm512_loadu_si512(run));
    run[0] = literalRunToken;
    run[1] = static_cast<uint8_t>(total);
    _mm512_storeu_si512(run + 2, words);
    return run + 2 + 2 * std::size_t{pending};
  }

  // A full group with literals in one go. Every word has four slots: its byte or
  // literal token, the count of a folded streak (at the streak's first word), and the
  // literal's two bytes; 16 words' slots are interleaved by one permute and packed by
  // one compress. A streak of 3 or more that a word of the group follows is folded
  // (0x7F, count, words), together with the pending literals it continues; the others
  // are 0x80 tokens, and a streak at the group's end stays pending. Only a streak that
  // continues the pending literals past 255 words or through the whole group goes word
  // by word.
  __attribute__((target(RTE_IMX_WIDE), noinline)) static void writeWithLiterals(Encoder& e, const uint8_t* words,
                                                                                const Roles& r, __m512i bytes)
  {
    const uint64_t literals = r.literals;
    uint64_t continuing = 0; // the words that join the pending literals' run token
    if (e.pending != 0)
    {
      const uint64_t others = ~literals;
      const unsigned leading = others == 0 ? 64 : static_cast<unsigned>(__builtin_ctzll(others));
      const unsigned total = e.pending + leading;
      if (leading == 64 || total > longestLiteralRun)
      {
        for (unsigned j = 0; j < leading; ++j)
          e.writeLiteral(loadWord(words + 2 * j));
        if (leading == 64)
          return;
        e.flushLiterals();
        writeRest(e, words, r, bytes, literals & ~uint64_t{0} << leading);
        return;
      }
      if (total >= 3)
      {
        e.out = foldPending(e.out, e.pending, total);
        continuing = (uint64_t{1} << leading) - 1;
      }
      e.pending = 0;
    }
    writeRest(e, words, r, bytes, literals, continuing);
  }

  // The group's words from the first literal that is not already written; continuing:
  // the streak at its start that joined the run token before.
  __attribute__((target(RTE_IMX_WIDE), always_inline)) static inline void
  writeRest(Encoder& e, const uint8_t* words, const Roles& r, __m512i bytes, uint64_t literals, uint64_t continuing = 0)
  {
    const uint64_t starts = literals & ~(literals << 1), ends = literals & ~(literals >> 1);
    // The streak at the group's end stays pending: neither folded nor counted.
    const uint64_t trailing = literals >> 63 == 0 ? 0 : ~uint64_t{0} << (63 - __builtin_clzll(starts));
    const uint64_t closed = literals & ~trailing & ~continuing;
    const uint64_t threes = closed & (closed >> 1) & (closed >> 2);
    const uint64_t folded = threes | threes << 1 | threes << 2 | continuing;
    const uint64_t foldedFirst = starts & folded & ~continuing;
    // Each streak's length at its first word: its end less its start, streak by streak.
    const __m512i lengths =
        _mm512_sub_epi8(_mm512_maskz_compress_epi8(ends, _mm512_load_si512(slotTables.places[1])),
                        _mm512_maskz_compress_epi8(starts, _mm512_load_si512(slotTables.places[0])));
    const __m512i countBytes = _mm512_maskz_expand_epi8(starts, lengths);
    const uint64_t unfolded = literals & ~folded;
    __m512i first = _mm512_mask_mov_epi8(bytes, unfolded, _mm512_set1_epi8(static_cast<char>(literalToken)));
    first = _mm512_mask_mov_epi8(first, foldedFirst, _mm512_set1_epi8(literalRunToken));
    const uint64_t firstKept = r.keep | unfolded | foldedFirst;
    // Which of a word's slots are kept, as bits 0-3 of a byte per word, spread to the
    // slots of each 16 words by the same order.
    __m512i kept = _mm512_maskz_mov_epi8(firstKept, _mm512_set1_epi8(1));
    kept = _mm512_mask_add_epi8(kept, foldedFirst, kept, _mm512_set1_epi8(2));
    kept = _mm512_mask_add_epi8(kept, literals, kept, _mm512_set1_epi8(12));
    const __m512i slotBits = _mm512_set1_epi32(0x08040201);
    uint8_t* out = e.out;
#pragma GCC unroll 2
    for (unsigned half = 0; half < 2; ++half)
    {
      const __m512i paired = _mm512_permutex2var_epi8(first, _mm512_load_si512(slotTables.pairOrder[half]), countBytes);
      const __m512i literalWords = _mm512_loadu_si512(words + 64 * half);
#pragma GCC unroll 2
      for (unsigned quarter = 0; quarter < 2; ++quarter)
      {
        const __m512i all =
            _mm512_permutex2var_epi8(paired, _mm512_load_si512(slotTables.slotOrder[quarter]), literalWords);
        const __m512i slotKept =
            _mm512_permutexvar_epi8(_mm512_load_si512(slotTables.slotWord[2 * half + quarter]), kept);
        const __mmask64 keep = _mm512_test_epi8_mask(slotKept, slotBits);
        _mm512_storeu_si512(out, _mm512_maskz_compress_epi8(keep, all));
        out += __builtin_popcountll(_cvtmask64_u64(keep));
      }
    }
    e.out = out;
    e.pending = static_cast<unsigned>(__builtin_popcountll(trailing));
  }

  __attribute__((target(RTE_IMX_WIDE))) static void write(Encoder& e, const Stretch& stretch, std::size_t narrowFrom)
  {
    // The delta before each word: byte i - 1, byte 63 of the group before for the first.
    alignas(64) static constexpr uint8_t previousIndex[64] = {
        127, 0,  1,  2,  3,  4,  5,  6,  7,  8,  9,  10, 11, 12, 13, 14, 15, 16, 17, 18, 19, 20,
        21,  22, 23, 24, 25, 26, 27, 28, 29, 30, 31, 32, 33, 34, 35, 36, 37, 38, 39, 40, 41, 42,
        43,  44, 45, 46, 47, 48, 49, 50, 51, 52, 53, 54, 55, 56, 57, 58, 59, 60, 61, 62};
    const __m512i toPrevious = _mm512_load_si512(previousIndex);
    const __m512i highNibbles = _mm512_set1_epi8(static_cast<char>(0xF0));
    const __m512i endNibble = _mm512_set1_epi8(nibbleEnd);
    const __m512i token = _mm512_set1_epi8(static_cast<char>(nibbleToken));
    for (std::size_t i = 0; i < stretch.groups; ++i)
    {
      const Roles& r = stretch.roles[i];
      const __m512i deltas = _mm512_load_si512(stretch.deltas + 64 * (i + 1));
      const __m512i previous = _mm512_permutex2var_epi8(deltas, toPrevious, _mm512_load_si512(stretch.deltas + 64 * i));
      // (a & 0xF0) | (b & 0x0F): a bit select by the third operand (ternary logic 0xE4).
      const __m512i pairs = _mm512_ternarylogic_epi32(_mm512_slli_epi16(previous, 4), deltas, highNibbles, 0xE4);
      const __m512i ends = _mm512_ternarylogic_epi32(_mm512_slli_epi16(deltas, 4), endNibble, highNibbles, 0xE4);
      __m512i bytes = _mm512_mask_mov_epi8(deltas, r.pair, pairs);
      bytes = _mm512_mask_mov_epi8(bytes, r.last, ends);
      bytes = _mm512_mask_mov_epi8(bytes, r.token, token);
      const bool wide = i < narrowFrom;
      if (r.literals == 0 && wide)
      {
        if (e.pending != 0)
          e.flushLiterals();
        _mm512_storeu_si512(e.out, _mm512_maskz_compress_epi8(r.keep, bytes));
        e.out += __builtin_popcountll(r.keep);
        continue;
      }
      const unsigned count = stretch.count(i);
      const uint8_t* words = stretch.rowWords + 128 * (stretch.first + i);
      if (count == 64 && wide)
      {
        const uint64_t literals = r.literals;
        const bool folds =
            (literals & (literals >> 1) & (literals >> 2)) != 0 || (e.pending != 0 && (literals & 1) != 0);
        if (!folds && __builtin_popcountll(literals) <= fewLiterals)
          writeFewLiterals(e, words, r, bytes);
        else
          writeWithLiterals(e, words, r, bytes);
        continue;
      }
      for (unsigned k = 0, end = 0, streakEnd = 0; k < count; k = streakEnd)
      {
        nextStretch(r.literals, count, k, end, streakEnd);
        if (end > k)
        {
          if (e.pending != 0)
            e.flushLiterals();
          const uint64_t keep = r.keep & bitRange(k, end);
          const __m512i packed = _mm512_maskz_compress_epi8(keep, bytes);
          const auto size = static_cast<std::size_t>(__builtin_popcountll(keep));
          if (wide)
          {
            _mm512_storeu_si512(e.out, packed);
          }
          else
          {
            alignas(64) uint8_t kept[64];
            _mm512_store_si512(kept, packed);
            std::memcpy(e.out, kept, size);
          }
          e.out += size;
        }
        for (unsigned j = end; j < streakEnd; ++j)
          e.writeLiteral(loadWord(words + 2 * j));
      }
    }
  }
};
RTE_IMX_WIDE_END

#endif

// Whether the group encoder is the faster one for these words, judged from up to 16
// groups spread over them. It costs about the same for every group without literals,
// the block encoder less for long stretches of one-byte deltas and more for every nibble
// block it closes (one per 20 words or so in a flat field); literals cost the AVX2
// group encoder most. With AVX-512 (wide) the group encoder is the faster one on every
// stream: it writes groups with literals in one go too.
__attribute__((target(RTE_IMX_VECTOR))) bool groupsPay(const uint8_t* source, std::size_t words, bool wide)
{
  if (words < 2 * 64 + 2)
    return false;
  if (wide)
    return true;
  const std::size_t samples = std::min<std::size_t>(16, (words - 1) / 64 - 1);
  const std::size_t stride = ((words - 1) / 64 - 1) / samples * 64;
  unsigned literals = 0, closes = 0;
  for (std::size_t k = 0; k < samples; ++k)
  {
    const Group group = classifyGroup(source + 2 * (1 + k * stride));
    const uint64_t inLong = longRuns(0, group.small, 0);
    literals += static_cast<unsigned>(__builtin_popcountll(~group.fit));
    closes += static_cast<unsigned>(__builtin_popcountll(inLong & ~(inLong >> 1)));
  }
  return literals <= samples && closes >= 2 * samples;
}

enum class EncoderLoops
{
  Portable,
  Blocks,
  Groups,
  WideGroups
};

// The encoder for these words: chosen once for a whole block, so that the pieces of the
// parallel encoder all take the one the serial encoder takes.
EncoderLoops chooseEncoder(const uint8_t* source, std::size_t words)
{
#if defined(RTE_IMX_X86)
  if (vectorLoops())
  {
    const VectorLoops chosen = vectorLoopsChoice.load(std::memory_order_relaxed);
    const bool wide = wideLoops();
    if (chosen == VectorLoops::Blocks || (chosen == VectorLoops::Chosen && !groupsPay(source, words, wide)))
      return EncoderLoops::Blocks;
    return wide ? EncoderLoops::WideGroups : EncoderLoops::Groups;
  }
#endif
  (void)source;
  (void)words;
  return EncoderLoops::Portable;
}

uint8_t* encodeRows(const uint8_t* source, std::size_t rows, std::size_t columns, EncoderState& state, uint8_t* out,
                    EncoderLoops loops)
{
  switch (loops)
  {
#if defined(RTE_IMX_X86)
  case EncoderLoops::Blocks:
    return encodeRowsBlocks(source, rows, columns, state, out);
  case EncoderLoops::Groups:
    return encodeRowsInGroups<Avx2Groups>(source, rows, columns, state, out);
  case EncoderLoops::WideGroups:
    return encodeRowsInGroups<WideGroups>(source, rows, columns, state, out);
#endif
  default:
    return encodeRowsPortable(source, rows, columns, state, out);
  }
}

bool isLiteral(const uint8_t* source, std::size_t index)
{
  const unsigned before = index == 0 ? 0 : loadWord(source + 2 * (index - 1));
  return !fitsByte(static_cast<int>(loadWord(source + 2 * index)) - static_cast<int>(before));
}

} // namespace

std::size_t encode(const uint8_t* source, std::size_t rows, std::size_t columns, uint8_t* destination)
{
  EncoderState state;
  return static_cast<std::size_t>(
      encodeRows(source, rows, columns, state, destination, chooseEncoder(source, rows * columns)) - destination);
}

namespace
{

// Scratch buffers of the parallel encoder, kept between calls so that their pages are
// already mapped (fresh ones cost a page fault per 4 KiB written).
class ScratchPool
{
public:
  static constexpr std::size_t largestKept = std::size_t{1} << 20;

  std::unique_ptr<uint8_t[]> take(std::size_t size, std::size_t& capacity)
  {
    {
      const std::lock_guard<std::mutex> lock(m_mutex);
      for (auto it = m_free.begin(); it != m_free.end(); ++it)
        if (it->second >= size)
        {
          capacity = it->second;
          std::unique_ptr<uint8_t[]> buffer = std::move(it->first);
          m_free.erase(it);
          return buffer;
        }
    }
    capacity = size;
    return std::unique_ptr<uint8_t[]>(new uint8_t[size]);
  }

  void give(std::unique_ptr<uint8_t[]> buffer, std::size_t capacity)
  {
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (m_free.size() < 8 && capacity <= largestKept)
      m_free.emplace_back(std::move(buffer), capacity);
  }

private:
  std::mutex m_mutex;
  std::vector<std::pair<std::unique_ptr<uint8_t[]>, std::size_t>> m_free;
};

ScratchPool& scratchPool()
{
  static ScratchPool pool;
  return pool;
}

// Helper threads kept for the parallel encoder: starting a thread costs about as much as
// encoding 100 KiB. One job at a time; a caller that finds them busy (or wants more of
// them than there are processors) starts its own threads. Both sides spin a little
// before sleeping, as waking a sleeping thread takes tens of microseconds and images
// often come one after another.
class Helpers
{
public:
  ~Helpers()
  {
    {
      const std::lock_guard<std::mutex> lock(m_mutex);
      m_stop = true;
    }
    m_wake.notify_all();
    for (std::thread& thread : m_threads)
      thread.join();
  }

  // Runs job on count helpers and on the calling thread; false when the helpers are
  // taken.
  bool run(unsigned count, const std::function<void()>& job)
  {
    std::unique_lock<std::mutex> busy(m_busy, std::try_to_lock);
    if (!busy.owns_lock())
      return false;
    {
      const std::lock_guard<std::mutex> lock(m_mutex);
      while (m_threads.size() < count)
        m_threads.emplace_back([this, index = m_threads.size(), seen = m_generation.load()] { loop(index, seen); });
      m_job = &job;
      m_wanted = count;
      m_running.store(count);
      m_generation.fetch_add(1);
    }
    m_wake.notify_all();
    job();
    spin([this] { return m_running.load() == 0; });
    std::unique_lock<std::mutex> lock(m_mutex);
    m_done.wait(lock, [this] { return m_running.load() == 0; });
    m_job = nullptr;
    return true;
  }

private:
  template <typename Ready>
  static void spin(const Ready& ready)
  {
    for (int i = 0; i < 4096 && !ready(); ++i)
    {
#if defined(RTE_IMX_X86)
      _mm_pause();
#else
      std::this_thread::yield();
#endif
    }
  }

  // seen: the last job generation this thread knows of.
  void loop(std::size_t index, uint64_t seen)
  {
    for (;;)
    {
      spin([&] { return m_generation.load() != seen; });
      std::unique_lock<std::mutex> lock(m_mutex);
      m_wake.wait(lock, [&] { return m_stop || m_generation.load() != seen; });
      if (m_stop)
        return;
      seen = m_generation.load();
      if (index >= m_wanted)
        continue;
      const std::function<void()>* job = m_job;
      lock.unlock();
      (*job)();
      lock.lock();
      if (m_running.fetch_sub(1) == 1)
        m_done.notify_one();
    }
  }

  std::mutex m_busy; // held by the caller whose job runs
  std::mutex m_mutex;
  std::condition_variable m_wake, m_done;
  std::vector<std::thread> m_threads;
  const std::function<void()>* m_job = nullptr;
  std::size_t m_wanted = 0;
  std::atomic<unsigned> m_running{0};
  std::atomic<uint64_t> m_generation{0};
  bool m_stop = false;
};

Helpers& helpers()
{
  static Helpers instance;
  return instance;
}

} // namespace

std::size_t encodeParallel(const uint8_t* source, std::size_t rows, std::size_t columns, uint8_t* destination,
                           unsigned threads)
{
  threads = static_cast<unsigned>(std::min<std::size_t>(threads, rows));
  if (threads <= 1)
    return encode(source, rows, columns, destination);
  const EncoderLoops loops = chooseEncoder(source, rows * columns);

  // The rows are cut into pieces of about 128 Ki words (at least 8 per thread), taken by
  // the threads in order. A piece is encoded into a scratch buffer (small enough to stay
  // in the cache) and copied to the destination once the pieces before it are there; a
  // piece whose predecessors are all there when it starts is encoded in place. Each
  // piece starts from the running value and the pending literals the serial encoder
  // would have there and first writes those pending literal tokens itself; the piece
  // before leaves them out. So the pieces simply concatenate to the serial stream.
  constexpr std::size_t pieceWords = std::size_t{1} << 17;
  std::size_t rowsPerPiece = std::max<std::size_t>(1, pieceWords / columns);
  rowsPerPiece = std::min(rowsPerPiece, std::max<std::size_t>(1, rows / (8 * std::size_t{threads})));
  const std::size_t pieces = (rows + rowsPerPiece - 1) / rowsPerPiece;

  // The literal streak before each piece, from the words before it; a streak reaching
  // back over a whole piece adds that piece's streak, so no word is looked at twice.
  std::vector<unsigned> leading(pieces + 1, 0);
  {
    std::size_t streak = 0;
    for (std::size_t p = 1; p < pieces; ++p)
    {
      const std::size_t boundary = p * rowsPerPiece * columns, previous = (p - 1) * rowsPerPiece * columns;
      std::size_t length = 0;
      while (boundary - length > previous && isLiteral(source, boundary - length - 1))
        ++length;
      streak = boundary - length == previous ? streak + length : length;
      leading[p] = static_cast<unsigned>(streak % longestLiteralRun);
    }
  }

  // Pieces are placed in order by whichever thread finds the next one finished and no
  // other thread placing; nobody waits while there is a piece to encode.
  struct Finished
  {
    bool ready = false;
    bool inPlace = false; // encoded straight to where it belongs
    std::unique_ptr<uint8_t[]> buffer;
    std::size_t capacity = 0, size = 0;
  };
  std::vector<Finished> finished(pieces);
  std::mutex mutex;
  std::size_t placed = 0, placedEnd = 0; // pieces in the destination and their bytes
  bool placing = false;
  std::atomic<std::size_t> next{0};

  const auto work = [&]
  {
    for (std::size_t p; (p = next.fetch_add(1, std::memory_order_relaxed)) < pieces;)
    {
      const std::size_t firstRow = p * rowsPerPiece, rowCount = std::min(rowsPerPiece, rows - firstRow);
      const std::size_t firstWord = firstRow * columns;
      EncoderState state;
      if (firstWord > 0)
        state.previous = loadWord(source + 2 * (firstWord - 1));
      state.pending = leading[p];

      // With all pieces before it placed, a piece is encoded in place: the stream before
      // it is at most 3 bytes per word before its pending literals, so it stays inside
      // the destination, and nothing else is written there until it is finished.
      Finished piece;
      uint8_t* begin = nullptr;
      {
        const std::lock_guard<std::mutex> lock(mutex);
        if (placed == p)
        {
          piece.inPlace = true;
          begin = destination + placedEnd;
        }
      }
      if (!piece.inPlace)
      {
        piece.buffer = scratchPool().take(maxEncodedSize(leading[p] + rowCount * columns), piece.capacity);
        begin = piece.buffer.get();
      }
      uint8_t* out = begin;
      for (std::size_t i = firstWord - leading[p]; i < firstWord; ++i, out += 3)
      {
        const unsigned word = loadWord(source + 2 * i);
        out[0] = literalToken;
        out[1] = static_cast<uint8_t>(word);
        out[2] = static_cast<uint8_t>(word >> 8);
      }
      out = encodeRows(source + 2 * firstWord, rowCount, columns, state, out, loops);
      // The next piece writes the pending literals again.
      piece.size = static_cast<std::size_t>(out - begin) - 3 * std::size_t{leading[p + 1]};
      piece.ready = true;

      std::unique_lock<std::mutex> lock(mutex);
      finished[p] = std::move(piece);
      if (placing)
        continue;
      placing = true;
      while (placed < pieces && finished[placed].ready)
      {
        Finished& done = finished[placed];
        const std::size_t at = placedEnd;
        lock.unlock();
        if (!done.inPlace)
        {
          std::memcpy(destination + at, done.buffer.get(), done.size);
          scratchPool().give(std::move(done.buffer), done.capacity);
        }
        lock.lock();
        placedEnd = at + done.size;
        ++placed;
      }
      placing = false;
    }
  };

  const std::function<void()> job = work;
  if (threads > std::max(1u, std::thread::hardware_concurrency()) || !helpers().run(threads - 1, job))
  {
    std::vector<std::thread> workers;
    workers.reserve(threads - 1);
    for (unsigned t = 1; t < threads; ++t)
      workers.emplace_back(work);
    work();
    for (std::thread& worker : workers)
      worker.join();
  }
  return placedEnd;
}

namespace
{

// Decodes the pairs of a nibble block from p (after its 0x81 and any pairs already
// taken) up to and with its last byte; false with result set when the stream is damaged.
// value is the running value.
inline bool decodeNibbles(const uint8_t*& p, const uint8_t* end, uint8_t*& o, uint8_t* outEnd, unsigned& value,
                          DecodeResult& result)
{
  const auto put = [&](unsigned word)
  {
    o[0] = static_cast<uint8_t>(word);
    o[1] = static_cast<uint8_t>(word >> 8);
    o += 2;
  };
  for (;;)
  {
    if (p == end)
    {
      result = DecodeResult::Truncated;
      return false;
    }
    const uint8_t pair = *p++;
    const bool last = (pair & 0x0F) == nibbleEnd;
    if (static_cast<std::size_t>(outEnd - o) < (last ? 2u : 4u))
    {
      result = DecodeResult::Corrupt;
      return false;
    }
    // Sign-extend the high nibble, then the low one.
    value += static_cast<unsigned>(static_cast<int8_t>(pair & 0xF0) >> 4);
    put(value & 0xFFFF);
    if (last)
      break;
    value += static_cast<unsigned>(static_cast<int8_t>(pair << 4) >> 4);
    put(value & 0xFFFF);
  }
  value &= 0xFFFF;
  return true;
}

// Decodes one token (or one nibble block) at p; false with result set when the stream
// is damaged. value is the running value.
[[gnu::always_inline]] inline bool decodeToken(const uint8_t*& p, const uint8_t* end, uint8_t*& o, uint8_t* outEnd,
                                               unsigned& value, DecodeResult& result)
{
  const auto put = [&](unsigned word)
  {
    o[0] = static_cast<uint8_t>(word);
    o[1] = static_cast<uint8_t>(word >> 8);
    o += 2;
  };
  if (p == end)
  {
    result = DecodeResult::Truncated;
    return false;
  }
  const uint8_t token = *p++;
  if (token == literalToken)
  {
    if (end - p < 2)
    {
      result = DecodeResult::Truncated;
      return false;
    }
    value = loadWord(p);
    p += 2;
    put(value);
  }
  else if (token == literalRunToken)
  {
    if (p == end)
    {
      result = DecodeResult::Truncated;
      return false;
    }
    const std::size_t count = *p++;
    if (count > static_cast<std::size_t>(outEnd - o) / 2)
    {
      result = DecodeResult::Corrupt;
      return false;
    }
    if (static_cast<std::size_t>(end - p) < 2 * count)
    {
      result = DecodeResult::Truncated;
      return false;
    }
    if (count > 0)
    {
      std::memcpy(o, p, 2 * count);
      value = loadWord(p + 2 * (count - 1));
      o += 2 * count;
      p += 2 * count;
    }
  }
  else if (token == nibbleToken)
  {
    return decodeNibbles(p, end, o, outEnd, value, result);
  }
  else
  {
    value += static_cast<unsigned>(static_cast<int8_t>(token));
    put(value & 0xFFFF);
  }
  value &= 0xFFFF;
  return true;
}

#if defined(__SSE2__)
// The pairs of a nibble block from p, 8 bytes (16 words) at a time while 8 source bytes
// and 32 destination bytes are left: the nibbles sign-extended in 16-bit lanes,
// interleaved high first, prefix-summed and added to the running value. All 16 words
// are stored; up to the block's last byte count. True when that byte was among them (p
// then follows it), false when the rest is left to decodeNibbles.
inline bool decodeNibblesSse2(const uint8_t*& p, const uint8_t* end, uint8_t*& o, const uint8_t* outEnd,
                              unsigned& value)
{
  const __m128i low4 = _mm_set1_epi8(0x0F);
  while (end - p >= 8 && outEnd - o >= 32)
  {
    const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(p));
    const auto ends =
        static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(_mm_and_si128(bytes, low4), _mm_set1_epi8(nibbleEnd)))) &
        0xFF;
    const __m128i pairs = _mm_unpacklo_epi8(bytes, _mm_setzero_si128());
    const __m128i high = _mm_srai_epi16(_mm_slli_epi16(pairs, 8), 12);
    const __m128i low = _mm_srai_epi16(_mm_slli_epi16(pairs, 12), 12);
    __m128i first = _mm_unpacklo_epi16(high, low);
    __m128i second = _mm_unpackhi_epi16(high, low);
    first = _mm_add_epi16(first, _mm_slli_si128(first, 2));
    second = _mm_add_epi16(second, _mm_slli_si128(second, 2));
    first = _mm_add_epi16(first, _mm_slli_si128(first, 4));
    second = _mm_add_epi16(second, _mm_slli_si128(second, 4));
    first = _mm_add_epi16(first, _mm_slli_si128(first, 8));
    second = _mm_add_epi16(second, _mm_slli_si128(second, 8));
    first = _mm_add_epi16(first, _mm_set1_epi16(static_cast<short>(value)));
    const __m128i firstLast = _mm_shufflehi_epi16(_mm_unpackhi_epi64(first, first), 0xFF);
    second = _mm_add_epi16(second, _mm_unpackhi_epi64(firstLast, firstLast));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(o), first);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(o + 16), second);
    if (ends == 0)
    {
      p += 8;
      o += 32;
      value = static_cast<unsigned>(_mm_extract_epi16(second, 7));
      continue;
    }
    const auto last = static_cast<unsigned>(__builtin_ctz(ends));
    p += last + 1;
    o += 2 * (2 * last + 1);
    value = loadWord(o - 2);
    return true;
  }
  return false;
}
#endif

DecodeResult decodePortable(const uint8_t* source, std::size_t sourceSize, uint8_t* destination, std::size_t words,
                            std::size_t& consumed)
{
  const uint8_t* p = source;
  const uint8_t* const end = source + sourceSize;
  uint8_t* o = destination;
  uint8_t* const outEnd = destination + 2 * words;
  unsigned value = 0;
  DecodeResult result = DecodeResult::Ok;
  while (o < outEnd)
  {
#if defined(__SSE2__)
    // Up to sixteen plain delta bytes at once: widen, prefix-sum, add the running value.
    // All 16 words are stored; only those before the first token byte count.
    while (end - p >= 16 && outEnd - o >= 32)
    {
      const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
      // 0x7F, 0x80 and 0x81 plus one are the three smallest signed bytes.
      const __m128i shifted = _mm_add_epi8(bytes, _mm_set1_epi8(1));
      const auto tokens = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmplt_epi8(shifted, _mm_set1_epi8(-125))));
      const unsigned plain = tokens == 0 ? 16 : static_cast<unsigned>(__builtin_ctz(tokens));
      if (plain == 0)
        break;
      __m128i low = _mm_srai_epi16(_mm_unpacklo_epi8(bytes, bytes), 8);
      __m128i high = _mm_srai_epi16(_mm_unpackhi_epi8(bytes, bytes), 8);
      low = _mm_add_epi16(low, _mm_slli_si128(low, 2));
      high = _mm_add_epi16(high, _mm_slli_si128(high, 2));
      low = _mm_add_epi16(low, _mm_slli_si128(low, 4));
      high = _mm_add_epi16(high, _mm_slli_si128(high, 4));
      low = _mm_add_epi16(low, _mm_slli_si128(low, 8));
      high = _mm_add_epi16(high, _mm_slli_si128(high, 8));
      low = _mm_add_epi16(low, _mm_set1_epi16(static_cast<short>(value)));
      const __m128i lowLast = _mm_shufflehi_epi16(_mm_unpackhi_epi64(low, low), 0xFF);
      high = _mm_add_epi16(high, _mm_unpackhi_epi64(lowLast, lowLast));
      _mm_storeu_si128(reinterpret_cast<__m128i*>(o), low);
      _mm_storeu_si128(reinterpret_cast<__m128i*>(o + 16), high);
      p += plain;
      o += 2 * plain;
      value = loadWord(o - 2);
      if (plain < 16)
        break;
    }
    if (o >= outEnd)
      break;
    if (end - p > 8 && *p == nibbleToken)
    {
      ++p;
      if (!decodeNibblesSse2(p, end, o, outEnd, value) && !decodeNibbles(p, end, o, outEnd, value, result))
        break;
      continue;
    }
#endif
    if (!decodeToken(p, end, o, outEnd, value, result))
      break;
  }
  consumed = static_cast<std::size_t>(p - source);
  return result;
}

#if defined(RTE_IMX_X86)

// Word 7 of each lane in every word of that lane.
__attribute__((target(RTE_IMX_VECTOR))) inline __m256i laneLast(__m256i v)
{
  return _mm256_shuffle_epi8(v, _mm256_set1_epi16(0x0F0E));
}

// The 32 words of the deltas in bytes, prefix-summed: the low and the high 16. The
// deltas are widened in the order the in-lane unpacks give (lanes hold deltas 0-7 and
// 16-23, 8-15 and 24-31), summed inside the lanes, then the partial sums carried over.
struct Sums
{
  __m256i low, high;
};

__attribute__((target(RTE_IMX_VECTOR))) inline Sums prefixSums(__m256i bytes)
{
  __m256i a = _mm256_srai_epi16(_mm256_unpacklo_epi8(bytes, bytes), 8);
  __m256i b = _mm256_srai_epi16(_mm256_unpackhi_epi8(bytes, bytes), 8);
  a = _mm256_add_epi16(a, _mm256_slli_si256(a, 2));
  b = _mm256_add_epi16(b, _mm256_slli_si256(b, 2));
  a = _mm256_add_epi16(a, _mm256_slli_si256(a, 4));
  b = _mm256_add_epi16(b, _mm256_slli_si256(b, 4));
  a = _mm256_add_epi16(a, _mm256_slli_si256(a, 8));
  b = _mm256_add_epi16(b, _mm256_slli_si256(b, 8));
  b = _mm256_add_epi16(b, laneLast(a));
  const __m256i half = laneLast(b); // low lane: the sum of deltas 0-15
  const __m256i carry = _mm256_permute2x128_si256(half, half, 0x08);
  a = _mm256_add_epi16(a, carry);
  b = _mm256_add_epi16(b, carry);
  return {_mm256_permute2x128_si256(a, b, 0x20), _mm256_permute2x128_si256(a, b, 0x31)};
}

// Word 15 of v in every word.
__attribute__((target(RTE_IMX_VECTOR))) inline __m256i broadcastLast(__m256i v)
{
  return _mm256_permute2x128_si256(laneLast(v), laneLast(v), 0x11);
}

// Bit i: byte i from at is 0x7F, 0x80 or 0x81 (plus one, the three smallest signed
// bytes); 64 bytes.
__attribute__((target(RTE_IMX_VECTOR))) inline uint64_t tokenMask(const uint8_t* at)
{
  const __m256i one = _mm256_set1_epi8(1);
  const __m256i limit = _mm256_set1_epi8(-125);
  const __m256i low = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at));
  const __m256i high = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(at + 32));
  const auto lowBits = static_cast<uint32_t>(_mm256_movemask_epi8(_mm256_cmpgt_epi8(limit, _mm256_add_epi8(low, one))));
  const auto highBits =
      static_cast<uint32_t>(_mm256_movemask_epi8(_mm256_cmpgt_epi8(limit, _mm256_add_epi8(high, one))));
  return lowBits | (uint64_t{highBits} << 32);
}

// The pairs of a nibble block from p, 16 bytes (32 words) at a time while 16 source
// bytes and 64 destination bytes are left: the nibbles turned into signed bytes by a
// table lookup, interleaved high first, then summed as plain deltas are. True when the
// block's last byte was among them (p then follows it), false when the rest is left to
// decodeNibbles. value is the running value.
__attribute__((target(RTE_IMX_VECTOR))) inline bool
decodeNibblesAvx2(const uint8_t*& p, const uint8_t* end, uint8_t*& o, const uint8_t* outEnd, unsigned& value)
{
  const __m128i signedNibble = _mm_setr_epi8(0, 1, 2, 3, 4, 5, 6, 7, -8, -7, -6, -5, -4, -3, -2, -1);
  const __m128i low4 = _mm_set1_epi8(0x0F);
  __m256i running = _mm256_set1_epi16(static_cast<short>(value));
  while (end - p >= 16 && outEnd - o >= 64)
  {
    const __m128i bytes = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p));
    const __m128i lows = _mm_and_si128(bytes, low4);
    const auto ends = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi8(lows, _mm_set1_epi8(nibbleEnd))));
    const __m128i high = _mm_shuffle_epi8(signedNibble, _mm_and_si128(_mm_srli_epi16(bytes, 4), low4));
    const __m128i low = _mm_shuffle_epi8(signedNibble, lows);
    const Sums sums = prefixSums(_mm256_set_m128i(_mm_unpackhi_epi8(high, low), _mm_unpacklo_epi8(high, low)));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(o), _mm256_add_epi16(sums.low, running));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(o + 32), _mm256_add_epi16(sums.high, running));
    if (ends == 0)
    {
      running = _mm256_add_epi16(running, broadcastLast(sums.high));
      p += 16;
      o += 64;
      continue;
    }
    const auto last = static_cast<unsigned>(__builtin_ctz(ends));
    p += last + 1;
    o += 2 * (2 * last + 1);
    value = loadWord(o - 2);
    return true;
  }
  value = static_cast<unsigned>(_mm256_extract_epi16(running, 0)) & 0xFFFF;
  return false;
}

// From p, until the first token at or after until (nullptr: to the end): 32 token
// bytes at a time. When
// none of them is 0x7F, 0x80 or 0x81 they are 32 deltas:
// widened, prefix-summed and added to the running value, 64 bytes stored. Otherwise the
// deltas before the first token byte count (all 64 bytes are stored all the same; the
// destination has room), and a single literal after them is taken on the spot. The
// wide loads and stores need 64 bytes of source and destination left; the plain way
// does the rest, checking every token.
__attribute__((target(RTE_IMX_VECTOR))) DecodeResult decodeAvx2(const uint8_t*& p, const uint8_t* end, uint8_t*& o,
                                                                uint8_t* outEnd, unsigned& value, const uint8_t* until)
{
  DecodeResult result = DecodeResult::Ok;
  while (o < outEnd && (until == nullptr || p < until))
  {
    // Room for the 64 bytes of a token mask and 32 words.
    bool inNibbles = false; // the fast loop stopped inside a nibble block
    if (end - p >= 64 && outEnd - o >= 64 && *p != literalRunToken)
    {
      __m256i running = _mm256_set1_epi16(static_cast<short>(value));
      // The token bytes among the next known bytes, found 64 at a time: where the next
      // block starts then follows from a shift of this mask instead of waiting for a
      // load, compare and movemask of the block's bytes.
      uint64_t tokens = tokenMask(p);
      int known = 64; // may drop below 0 by a literal straddling its end
      for (;;)
      {
        if (known < 32)
        {
          tokens = tokenMask(p);
          known = 64;
        }
        const __m256i bytes = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
        const Sums sums = prefixSums(bytes);
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(o), _mm256_add_epi16(sums.low, running));
        _mm256_storeu_si256(reinterpret_cast<__m256i*>(o + 32), _mm256_add_epi16(sums.high, running));
        if (static_cast<uint32_t>(tokens) == 0)
        {
          running = _mm256_add_epi16(running, broadcastLast(sums.high));
          p += 32;
          o += 64;
          tokens >>= 32;
          known -= 32;
        }
        else
        {
          // Deltas, then a single literal taken on the spot; anything else goes the
          // plain way.
          const auto plain = static_cast<unsigned>(__builtin_ctzll(tokens));
          p += plain;
          o += 2 * plain;
          if (*p == nibbleToken)
          {
            value = plain == 0 ? static_cast<unsigned>(_mm256_extract_epi16(running, 0)) : loadWord(o - 2);
            ++p;
            if (!decodeNibblesAvx2(p, end, o, outEnd, value))
            {
              inNibbles = true;
              break;
            }
            running = _mm256_set1_epi16(static_cast<short>(value));
            known = 0; // the mask is reloaded from the new position
          }
          else if (*p != literalToken)
          {
            value = plain == 0 ? static_cast<unsigned>(_mm256_extract_epi16(running, 0)) : loadWord(o - 2);
            break;
          }
          else
          {
            std::memcpy(o, p + 1, 2);
            running = _mm256_broadcastw_epi16(_mm_loadu_si16(p + 1));
            p += 3;
            o += 2;
            tokens >>= plain + 3;
            known -= static_cast<int>(plain + 3);
          }
        }
        if (end - p < 64 || outEnd - o < 64 || (until != nullptr && p >= until))
        {
          value = static_cast<unsigned>(_mm256_extract_epi16(running, 0)) & 0xFFFF;
          break;
        }
      }
      if (inNibbles)
      {
        if (!decodeNibbles(p, end, o, outEnd, value, result))
          break;
        continue;
      }
      if (o >= outEnd)
        break;
    }
    if (!decodeToken(p, end, o, outEnd, value, result))
      break;
  }
  return result;
}

__attribute__((target(RTE_IMX_VECTOR))) DecodeResult decodeAvx2(const uint8_t* source, std::size_t sourceSize,
                                                                uint8_t* destination, std::size_t words,
                                                                std::size_t& consumed)
{
  const uint8_t* p = source;
  uint8_t* o = destination;
  unsigned value = 0;
  const uint8_t* const end = source + sourceSize;
  const DecodeResult result = decodeAvx2(p, end, o, destination + 2 * words, value, nullptr);
  consumed = static_cast<std::size_t>(p - source);
  return result;
}

RTE_IMX_WIDE_BEGIN

// Shifts the 32 words of v up by s places (s = 1, 2, 4, 8 or 16), zeros coming in.
template <unsigned s>
__attribute__((target(RTE_IMX_WIDE))) inline __m512i wordsUp(__m512i v)
{
  if constexpr (s == 1)
  {
    const __m512i down = _mm512_set_epi16(30, 29, 28, 27, 26, 25, 24, 23, 22, 21, 20, 19, 18, 17, 16, 15, 14, 13, 12,
                                          11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0, 0);
    return _mm512_maskz_permutexvar_epi16(~1u, down, v);
  }
  else
    return _mm512_alignr_epi32(v, _mm512_setzero_si512(), 16 - s / 2);
}

// The words of 32 tokens: each is a delta, or a literal word where its bit in literals
// is set. Added up from the last literal before it, or else from the running value.
__attribute__((target(RTE_IMX_WIDE))) inline __m512i sumSegments(__m512i e, uint32_t literals, __m512i running)
{
  // The masks of the steps are worked out beforehand, away from the vector chain.
  const uint32_t after1 = literals | (literals << 1), after2 = after1 | (after1 << 2), after4 = after2 | (after2 << 4),
                 after8 = after4 | (after4 << 8), after16 = after8 | (after8 << 16);
  e = _mm512_mask_add_epi16(e, ~literals, e, wordsUp<1>(e));
  e = _mm512_mask_add_epi16(e, ~after1, e, wordsUp<2>(e));
  e = _mm512_mask_add_epi16(e, ~after2, e, wordsUp<4>(e));
  e = _mm512_mask_add_epi16(e, ~after4, e, wordsUp<8>(e));
  e = _mm512_mask_add_epi16(e, ~after8, e, wordsUp<16>(e));
  return _mm512_mask_add_epi16(e, ~after16, e, running);
}

// From p to the end, for streams where literals are common: 64 bytes (a window) at a
// time. Where a literal's 0x80 starts a token its two bytes follow; as long as no 0x80
// falls among those two bytes, every 0x80 is a token, and so is every 0x7F or 0x81
// outside them. The window is taken up to the first 0x7F or 0x81 token, the first 0x80
// with a 0x80 among its bytes, or a literal that runs past its end. Its tokens (delta
// bytes and 0x80s) are packed into one byte each, the literal words beside them, and the
// words added up 32 at a time, a literal restarting the sum. The token the window
// stopped at goes the plain way, a short literal run on the spot. The wide loads and
// stores need 66 bytes of source and 128 of destination.
__attribute__((target(RTE_IMX_WIDE))) DecodeResult decodeDense(const uint8_t*& p, const uint8_t* end, uint8_t*& o,
                                                               uint8_t* outEnd, unsigned& value)
{
  alignas(64) static constexpr uint8_t interleave[64] = {
      0,  64, 1,  65, 2,  66, 3,  67, 4,  68, 5,  69, 6,  70, 7,  71, 8,  72, 9,  73, 10, 74,
      11, 75, 12, 76, 13, 77, 14, 78, 15, 79, 16, 80, 17, 81, 18, 82, 19, 83, 20, 84, 21, 85,
      22, 86, 23, 87, 24, 88, 25, 89, 26, 90, 27, 91, 28, 92, 29, 93, 30, 94, 31, 95};
  const __m512i pairs = _mm512_load_si512(interleave);
  const __m512i places = _mm512_set_epi16(31, 30, 29, 28, 27, 26, 25, 24, 23, 22, 21, 20, 19, 18, 17, 16, 15, 14, 13,
                                          12, 11, 10, 9, 8, 7, 6, 5, 4, 3, 2, 1, 0);
  DecodeResult result = DecodeResult::Ok;
  __m512i running = _mm512_set1_epi16(static_cast<short>(value));
  uint64_t carried = 0; // the first bytes of the window that a literal before it covers
  while (o < outEnd)
  {
    if (end - p >= 66 && outEnd - o >= 128)
    {
      const __m512i bytes = _mm512_loadu_si512(p);
      const uint64_t marks =
          _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8(static_cast<char>(literalToken))) & ~carried;
      const uint64_t others = _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8(literalRunToken)) |
                              _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8(static_cast<char>(nibbleToken)));
      const uint64_t covered = carried | (marks << 1) | (marks << 2);
      const uint64_t clash = marks & covered;
      const uint64_t stops = (others & ~covered) | (marks & ((clash >> 1) | (clash >> 2)));
      // Without a stop the window is taken whole, and the next one starts 64 bytes on
      // whatever the bytes were: the windows do not wait for one another.
      const unsigned stop = stops == 0 ? 64 : static_cast<unsigned>(__builtin_ctzll(stops));
      const uint64_t range = stops == 0 ? ~uint64_t{0} : (uint64_t{1} << stop) - 1;
      const uint64_t tokens = ~covered & range;
      const uint64_t literals = marks & range;
      const unsigned count = static_cast<unsigned>(__builtin_popcountll(tokens));
      if (count != 0)
      {
        const __m512i deltas = _mm512_maskz_compress_epi8(tokens, bytes);
        // A literal's bytes follow its 0x80, past the window's end too.
        const __m512i words =
            _mm512_permutex2var_epi8(_mm512_maskz_compress_epi8(literals, _mm512_loadu_si512(p + 1)), pairs,
                                     _mm512_maskz_compress_epi8(literals, _mm512_loadu_si512(p + 2)));
        const uint64_t isLiteral = _pext_u64(literals, tokens);
        const auto firstLiterals = static_cast<uint32_t>(isLiteral);
        const __m512i first =
            _mm512_mask_expand_epi16(_mm512_cvtepi8_epi16(_mm512_castsi512_si256(deltas)), firstLiterals, words);
        const __m512i low = sumSegments(first, firstLiterals, running);
        // The second 32 words are worked out whether there are any or not: a branch
        // on it would often go wrong.
        const __m512i later = _mm512_permutexvar_epi16(
            _mm512_add_epi16(places, _mm512_set1_epi16(static_cast<short>(__builtin_popcount(firstLiterals)))), words);
        const auto laterLiterals = static_cast<uint32_t>(isLiteral >> 32);
        const __m512i second =
            _mm512_mask_expand_epi16(_mm512_cvtepi8_epi16(_mm512_extracti64x4_epi64(deltas, 1)), laterLiterals, later);
        const __m512i high = sumSegments(second, laterLiterals, _mm512_permutexvar_epi16(_mm512_set1_epi16(31), low));
        _mm512_storeu_si512(o, low);
        _mm512_storeu_si512(o + 64, high);
        running = _mm512_permutex2var_epi16(low, _mm512_set1_epi16(static_cast<short>(count - 1)), high);
        o += 2 * count;
      }
      p += stop;
      // A literal that runs into the next window covers its first one or two bytes.
      carried = stops == 0 ? (marks >> 62 & 1) | (marks >> 63) * 3 : 0;
      if (stops == 0)
        continue;
      if (*p == literalRunToken && p[1] != 0 && p[1] <= 32)
      {
        // A short literal run: its words as they stand.
        const unsigned runWords = p[1];
        if (end - p >= 66 && outEnd - o >= 64 && static_cast<std::size_t>(end - p) >= 2 + 2u * runWords)
        {
          _mm512_storeu_si512(o, _mm512_loadu_si512(p + 2));
          p += 2 + 2 * runWords;
          o += 2 * runWords;
          running = _mm512_set1_epi16(static_cast<short>(loadWord(p - 2)));
          continue;
        }
      }
    }
    else if (carried != 0)
    {
      // The literal that ran into this window is written already: past its bytes.
      p += __builtin_popcountll(carried);
      carried = 0;
      continue;
    }
    value = static_cast<unsigned>(_mm_extract_epi16(_mm512_castsi512_si128(running), 0)) & 0xFFFF;
    if (!decodeToken(p, end, o, outEnd, value, result))
      break;
    running = _mm512_set1_epi16(static_cast<short>(value));
  }
  p += __builtin_popcountll(carried);
  value = static_cast<unsigned>(_mm_extract_epi16(_mm512_castsi512_si128(running), 0)) & 0xFFFF;
  return result;
}

// A literal word among the deltas: its place holds a 0 delta, corrected when the words
// are added up.
struct HeldLiteral
{
  std::size_t at;
  uint16_t word;
};

// Prefix sums of 32 words: inside the 128-bit lanes, then each lane's total carried to
// the lanes above it (one lane up, then the sums of two lanes two up).
__attribute__((target(RTE_IMX_WIDE))) inline __m512i prefixSums32(__m512i v)
{
  const __m512i zero = _mm512_setzero_si512();
  v = _mm512_add_epi16(v, _mm512_bslli_epi128(v, 2));
  v = _mm512_add_epi16(v, _mm512_bslli_epi128(v, 4));
  v = _mm512_add_epi16(v, _mm512_bslli_epi128(v, 8));
  const __m512i totals = _mm512_shuffle_epi8(v, _mm512_set1_epi16(0x0F0E));
  const __m512i one = _mm512_alignr_epi64(totals, zero, 6);
  const __m512i two = _mm512_alignr_epi64(_mm512_add_epi16(totals, one), zero, 4);
  return _mm512_add_epi16(v, _mm512_add_epi16(one, two));
}

// Adds up count one-byte deltas (count at least 1) onto the running value and writes
// the words at o, 64 at a time: the last stores may write up to 63 words past them. The
// held literals (in order) set their words, and the words after them follow on.
__attribute__((target(RTE_IMX_WIDE))) void sumDeltas(const uint8_t* deltas, std::size_t count,
                                                     const HeldLiteral* held, std::size_t heldCount, uint8_t*& o,
                                                     unsigned& value)
{
  const __m512i lastWord = _mm512_set1_epi16(31);
  __m512i running = _mm512_set1_epi16(static_cast<short>(value));
  std::size_t h = 0;
  for (std::size_t i = 0; i < count; i += 64)
  {
    const __m512i low = prefixSums32(_mm512_cvtepi8_epi16(_mm256_load_si256(reinterpret_cast<const __m256i*>(deltas + i))));
    __m512i high =
        prefixSums32(_mm512_cvtepi8_epi16(_mm256_load_si256(reinterpret_cast<const __m256i*>(deltas + i + 32))));
    high = _mm512_add_epi16(high, _mm512_permutexvar_epi16(lastWord, low));
    __m512i first = _mm512_add_epi16(low, running), second = _mm512_add_epi16(high, running);
    // The next running value from this one, not from the words: the loop then waits on
    // one addition per 64 words.
    running = _mm512_add_epi16(running, _mm512_permutexvar_epi16(lastWord, high));
    for (; h < heldCount && held[h].at < i + 64; ++h)
    {
      // The literal's word less what its 0 delta gave, added from its place on.
      const auto place = static_cast<unsigned>(held[h].at - i);
      const __m512i at = _mm512_set1_epi16(static_cast<short>(place & 31));
      const __m512i correction = _mm512_sub_epi16(_mm512_set1_epi16(static_cast<short>(held[h].word)),
                                                  _mm512_permutexvar_epi16(at, place < 32 ? first : second));
      const uint64_t from = ~uint64_t{0} << place;
      first = _mm512_mask_add_epi16(first, static_cast<__mmask32>(from), first, correction);
      second = _mm512_mask_add_epi16(second, static_cast<__mmask32>(from >> 32), second, correction);
      running = _mm512_add_epi16(running, correction);
    }
    _mm512_storeu_si512(o + 2 * i, first);
    _mm512_storeu_si512(o + 2 * i + 64, second);
  }
  o += 2 * count;
  value = loadWord(o - 2);
}

// The decoder with AVX-512, 64 token bytes at a time. A nibble block runs from its 0x81
// to the first byte after it whose low nibble is 8, which the carry of an addition finds:
// adding the token bits to the bits of the other bytes carries from each token through
// to its block's last byte, and on into the next 64 bytes while a block is open. Every
// byte then gives its deltas: a plain delta byte one, a block's pair byte two, its last
// byte one, its token none. They are spread out (first, second) and packed by two
// compress instructions into one delta per word, which a second loop adds up into words
// a few thousand at a time. Literal tokens (0x80 outside and 0x7F outside blocks) stop
// the wide loop: the bytes before them are taken, the token goes the plain way. So does
// a 0x81 inside a block, which only a damaged stream holds (the plain way takes it as a
// pair of deltas), and the last 192 words, so that the words of 64 bytes and the adding
// up's last 64 always fit.
__attribute__((target(RTE_IMX_WIDE))) DecodeResult decodeWide(const uint8_t* source, std::size_t sourceSize,
                                                              uint8_t* destination, std::size_t words,
                                                              std::size_t& consumed)
{
  constexpr std::size_t pendingMost = 4096;
  alignas(64) uint8_t deltas[pendingMost + 128 + 64];
  std::size_t pending = 0; // deltas not yet added up
  constexpr std::size_t heldMost = 64;
  HeldLiteral held[heldMost];
  std::size_t heldCount = 0; // literal words among them
  const uint8_t* p = source;
  const uint8_t* const end = source + sourceSize;
  uint8_t* o = destination;
  uint8_t* const outEnd = destination + 2 * words;
  unsigned value = 0;
  bool inBlock = false; // p is inside a nibble block (after its 0x81)
  DecodeResult result = DecodeResult::Ok;

  const __m512i signedNibble =
      _mm512_broadcast_i32x4(_mm_setr_epi8(0, 1, 2, 3, 4, 5, 6, 7, -8, -7, -6, -5, -4, -3, -2, -1));
  const __m512i low4 = _mm512_set1_epi8(0x0F);
  // Byte pairs (first, second) of bytes 0-31 and of 32-63.
  alignas(64) static constexpr uint8_t spreadLow[64] = {0,  64, 1,  65, 2,  66, 3,  67, 4,  68, 5,  69, 6,  70, 7,  71,
                                                        8,  72, 9,  73, 10, 74, 11, 75, 12, 76, 13, 77, 14, 78, 15, 79,
                                                        16, 80, 17, 81, 18, 82, 19, 83, 20, 84, 21, 85, 22, 86, 23, 87,
                                                        24, 88, 25, 89, 26, 90, 27, 91, 28, 92, 29, 93, 30, 94, 31, 95};
  const __m512i toLow = _mm512_load_si512(spreadLow);
  const __m512i toHigh = _mm512_add_epi8(toLow, _mm512_set1_epi8(32));
  const auto addUp = [&]
  {
    if (pending != 0)
      sumDeltas(deltas, pending, held, heldCount, o, value);
    pending = 0;
    heldCount = 0;
  };
  while (o < outEnd)
  {
    const std::size_t produced = static_cast<std::size_t>(o - destination) / 2 + pending;
    if (end - p >= 64 && words - produced > 192)
    {
      const __m512i bytes = _mm512_loadu_si512(p);
      const uint64_t tokens = _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8(static_cast<char>(nibbleToken)));
      const uint64_t ends = _mm512_cmpeq_epi8_mask(_mm512_and_si512(bytes, low4), _mm512_set1_epi8(nibbleEnd));
      const uint64_t literals = _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8(static_cast<char>(literalToken))) |
                                _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8(literalRunToken));
      unsigned long long sum = 0;
      const bool carry = _addcarry_u64(inBlock, ~ends, tokens, &sum) != 0;
      const uint64_t blocks = sum ^ ~ends;      // each block's token through its last byte
      const uint64_t inside = blocks & ~tokens; // its pair bytes and last byte
      // A 0x81 after a block's token or pair byte is a pair byte: the plain way decides.
      const uint64_t stray = tokens & (((blocks & ~ends) << 1) | uint64_t{inBlock});
      const uint64_t stops = (literals & ~inside) | stray;
      const unsigned taken = stops == 0 ? 64 : static_cast<unsigned>(__builtin_ctzll(stops));
      if (taken > 0)
      {
        const uint64_t range = taken == 64 ? ~uint64_t{0} : (uint64_t{1} << taken) - 1;
        const __m512i high = _mm512_shuffle_epi8(signedNibble, _mm512_and_si512(_mm512_srli_epi16(bytes, 4), low4));
        const __m512i low = _mm512_shuffle_epi8(signedNibble, _mm512_and_si512(bytes, low4));
        const __m512i first = _mm512_mask_mov_epi8(bytes, inside, high);
        const uint64_t firstKept = ~tokens & range, secondKept = inside & ~ends & range;
        const uint64_t keepLow =
            _pdep_u64(firstKept, 0x5555555555555555ull) | _pdep_u64(secondKept, 0xAAAAAAAAAAAAAAAAull);
        const uint64_t keepHigh =
            _pdep_u64(firstKept >> 32, 0x5555555555555555ull) | _pdep_u64(secondKept >> 32, 0xAAAAAAAAAAAAAAAAull);
        _mm512_storeu_si512(deltas + pending,
                            _mm512_maskz_compress_epi8(keepLow, _mm512_permutex2var_epi8(first, toLow, low)));
        pending += static_cast<std::size_t>(__builtin_popcountll(keepLow));
        _mm512_storeu_si512(deltas + pending,
                            _mm512_maskz_compress_epi8(keepHigh, _mm512_permutex2var_epi8(first, toHigh, low)));
        pending += static_cast<std::size_t>(__builtin_popcountll(keepHigh));
        p += taken;
        // Still in a block after the last byte taken: one that runs on, or a stray 0x81's.
        inBlock = taken == 64 ? carry : ((blocks & ~ends) >> (taken - 1) & 1) != 0;
        if (taken == 64)
        {
          if (pending >= pendingMost)
            addUp();
          continue;
        }
      }
      if (!inBlock && *p == literalToken && end - p >= 3 && heldCount < heldMost &&
          __builtin_popcountll(literals & ~inside) < 3)
      {
        // A single literal joins the deltas, as a 0 that the adding up corrects.
        deltas[pending] = 0;
        held[heldCount++] = {pending, static_cast<uint16_t>(loadWord(p + 1))};
        ++pending;
        p += 3;
        if (pending >= pendingMost)
          addUp();
        continue;
      }
      if (!inBlock && __builtin_popcountll(literals & ~inside) >= 3)
      {
        // Literals close together: the next stretch goes the AVX2 way, which takes a
        // literal on the spot.
        addUp();
        result = decodeAvx2(p, end, o, outEnd, value, p + 256);
        if (result != DecodeResult::Ok)
          break;
        continue;
      }
    }
    // The plain way, one token (or the rest of a block) at a time.
    addUp();
    if (inBlock)
    {
      inBlock = false;
      if (!decodeNibbles(p, end, o, outEnd, value, result))
        break;
      continue;
    }
    if (!decodeToken(p, end, o, outEnd, value, result))
      break;
  }
  if (result == DecodeResult::Ok)
    addUp();
  consumed = static_cast<std::size_t>(p - source);
  return result;
}
RTE_IMX_WIDE_END

// How many in 64 bytes of the stream are literal tokens and how many nibble tokens,
// from 8 stretches of 512 spread over it (the bytes of literal words and nibble blocks
// are counted too; they are as likely as any other).
struct TokenShares
{
  double literals = 0, nibbles = 0;
};

TokenShares tokenShares(const uint8_t* source, std::size_t size)
{
  constexpr std::size_t stretch = 512, stretches = 8;
  std::size_t literals = 0, nibbles = 0;
  const auto count = [&](const uint8_t* from, std::size_t length)
  {
    for (std::size_t i = 0; i < length; ++i)
    {
      literals += from[i] == literalToken || from[i] == literalRunToken;
      nibbles += from[i] == nibbleToken;
    }
  };
  std::size_t sampled = size;
  if (size < stretch * stretches)
    count(source, size);
  else
  {
    sampled = stretch * stretches;
    for (std::size_t k = 0; k < stretches; ++k)
      count(source + (size - stretch) * k / (stretches - 1), stretch);
  }
  if (sampled == 0)
    return {};
  return {64.0 * static_cast<double>(literals) / static_cast<double>(sampled),
          64.0 * static_cast<double>(nibbles) / static_cast<double>(sampled)};
}

#endif

} // namespace

DecodeResult decode(const uint8_t* source, std::size_t sourceSize, uint8_t* destination, std::size_t words,
                    std::size_t& consumed)
{
#if defined(RTE_IMX_X86)
  const VectorLoops chosen = vectorLoopsChoice.load(std::memory_order_relaxed);
  if (wideLoops() && chosen == VectorLoops::Groups)
    return decodeWide(source, sourceSize, destination, words, consumed);
  if (wideLoops() && chosen == VectorLoops::Chosen)
  {
    // Measured on this coder's streams: the wide decoder is the fastest where nibble
    // blocks are common (from 1 token in 128 bytes) and literals rare (up to 1 in 64),
    // the dense one where literals make more than 1.25 in 64 bytes, and otherwise the AVX2
    // one, which takes plain deltas in one pass and a literal on the spot.
    const TokenShares shares = tokenShares(source, sourceSize);
    if (shares.literals <= 1.0 && shares.nibbles >= 0.5)
      return decodeWide(source, sourceSize, destination, words, consumed);
    if (shares.literals > 1.25)
    {
      const uint8_t* p = source;
      uint8_t* o = destination;
      unsigned value = 0;
      const DecodeResult result = decodeDense(p, source + sourceSize, o, destination + 2 * words, value);
      consumed = static_cast<std::size_t>(p - source);
      return result;
    }
  }
  if (vectorLoops())
    return decodeAvx2(source, sourceSize, destination, words, consumed);
#endif
  return decodePortable(source, sourceSize, destination, words, consumed);
}

void setVectorLoops(VectorLoops loops)
{
  vectorLoopsChoice.store(loops, std::memory_order_relaxed);
}

void allowAvx512(bool allowed)
{
  avx512Allowed.store(allowed, std::memory_order_relaxed);
}

bool hasAvx512()
{
#if defined(RTE_IMX_X86)
  return wideSupported() && vectorLoops();
#else
  return false;
#endif
}

void setParallelThreads(unsigned threads)
{
  configuredThreads.store(threads, std::memory_order_relaxed);
}

unsigned parallelThreads(std::size_t rows)
{
  unsigned threads = configuredThreads.load(std::memory_order_relaxed);
  if (threads == 0)
    threads = std::max(1u, std::thread::hardware_concurrency());
  return static_cast<unsigned>(std::min<std::size_t>(threads, std::max<std::size_t>(rows, 1)));
}

} // namespace RTE::ImxCoder
