// The IMX group encoder's AVX-512 kernel.
#include <Core/Common/Compression/ImxGroups_p.h>
#include <Core/Common/Compression/ImxShared_p.h>

#include <array>
#include <cstring>

#if defined(RTE_IMX_X86)

namespace RTE::ImxCoder
{
using namespace detail;

namespace
{

// The group encoder with AVX-512 (BW, VBMI, VBMI2): the same steps as with AVX2
// (ImxEncoder.cpp), with the bit masks used as they are and the kept bytes of a group
// packed by one compress instruction.
RTE_IMX_WIDE_BEGIN

struct WideGroup
{
  __m512i bytes; // one-byte deltas of the 64 words
  uint64_t fit, small;
};

__attribute__((target(RTE_IMX_WIDE))) inline WideGroup classifyWide(const uint8_t* at)
{
  // As classify (ImxEncoder.cpp): the saturated difference of the words less 0x8000.
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
  // The low bytes of the 64 differences, by one two-source byte permute.
  alignas(64) static constexpr auto lowBytes = []
  {
    std::array<uint8_t, 64> index{};
    for (unsigned i = 0; i < 64; ++i)
      index[i] = static_cast<uint8_t>(2 * i);
    return index;
  }();
  const __m512i bytes = _mm512_permutex2var_epi8(difference0, _mm512_load_si512(lowBytes.data()), difference1);
  return {bytes, fit, small};
}

// The byte permutes of the group encoder's literal writing. A word has four slots: its
// byte or token, a run's count, and the literal's two bytes.
struct alignas(64) SlotTables
{
  uint8_t places[2][64];    // byte i: i, and i + 1
  uint8_t pairOrder[2][64]; // (first, count) of words 0-31, and of 32-63, from two registers
  uint8_t slotOrder[2][64]; // per 16 words (first, count, low, high), from the pairs and the words
  constexpr SlotTables() : places(), pairOrder(), slotOrder()
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

  // The lowest literal of rest, after before literals: its word, then the packed bytes
  // after its token.
  __attribute__((target(RTE_IMX_WIDE), always_inline)) static inline void
  insertLiteral(uint8_t* out, const uint8_t* words, uint64_t kept, __m512i packed, uint64_t rest, unsigned before)
  {
    const auto at = static_cast<unsigned>(_tzcnt_u64(rest));
    // The packed bytes up to the literal's token (all of them for word 64).
    const auto through = static_cast<unsigned>(__builtin_popcountll(_bzhi_u64(kept, at + 1)));
    uint8_t* const word = out + 2 * before + through;
    std::memcpy(word, words + 2 * at, 2);
    _mm512_storeu_si512(word + 2, _mm512_permutexvar_epi8(_mm512_add_epi8(_mm512_load_si512(slotTables.places[0]),
                                                                          _mm512_set1_epi8(static_cast<char>(through))),
                                                          packed));
  }

  // A full group with a few literals, none of which folds: its bytes with 0x80 tokens
  // in the literals' places, packed at once and stored; after each literal its word,
  // then the packed bytes after it again, stored two bytes further up. The first three
  // literals take no branch: a missing one is taken as word 64, whose stores land past
  // the group's bytes (the group is full and not among the call's last 24 words, so
  // word 64 can be read and there is room).
  static constexpr int fewLiterals = 4;
  __attribute__((target(RTE_IMX_WIDE))) static void writeFewLiterals(Encoder& e, const uint8_t* words, const Roles& r,
                                                                     __m512i bytes)
  {
    if (e.pending != 0)
      e.flushLiterals();
    const uint64_t literals = r.literals, kept = r.keep | literals;
    const __m512i packed = _mm512_maskz_compress_epi8(
        kept, _mm512_mask_mov_epi8(bytes, literals, _mm512_set1_epi8(static_cast<char>(literalToken))));
    uint8_t* const out = e.out;
    _mm512_storeu_si512(out, packed);
    uint64_t rest = literals;
    insertLiteral(out, words, kept, packed, rest, 0);
    rest = _blsr_u64(rest);
    insertLiteral(out, words, kept, packed, rest, 1);
    rest = _blsr_u64(rest);
    insertLiteral(out, words, kept, packed, rest, 2);
    rest = _blsr_u64(rest);
    for (unsigned before = 3; rest != 0; rest = _blsr_u64(rest), ++before)
      insertLiteral(out, words, kept, packed, rest, before);
    e.out = out + __builtin_popcountll(kept) + 2 * __builtin_popcountll(literals);
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
        // The kept slots of the 16 words: bit 4w + s for slot s of word w.
        const unsigned from = 32 * half + 16 * quarter;
        const uint64_t keep = _pdep_u64(firstKept >> from, 0x1111111111111111ull) |
                              _pdep_u64(foldedFirst >> from, 0x2222222222222222ull) |
                              3 * _pdep_u64(literals >> from, 0x4444444444444444ull);
        _mm512_storeu_si512(out, _mm512_maskz_compress_epi8(keep, all));
        out += __builtin_popcountll(keep);
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

} // namespace

uint8_t* detail::encodeRowsWide(const uint8_t* source, std::size_t rows, std::size_t columns, EncoderState& state,
                                uint8_t* out)
{
  return encodeRowsInGroups<WideGroups>(source, rows, columns, state, out);
}

} // namespace RTE::ImxCoder

#endif
