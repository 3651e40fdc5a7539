#include <Core/Common/Compression/ImxCoder_p.h>

#include <algorithm>
#include <atomic>
#include <cstring>
#include <memory>
#include <thread>
#include <vector>

#if defined(__SSE2__)
#include <emmintrin.h>
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

inline unsigned loadWord(const uint8_t* p)
{
  return static_cast<unsigned>(p[0]) | (static_cast<unsigned>(p[1]) << 8);
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
// returns the new end. An even run keeps its first delta as a byte.
inline uint8_t* packNibbles(uint8_t* run, std::size_t length)
{
  if (length % 2 == 0)
  {
    ++run;
    --length;
  }
  // Pair i is read from 2i, 2i + 1 and written at i + 1: never ahead of the reading.
  const std::size_t pairs = (length - 1) / 2;
  uint8_t high = run[0], low = run[1];
  run[0] = nibbleToken;
  for (std::size_t i = 0; i < pairs; ++i)
  {
    if (i > 0)
    {
      high = run[2 * i];
      low = run[2 * i + 1];
    }
    run[i + 1] = static_cast<uint8_t>((high << 4) | (low & 0x0F));
  }
  run[pairs + 1] = static_cast<uint8_t>((run[length - 1] << 4) | nibbleEnd);
  return run + pairs + 2;
}

// The serial encoder from a given state: previous is the running value, pending the
// number of literal tokens already written just before out that may still fold.
struct EncoderState
{
  unsigned previous = 0;
  unsigned pending = 0;
};

uint8_t* encodeRows(const uint8_t* source, std::size_t rows, std::size_t columns, EncoderState& state, uint8_t* out)
{
  unsigned previous = state.previous;
  unsigned pending = state.pending;

  const auto writeLiteral = [&](unsigned word)
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
  };
  const auto flushLiterals = [&]
  {
    if (pending >= 3)
      out = foldLiterals(out, pending);
    pending = 0;
  };

  for (std::size_t row = 0; row < rows; ++row, source += 2 * columns)
  {
    uint8_t* run = nullptr;
    std::size_t runLength = 0;
    const auto step = [&](std::size_t column)
    {
      const unsigned word = loadWord(source + 2 * column);
      const int delta = static_cast<int>(word) - static_cast<int>(previous);
      previous = word;
      if (isSmall(delta) && column + 1 < columns)
      {
        if (pending != 0)
          flushLiterals();
        if (runLength++ == 0)
          run = out;
        *out++ = static_cast<uint8_t>(delta);
        return;
      }
      if (runLength >= shortestNibbleRun)
        out = packNibbles(run, runLength);
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
    };

    std::size_t column = 0;
#if defined(__SSE2__)
    // Sixteen words at a time: the longest prefix of one-byte deltas is written as its 16
    // delta bytes at once; runs of 7 or more small deltas that close inside it are then
    // packed in place and the bytes after them moved up. A word that needs a literal goes
    // the plain way. Word 0 does too (its predecessor is not in this row), and the loop
    // stops before the row's last word.
    if (columns > 0)
      step(column++);
    while (column + 16 < columns)
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
          step(column);
        continue;
      }
      if (pending != 0)
        flushLiterals();
      const uint32_t prefix = count == 16 ? 0xFFFFu : (1u << count) - 1;
      const uint32_t smallMask =
          static_cast<uint32_t>(
              _mm_movemask_epi8(_mm_packs_epi16(_mm_cmpeq_epi16(_mm_subs_epu16(size0, _mm_set1_epi16(7)), zero),
                                                _mm_cmpeq_epi16(_mm_subs_epu16(size1, _mm_set1_epi16(7)), zero)))) &
          prefix;
      const __m128i mask = _mm_set1_epi16(0xFF);
      const __m128i bytes = _mm_packus_epi16(_mm_and_si128(_mm_sub_epi16(current0, before0), mask),
                                             _mm_and_si128(_mm_sub_epi16(current1, before1), mask));
      uint8_t* const base = out;
      _mm_storeu_si128(reinterpret_cast<__m128i*>(base), bytes);

      // Bit 16 + i stands for word i; the low half holds the run open before the block.
      const uint32_t carried = runLength >= 16 ? 0xFFFFu : (0xFFFFu << (16 - runLength)) & 0xFFFFu;
      const uint32_t runs = (smallMask << 16) | carried;
      uint32_t seven = runs;
      for (int shift = 1; shift < 7; ++shift)
        seven &= runs << shift;
      uint32_t closes = (seven << 1) & ~runs & (prefix << 16);
      std::size_t moved = 0; // bytes the block has moved up by packing
      while (closes != 0)
      {
        const unsigned i = static_cast<unsigned>(__builtin_ctz(closes)) - 16;
        closes &= closes - 1;
        const uint32_t othersBefore = ~smallMask & ((1u << i) - 1);
        // The run began before the block (it is the open run) or at the block's start.
        uint8_t* start = runLength > 0 ? run : base;
        std::size_t length = runLength + i;
        if (othersBefore != 0)
        {
          const unsigned first = 32 - static_cast<unsigned>(__builtin_clz(othersBefore));
          start = base + first - moved;
          length = i - first;
        }
        uint8_t* const packedEnd = packNibbles(start, length);
        uint8_t* const rest = base + i - moved;
        std::memmove(packedEnd, rest, 16 - i);
        moved += static_cast<std::size_t>(rest - packedEnd);
      }
      out = base + count - moved;
      if (smallMask == prefix)
      {
        if (runLength == 0)
          run = base;
        runLength += count;
      }
      else
      {
        // The run still open is the small deltas at the end of the prefix.
        runLength = static_cast<std::size_t>(__builtin_clz(~(smallMask << (32 - count))));
        run = out - runLength;
      }
      previous = loadWord(at + 2 * (count - 1));
      column += count;
    }
#endif
    for (; column < columns; ++column)
      step(column);
  }
  state.previous = previous;
  state.pending = pending;
  return out;
}

bool isLiteral(const uint8_t* source, std::size_t index)
{
  const unsigned before = index == 0 ? 0 : loadWord(source + 2 * (index - 1));
  return !fitsByte(static_cast<int>(loadWord(source + 2 * index)) - static_cast<int>(before));
}

// The literal tokens pending just before word index: the literal streak ending there,
// less the full runs of 255 already folded.
unsigned pendingLiteralsBefore(const uint8_t* source, std::size_t index)
{
  std::size_t streak = 0;
  while (streak < index && isLiteral(source, index - 1 - streak))
    ++streak;
  return static_cast<unsigned>(streak % longestLiteralRun);
}

} // namespace

std::size_t encode(const uint8_t* source, std::size_t rows, std::size_t columns, uint8_t* destination)
{
  EncoderState state;
  return static_cast<std::size_t>(encodeRows(source, rows, columns, state, destination) - destination);
}

std::size_t encodeParallel(const uint8_t* source, std::size_t rows, std::size_t columns, uint8_t* destination,
                           unsigned threads)
{
  threads = static_cast<unsigned>(std::min<std::size_t>(threads, rows));
  if (threads <= 1)
    return encode(source, rows, columns, destination);

  // Chunk c takes rows [first[c], first[c + 1]). Each chunk starts from the running value
  // and the pending literals the serial encoder would have there and first writes those
  // pending literal tokens itself; the chunk before leaves them out. So the chunks
  // simply concatenate to the serial stream.
  struct Chunk
  {
    std::size_t firstRow = 0, rowCount = 0;
    unsigned leading = 0;              // literal tokens taken over from the chunk before
    std::unique_ptr<uint8_t[]> buffer; // all chunks but the first; left uninitialised
    uint8_t* begin = nullptr;
    std::size_t size = 0;
    unsigned trailing = 0; // literal tokens left for the next chunk
  };
  std::vector<Chunk> chunks(threads);
  for (unsigned c = 0; c < threads; ++c)
  {
    chunks[c].firstRow = rows * c / threads;
    chunks[c].rowCount = rows * (c + 1) / threads - chunks[c].firstRow;
  }

  const auto work = [&](unsigned c)
  {
    Chunk& chunk = chunks[c];
    const std::size_t firstWord = chunk.firstRow * columns;
    EncoderState state;
    if (firstWord > 0)
    {
      state.previous = loadWord(source + 2 * (firstWord - 1));
      state.pending = pendingLiteralsBefore(source, firstWord);
    }
    chunk.leading = state.pending;
    if (c == 0)
    {
      chunk.begin = destination;
    }
    else
    {
      chunk.buffer.reset(new uint8_t[maxEncodedSize(chunk.leading + chunk.rowCount * columns)]);
      chunk.begin = chunk.buffer.get();
    }
    uint8_t* out = chunk.begin;
    for (std::size_t i = firstWord - chunk.leading; i < firstWord; ++i)
    {
      const unsigned word = loadWord(source + 2 * i);
      out[0] = literalToken;
      out[1] = static_cast<uint8_t>(word);
      out[2] = static_cast<uint8_t>(word >> 8);
      out += 3;
    }
    out = encodeRows(source + 2 * firstWord, chunk.rowCount, columns, state, out);
    chunk.size = static_cast<std::size_t>(out - chunk.begin);
    chunk.trailing = state.pending;
  };

  std::vector<std::thread> workers;
  workers.reserve(threads - 1);
  for (unsigned c = 1; c < threads; ++c)
    workers.emplace_back(work, c);
  work(0);
  for (std::thread& worker : workers)
    worker.join();

  std::size_t size = chunks[0].size;
  for (unsigned c = 1; c < threads; ++c)
  {
    // The next chunk writes the pending literals again; drop this chunk's copies.
    size -= 3 * static_cast<std::size_t>(chunks[c].leading);
    std::memcpy(destination + size, chunks[c].begin, chunks[c].size);
    size += chunks[c].size;
  }
  return size;
}

DecodeResult decode(const uint8_t* source, std::size_t sourceSize, uint8_t* destination, std::size_t words,
                    std::size_t& consumed)
{
  const uint8_t* p = source;
  const uint8_t* const end = source + sourceSize;
  uint8_t* o = destination;
  uint8_t* const outEnd = destination + 2 * words;
  unsigned value = 0;
  DecodeResult result = DecodeResult::Ok;

  const auto put = [&](unsigned word)
  {
    o[0] = static_cast<uint8_t>(word);
    o[1] = static_cast<uint8_t>(word >> 8);
    o += 2;
  };

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
#endif
    if (p == end)
    {
      result = DecodeResult::Truncated;
      break;
    }
    const uint8_t token = *p++;
    if (token == literalToken)
    {
      if (end - p < 2)
      {
        result = DecodeResult::Truncated;
        break;
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
        break;
      }
      const std::size_t count = *p++;
      if (count > static_cast<std::size_t>(outEnd - o) / 2)
      {
        result = DecodeResult::Corrupt;
        break;
      }
      if (static_cast<std::size_t>(end - p) < 2 * count)
      {
        result = DecodeResult::Truncated;
        break;
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
      for (;;)
      {
        if (p == end)
        {
          result = DecodeResult::Truncated;
          break;
        }
        const uint8_t pair = *p++;
        const bool last = (pair & 0x0F) == nibbleEnd;
        if (static_cast<std::size_t>(outEnd - o) < (last ? 2u : 4u))
        {
          result = DecodeResult::Corrupt;
          break;
        }
        // Sign-extend the high nibble, then the low one.
        value += static_cast<unsigned>(static_cast<int8_t>(pair & 0xF0) >> 4);
        put(value & 0xFFFF);
        if (last)
          break;
        value += static_cast<unsigned>(static_cast<int8_t>(pair << 4) >> 4);
        put(value & 0xFFFF);
      }
      if (result != DecodeResult::Ok)
        break;
    }
    else
    {
      value += static_cast<unsigned>(static_cast<int8_t>(token));
      put(value & 0xFFFF);
    }
    value &= 0xFFFF;
  }
  consumed = static_cast<std::size_t>(p - source);
  return result;
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
