// The group encoder's frame, shared by its AVX2 kernel (ImxEncoder.cpp) and its AVX-512
// one (ImxWideEncoder.cpp): the roles of a row's words from its bits, and the loop over
// stretches of groups; not installed.
#pragma once

#include <Core/Common/Compression/ImxShared_p.h>

#include <algorithm>
#include <cstring>
#include <memory>
#include <optional>

#if defined(RTE_IMX_X86)

namespace RTE::ImxCoder::detail
{

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

// The rows in groups with the AVX-512 kernel (ImxWideEncoder.cpp).
uint8_t* encodeRowsWide(const uint8_t* source, std::size_t rows, std::size_t columns, EncoderState& state,
                        uint8_t* out);

} // namespace RTE::ImxCoder::detail

#endif
