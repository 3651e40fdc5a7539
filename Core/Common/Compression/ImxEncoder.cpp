// The IMX encoders: the portable one, the AVX2 block encoder and the AVX2 group kernel,
// the choice among them, and the serial encoder.
#include <Core/Common/Compression/ImxCoder_p.h>

#include <Core/Common/Compression/ImxGroups_p.h>
#include <Core/Common/Compression/ImxShared_p.h>

#include <algorithm>
#include <cstring>

namespace RTE::ImxCoder
{
using namespace detail;

namespace
{

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

#endif

} // namespace

namespace detail
{

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
    return encodeRowsWide(source, rows, columns, state, out);
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

} // namespace detail

std::size_t encode(const uint8_t* source, std::size_t rows, std::size_t columns, uint8_t* destination)
{
  EncoderState state;
  return static_cast<std::size_t>(
      encodeRows(source, rows, columns, state, destination, chooseEncoder(source, rows * columns)) - destination);
}

} // namespace RTE::ImxCoder
