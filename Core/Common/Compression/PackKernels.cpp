#include <Core/Common/Compression/PackKernels_p.h>

#include <Core/Common/Utilities/InstructionSets.h>

#include <atomic>
#include <cstring>

#if defined(__x86_64__) || defined(__i386__)
#include <immintrin.h>
#define RTE_PACK_KERNELS_X86 1
#endif

namespace RTE::PackKernels
{
namespace
{

std::atomic<bool> portableOnly{false};

inline uint16_t loadWord(const uint8_t* p)
{
  return static_cast<uint16_t>(p[0] | (p[1] << 8));
}

inline void storeWord(uint8_t* p, unsigned value)
{
  p[0] = static_cast<uint8_t>(value);
  p[1] = static_cast<uint8_t>(value >> 8);
}

// ---- portable loops ----------------------------------------------------------------

void pack12bitPortable(const uint8_t* s, std::size_t groups, uint8_t* d)
{
  for (std::size_t i = 0; i < groups; ++i, s += 4, d += 3)
  {
    d[0] = s[0];
    d[1] = static_cast<uint8_t>(((s[1] & 0x0F) << 4) | (s[2] >> 4));
    d[2] = static_cast<uint8_t>(((s[2] & 0x0F) << 4) | (s[3] & 0x0F));
  }
}

void unpack12bitPortable(const uint8_t* s, std::size_t groups, uint8_t* d)
{
  for (std::size_t i = 0; i < groups; ++i, s += 3, d += 4)
  {
    d[0] = s[0];
    d[1] = static_cast<uint8_t>(s[1] >> 4);
    d[2] = static_cast<uint8_t>((s[1] << 4) | (s[2] >> 4));
    d[3] = static_cast<uint8_t>(s[2] & 0x0F);
  }
}

void packFixed8Portable(const uint8_t* s, std::size_t pairs, unsigned start, bool wrap, uint8_t* d)
{
  for (std::size_t i = 0; i < 2 * pairs; ++i)
    d[i] = static_cast<uint8_t>(fixedValue(loadWord(s + 2 * i), start, 8, wrap));
}

void packFixed12Portable(const uint8_t* s, std::size_t groups, unsigned start, bool wrap, uint8_t* d)
{
  for (std::size_t i = 0; i < groups; ++i, s += 8, d += 6)
  {
    const unsigned a = fixedValue(loadWord(s), start, 12, wrap);
    const unsigned b = fixedValue(loadWord(s + 2), start, 12, wrap);
    const unsigned c = fixedValue(loadWord(s + 4), start, 12, wrap);
    const unsigned e = fixedValue(loadWord(s + 6), start, 12, wrap);
    storeWord(d, (a & 0xFFF) | ((b & 0xF) << 12));
    storeWord(d + 2, ((b >> 4) & 0xFF) | ((c & 0xFF) << 8));
    storeWord(d + 4, ((e & 0xFFF) << 4) | ((c >> 8) & 0xF));
  }
}

void unpackFixed8Portable(const uint8_t* s, std::size_t words, unsigned start, uint8_t* d)
{
  for (std::size_t i = 0; i < words; ++i)
    storeWord(d + 2 * i, static_cast<unsigned>(s[i]) << start);
}

void unpackFixed12Portable(const uint8_t* s, std::size_t groups, unsigned start, uint8_t* d)
{
  for (std::size_t i = 0; i < groups; ++i, s += 6, d += 8)
  {
    const unsigned w0 = loadWord(s), w1 = loadWord(s + 2), w2 = loadWord(s + 4);
    storeWord(d, (w0 & 0xFFF) << start);
    storeWord(d + 2, ((w0 >> 12) | ((w1 & 0xFF) << 4)) << start);
    storeWord(d + 4, ((w1 >> 8) | ((w2 & 0xF) << 8)) << start);
    storeWord(d + 6, (w2 >> 4) << start);
  }
}

#ifdef RTE_PACK_KERNELS_X86

// ---- AVX2 loops --------------------------------------------------------------------
// Each handles whole blocks and leaves the rest to the portable loop. Stores of 16
// bytes that carry only 12 valid ones overlap the next store, so the loops stop while
// enough real output follows to absorb the overhang.

__attribute__((target("avx2"))) std::size_t pack12bitAvx2(const uint8_t* s, std::size_t groups, uint8_t* d)
{
  // Per 32-bit lane x = w0 | w1 << 16: bytes b0, (b1 low << 4 | b2 high), (b2 low << 4 | b3 low).
  const __m256i compact = _mm256_setr_epi8(0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1, //
                                           0, 1, 2, 4, 5, 6, 8, 9, 10, 12, 13, 14, -1, -1, -1, -1);
  const __m256i keep0 = _mm256_set1_epi32(0xFF), keep1 = _mm256_set1_epi32(0xF0F000);
  const __m256i keep2 = _mm256_set1_epi32(0xF00), keep3 = _mm256_set1_epi32(0xF0000);
  std::size_t done = 0;
  for (; groups - done >= 10; done += 8, s += 32, d += 24)
  {
    const __m256i x = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s));
    __m256i y = _mm256_and_si256(x, keep0);
    y = _mm256_or_si256(y, _mm256_and_si256(_mm256_slli_epi32(x, 4), keep1));
    y = _mm256_or_si256(y, _mm256_and_si256(_mm256_srli_epi32(x, 12), keep2));
    y = _mm256_or_si256(y, _mm256_and_si256(_mm256_srli_epi32(x, 8), keep3));
    y = _mm256_shuffle_epi8(y, compact);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d), _mm256_castsi256_si128(y));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d + 12), _mm256_extracti128_si256(y, 1));
  }
  return done;
}

__attribute__((target("avx2"))) std::size_t unpack12bitAvx2(const uint8_t* s, std::size_t groups, uint8_t* d)
{
  const __m256i lanes = _mm256_setr_epi32(0, 1, 2, 3, 3, 4, 5, 6);
  const __m256i spread = _mm256_setr_epi8(0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1, //
                                          0, 1, 2, -1, 3, 4, 5, -1, 6, 7, 8, -1, 9, 10, 11, -1);
  const __m256i keep0 = _mm256_set1_epi32(0xFF), keep1 = _mm256_set1_epi32(0xF0F00);
  const __m256i keep2 = _mm256_set1_epi32(0xF00000), keep3 = _mm256_set1_epi32(0xF000000);
  std::size_t done = 0;
  // Reads 32 bytes for 24: at least 3 more groups must follow.
  for (; groups - done >= 11; done += 8, s += 24, d += 32)
  {
    __m256i y = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s));
    y = _mm256_shuffle_epi8(_mm256_permutevar8x32_epi32(y, lanes), spread);
    __m256i x = _mm256_and_si256(y, keep0);
    x = _mm256_or_si256(x, _mm256_and_si256(_mm256_srli_epi32(y, 4), keep1));
    x = _mm256_or_si256(x, _mm256_and_si256(_mm256_slli_epi32(y, 12), keep2));
    x = _mm256_or_si256(x, _mm256_and_si256(_mm256_slli_epi32(y, 8), keep3));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(d), x);
  }
  return done;
}

__attribute__((target("avx2"))) inline __m256i fixedValues(__m256i words, __m128i shift, __m256i top, bool wrap)
{
  const __m256i v = _mm256_srl_epi16(words, shift);
  return wrap ? _mm256_and_si256(v, top) : _mm256_min_epu16(v, top);
}

__attribute__((target("avx2"))) std::size_t packFixed8Avx2(const uint8_t* s, std::size_t pairs, unsigned start,
                                                           bool wrap, uint8_t* d)
{
  const __m128i shift = _mm_cvtsi32_si128(static_cast<int>(start));
  const __m256i top = _mm256_set1_epi16(0xFF);
  std::size_t done = 0;
  for (; pairs - done >= 16; done += 16, s += 64, d += 32)
  {
    const __m256i a = fixedValues(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(s)), shift, top, wrap);
    const __m256i b = fixedValues(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(s + 32)), shift, top, wrap);
    const __m256i packed = _mm256_permute4x64_epi64(_mm256_packus_epi16(a, b), 0xD8);
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(d), packed);
  }
  return done;
}

__attribute__((target("avx2"))) std::size_t packFixed12Avx2(const uint8_t* s, std::size_t groups, unsigned start,
                                                            bool wrap, uint8_t* d)
{
  const __m128i shift = _mm_cvtsi32_si128(static_cast<int>(start));
  const __m256i top = _mm256_set1_epi16(0xFFF);
  // Per 64-bit lane q = a | b << 16 | c << 32 | e << 48: 48 bits a | b << 12 | c << 24 | e << 36.
  const __m256i k0 = _mm256_set1_epi64x(0xFFF), k1 = _mm256_set1_epi64x(0xFFF000);
  const __m256i k2 = _mm256_set1_epi64x(0xFFF000000), k3 = _mm256_set1_epi64x(0xFFF000000000);
  const __m256i compact = _mm256_setr_epi8(0, 1, 2, 3, 4, 5, 8, 9, 10, 11, 12, 13, -1, -1, -1, -1, //
                                           0, 1, 2, 3, 4, 5, 8, 9, 10, 11, 12, 13, -1, -1, -1, -1);
  std::size_t done = 0;
  for (; groups - done >= 5; done += 4, s += 32, d += 24)
  {
    const __m256i q = fixedValues(_mm256_loadu_si256(reinterpret_cast<const __m256i*>(s)), shift, top, wrap);
    __m256i y = _mm256_and_si256(q, k0);
    y = _mm256_or_si256(y, _mm256_and_si256(_mm256_srli_epi64(q, 4), k1));
    y = _mm256_or_si256(y, _mm256_and_si256(_mm256_srli_epi64(q, 8), k2));
    y = _mm256_or_si256(y, _mm256_and_si256(_mm256_srli_epi64(q, 12), k3));
    y = _mm256_shuffle_epi8(y, compact);
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d), _mm256_castsi256_si128(y));
    _mm_storeu_si128(reinterpret_cast<__m128i*>(d + 12), _mm256_extracti128_si256(y, 1));
  }
  return done;
}

__attribute__((target("avx2"))) std::size_t unpackFixed8Avx2(const uint8_t* s, std::size_t words, unsigned start,
                                                             uint8_t* d)
{
  const __m128i shift = _mm_cvtsi32_si128(static_cast<int>(start));
  std::size_t done = 0;
  for (; words - done >= 16; done += 16, s += 16, d += 32)
  {
    const __m256i w = _mm256_cvtepu8_epi16(_mm_loadu_si128(reinterpret_cast<const __m128i*>(s)));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(d), _mm256_sll_epi16(w, shift));
  }
  return done;
}

__attribute__((target("avx2"))) std::size_t unpackFixed12Avx2(const uint8_t* s, std::size_t groups, unsigned start,
                                                              uint8_t* d)
{
  const __m128i shift = _mm_cvtsi32_si128(static_cast<int>(start));
  const __m256i lanes = _mm256_setr_epi32(0, 1, 2, 3, 3, 4, 5, 6);
  const __m256i spread = _mm256_setr_epi8(0, 1, 2, 3, 4, 5, -1, -1, 6, 7, 8, 9, 10, 11, -1, -1, //
                                          0, 1, 2, 3, 4, 5, -1, -1, 6, 7, 8, 9, 10, 11, -1, -1);
  const __m256i k0 = _mm256_set1_epi64x(0xFFF), k1 = _mm256_set1_epi64x(0xFFF0000);
  const __m256i k2 = _mm256_set1_epi64x(0xFFF00000000), k3 = _mm256_set1_epi64x(0xFFF000000000000);
  std::size_t done = 0;
  // Reads 32 bytes for 24: at least 2 more groups must follow.
  for (; groups - done >= 6; done += 4, s += 24, d += 32)
  {
    __m256i q = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(s));
    q = _mm256_shuffle_epi8(_mm256_permutevar8x32_epi32(q, lanes), spread);
    __m256i w = _mm256_and_si256(q, k0);
    w = _mm256_or_si256(w, _mm256_and_si256(_mm256_slli_epi64(q, 4), k1));
    w = _mm256_or_si256(w, _mm256_and_si256(_mm256_slli_epi64(q, 8), k2));
    w = _mm256_or_si256(w, _mm256_and_si256(_mm256_slli_epi64(q, 12), k3));
    _mm256_storeu_si256(reinterpret_cast<__m256i*>(d), _mm256_sll_epi16(w, shift));
  }
  return done;
}

bool processorHasAvx2()
{
  static const bool has = RTE::InstructionSets::host().has(RTE::InstructionSets::E_Feature::AVX2);
  return has;
}

#endif

} // namespace

void setPortableOnly(bool only)
{
  portableOnly.store(only, std::memory_order_relaxed);
}

bool usesAvx2()
{
#ifdef RTE_PACK_KERNELS_X86
  return processorHasAvx2() && !portableOnly.load(std::memory_order_relaxed);
#else
  return false;
#endif
}

#ifdef RTE_PACK_KERNELS_X86
#define RTE_WITH_AVX2(call, done) const std::size_t done = usesAvx2() ? (call) : 0
#else
#define RTE_WITH_AVX2(call, done) const std::size_t done = 0
#endif

void pack12bit(const uint8_t* s, std::size_t groups, uint8_t* d)
{
  RTE_WITH_AVX2(pack12bitAvx2(s, groups, d), done);
  pack12bitPortable(s + 4 * done, groups - done, d + 3 * done);
}

void unpack12bit(const uint8_t* s, std::size_t groups, uint8_t* d)
{
  RTE_WITH_AVX2(unpack12bitAvx2(s, groups, d), done);
  unpack12bitPortable(s + 3 * done, groups - done, d + 4 * done);
}

void packFixed8(const uint8_t* s, std::size_t pairs, unsigned start, bool wrap, uint8_t* d)
{
  RTE_WITH_AVX2(packFixed8Avx2(s, pairs, start, wrap, d), done);
  packFixed8Portable(s + 4 * done, pairs - done, start, wrap, d + 2 * done);
}

void packFixed12(const uint8_t* s, std::size_t groups, unsigned start, bool wrap, uint8_t* d)
{
  RTE_WITH_AVX2(packFixed12Avx2(s, groups, start, wrap, d), done);
  packFixed12Portable(s + 8 * done, groups - done, start, wrap, d + 6 * done);
}

void packFixed16(const uint8_t* s, std::size_t words, unsigned start, uint8_t* d)
{
  if (words == 0)
    return;
  if (start == 0)
  {
    std::memcpy(d, s, 2 * words);
    return;
  }
  for (std::size_t i = 0; i < words; ++i)
    storeWord(d + 2 * i, static_cast<unsigned>(loadWord(s + 2 * i)) >> start);
}

void unpackFixed8(const uint8_t* s, std::size_t words, unsigned start, uint8_t* d)
{
  RTE_WITH_AVX2(unpackFixed8Avx2(s, words, start, d), done);
  unpackFixed8Portable(s + done, words - done, start, d + 2 * done);
}

void unpackFixed12(const uint8_t* s, std::size_t groups, unsigned start, uint8_t* d)
{
  RTE_WITH_AVX2(unpackFixed12Avx2(s, groups, start, d), done);
  unpackFixed12Portable(s + 6 * done, groups - done, start, d + 8 * done);
}

void unpackFixed16(const uint8_t* s, std::size_t words, unsigned start, uint8_t* d)
{
  if (words == 0)
    return;
  if (start == 0)
  {
    std::memcpy(d, s, 2 * words);
    return;
  }
  for (std::size_t i = 0; i < words; ++i)
    storeWord(d + 2 * i, static_cast<unsigned>(loadWord(s + 2 * i)) << start);
}

} // namespace RTE::PackKernels
