// The IMX decoders: portable (with SSE2), AVX2, and with AVX-512 the wide and the dense
// one, and the choice among them.
#include <Core/Common/Compression/ImxCoder_p.h>

#include <Core/Common/Compression/ImxShared_p.h>

#include <cstring>

namespace RTE::ImxCoder
{
using namespace detail;

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
// 16 deltas (the first 8 in first, the next 8 in second) added up onto value and stored
// at o as words; second keeps the words it holds.
inline void storeSums(__m128i first, __m128i& second, unsigned value, uint8_t* o)
{
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
}

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
    __m128i second = _mm_unpackhi_epi16(high, low);
    storeSums(_mm_unpacklo_epi16(high, low), second, value, o);
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
      __m128i high = _mm_srai_epi16(_mm_unpackhi_epi8(bytes, bytes), 8);
      storeSums(_mm_srai_epi16(_mm_unpacklo_epi8(bytes, bytes), 8), high, value, o);
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
__attribute__((target(RTE_IMX_VECTOR))) DecodeResult decodeAvx2(const uint8_t*& position, const uint8_t* end,
                                                                uint8_t*& output, uint8_t* outEnd, unsigned& value,
                                                                const uint8_t* until)
{
  // Local copies: the stores through o could otherwise change the referenced pointers,
  // so they would be reloaded after each one.
  const uint8_t* p = position;
  uint8_t* o = output;
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
  position = p;
  output = o;
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
// outside them. A literal run (0x7F) that ends inside the window is taken with it. The
// window is taken up to the first other 0x7F or 0x81 token, the first 0x80 with a 0x80
// among its bytes, or a literal that runs past its end. Its tokens (delta bytes, 0x80s
// and the byte before each word of a run) are packed into one byte each, the literal
// words beside them (at most 31: a run takes two bytes a word and two more, a 0x80
// three), and the words added up 32 at a time, a literal restarting the sum. The token
// the window stopped at goes the plain way, a short literal run on the spot. The wide
// loads and stores need 66 bytes of source and 128 of destination.
__attribute__((target(RTE_IMX_WIDE))) DecodeResult decodeDense(const uint8_t*& position, const uint8_t* end,
                                                               uint8_t*& output, uint8_t* outEnd, unsigned& value)
{
  const uint8_t* p = position; // local copies, as in decodeAvx2
  uint8_t* o = output;
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
      // Two masks, not three: each costs a move from a mask register. 0x7F, 0x80 and 0x81
      // are, plus one, the three smallest signed bytes; the run loop tells 0x7F from 0x81.
      const uint64_t literalMarks = _mm512_cmpeq_epi8_mask(bytes, _mm512_set1_epi8(static_cast<char>(literalToken)));
      const uint64_t special =
          _mm512_cmplt_epi8_mask(_mm512_add_epi8(bytes, _mm512_set1_epi8(1)), _mm512_set1_epi8(-125));
      uint64_t marks = literalMarks & ~carried;
      uint64_t others = special & ~literalMarks;
      uint64_t covered = carried | (marks << 1) | (marks << 2);
      uint64_t clash = marks & covered;
      uint64_t stops = (others & ~covered) | (marks & ((clash >> 1) | (clash >> 2)));
      // A literal run that ends inside the window is taken with it: the byte before each
      // of its words stands for a 0x80 (the count byte, then each word's high byte), its
      // bytes are no tokens, and the bytes after it are looked at again without them.
      uint64_t runSpans = 0, runMarks = 0;
      while (stops != 0)
      {
        const auto at = static_cast<unsigned>(__builtin_ctzll(stops));
        const unsigned runLength = p[at + 1];
        const unsigned after = at + 2 + 2 * runLength;
        if (p[at] != literalRunToken || runLength == 0 || after > 64)
          break;
        const uint64_t span = (after == 64 ? ~uint64_t{0} : (uint64_t{1} << after) - 1) & (~uint64_t{0} << at);
        runSpans |= span;
        runMarks |= (0x5555555555555555ull << (at + 1)) & (span >> 2);
        marks &= ~span;
        others &= ~span;
        covered = carried | (marks << 1) | (marks << 2);
        clash = marks & covered;
        stops = (others & ~covered) | (marks & ((clash >> 1) | (clash >> 2)));
      }
      // Without a stop the window is taken whole, and the next one starts 64 bytes on
      // whatever the bytes were: the windows do not wait for one another.
      const unsigned stop = stops == 0 ? 64 : static_cast<unsigned>(__builtin_ctzll(stops));
      const uint64_t range = stops == 0 ? ~uint64_t{0} : (uint64_t{1} << stop) - 1;
      const uint64_t tokens = ((~covered & ~runSpans) | runMarks) & range;
      const uint64_t literals = (marks | runMarks) & range;
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
  position = p;
  output = o;
  return result;
}

// A literal word among the deltas: its place holds a 0 delta, corrected when the words
// are added up.
struct HeldLiteral
{
  std::size_t at;
  uint16_t word;
};

// Prefix sums of the 8 words inside each 128-bit lane.
__attribute__((target(RTE_IMX_WIDE))) inline __m512i laneSums(__m512i v)
{
  v = _mm512_add_epi16(v, _mm512_bslli_epi128(v, 2));
  v = _mm512_add_epi16(v, _mm512_bslli_epi128(v, 4));
  return _mm512_add_epi16(v, _mm512_bslli_epi128(v, 8));
}

// Adds up count one-byte deltas (count at least 1) onto the running value and writes
// the words at o, 64 at a time: the last stores may write up to 63 words past them. The
// held literals (in order) set their words, and the words after them follow on. The 64
// words are summed inside their 8 lanes; the lane totals, gathered into one small
// register, are summed there and spread back (fewer full-width shuffles than carrying
// them lane to lane in each half).
__attribute__((target(RTE_IMX_WIDE))) void sumDeltas(const uint8_t* deltas, std::size_t count, const HeldLiteral* held,
                                                     std::size_t heldCount, uint8_t*& o, unsigned& value)
{
  alignas(64) static constexpr uint16_t laneTotals[32] = {7, 15, 23, 31, 39, 47, 55, 63};
  alignas(64) static constexpr uint16_t toLanes[2][32] = {
      {0, 0, 0, 0, 0, 0, 0, 0, 1, 1, 1, 1, 1, 1, 1, 1, 2, 2, 2, 2, 2, 2, 2, 2, 3, 3, 3, 3, 3, 3, 3, 3},
      {4, 4, 4, 4, 4, 4, 4, 4, 5, 5, 5, 5, 5, 5, 5, 5, 6, 6, 6, 6, 6, 6, 6, 6, 7, 7, 7, 7, 7, 7, 7, 7}};
  const __m512i gather = _mm512_load_si512(laneTotals);
  const __m512i toLow = _mm512_load_si512(toLanes[0]), toHigh = _mm512_load_si512(toLanes[1]);
  const __m128i lastWord = _mm_set1_epi16(0x0F0E);
  __m128i running = _mm_set1_epi16(static_cast<short>(value));
  uint8_t* const out = o; // a local copy, as in decodeAvx2
  std::size_t h = 0;
  for (std::size_t i = 0; i < count; i += 64)
  {
    const __m512i low = laneSums(_mm512_cvtepi8_epi16(_mm256_load_si256(reinterpret_cast<const __m256i*>(deltas + i))));
    const __m512i high =
        laneSums(_mm512_cvtepi8_epi16(_mm256_load_si256(reinterpret_cast<const __m256i*>(deltas + i + 32))));
    __m128i totals = _mm512_castsi512_si128(_mm512_permutex2var_epi16(low, gather, high));
    totals = _mm_add_epi16(totals, _mm_bslli_si128(totals, 2));
    totals = _mm_add_epi16(totals, _mm_bslli_si128(totals, 4));
    totals = _mm_add_epi16(totals, _mm_bslli_si128(totals, 8));
    // What each lane starts from: the running value and the lanes before it.
    const __m512i before = _mm512_castsi128_si512(_mm_add_epi16(_mm_bslli_si128(totals, 2), running));
    __m512i first = _mm512_add_epi16(low, _mm512_permutexvar_epi16(toLow, before));
    __m512i second = _mm512_add_epi16(high, _mm512_permutexvar_epi16(toHigh, before));
    // The next running value from this one, not from the words: the loop then waits on
    // one addition per 64 words.
    running = _mm_add_epi16(running, _mm_shuffle_epi8(totals, lastWord));
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
      running = _mm_add_epi16(running, _mm512_castsi512_si128(correction));
    }
    _mm512_storeu_si512(out + 2 * i, first);
    _mm512_storeu_si512(out + 2 * i + 64, second);
  }
  o = out + 2 * count;
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
        // Literals close together: the next 64 bytes go the AVX2 way, which takes a
        // literal on the spot (longer stretches measured slower: where nibble blocks
        // are common, the wide way is faster once the literals are behind).
        addUp();
        result = decodeAvx2(p, end, o, outEnd, value, end - p > 64 ? p + 64 : nullptr);
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

} // namespace RTE::ImxCoder
