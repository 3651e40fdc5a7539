// The IMX row-parallel encoder: its scratch buffers, its helper threads and the split of
// the rows into pieces.
#include <Core/Common/Compression/ImxCoder_p.h>

#include <Core/Common/Compression/ImxShared_p.h>

#include <algorithm>
#include <atomic>
#include <condition_variable>
#include <cstring>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace RTE::ImxCoder
{
using namespace detail;

namespace
{

std::atomic<unsigned> configuredThreads{0};

// Scratch buffers of the parallel encoder, kept between calls so that their pages are
// already mapped (fresh ones cost a page fault per 4 KiB written).
class ScratchPool
{
public:
  // The back pieces of an image all wait in scratch buffers until the ends meet: with
  // two threads, half of its pieces (an 8 MiB image: 16 of 384 KiB).
  static constexpr std::size_t largestKept = std::size_t{1} << 20, mostKept = std::size_t{16} << 20;

  std::unique_ptr<uint8_t[]> take(std::size_t size, std::size_t& capacity)
  {
    {
      const std::lock_guard<std::mutex> lock(m_mutex);
      for (auto it = m_free.begin(); it != m_free.end(); ++it)
        if (it->second >= size)
        {
          capacity = it->second;
          m_kept -= capacity;
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
    if (capacity <= largestKept && m_kept + capacity <= mostKept)
    {
      m_free.emplace_back(std::move(buffer), capacity);
      m_kept += capacity;
    }
  }

private:
  std::mutex m_mutex;
  std::vector<std::pair<std::unique_ptr<uint8_t[]>, std::size_t>> m_free;
  std::size_t m_kept = 0; // bytes in m_free
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

// Runs job on the calling thread and threads - 1 others: the kept helpers when they are
// free, otherwise threads started for it.
void runOnThreads(unsigned threads, const std::function<void()>& job)
{
  if (threads <= 1)
  {
    job(); // no helper to wake, nor the helpers' lock to take
    return;
  }
  if (threads <= std::max(1u, std::thread::hardware_concurrency()) && helpers().run(threads - 1, job))
    return;
  std::vector<std::thread> workers;
  workers.reserve(threads - 1);
  for (unsigned t = 1; t < threads; ++t)
    workers.emplace_back(job);
  job();
  for (std::thread& worker : workers)
    worker.join();
}

} // namespace

std::size_t encodeParallel(const uint8_t* source, std::size_t rows, std::size_t columns, uint8_t* destination,
                           unsigned threads)
{
  threads = static_cast<unsigned>(std::min<std::size_t>(threads, rows));
  if (threads <= 1)
    return encode(source, rows, columns, destination);
  const EncoderLoops loops = chooseEncoder(source, rows * columns);

  // The rows are cut into pieces of about 128 Ki words (at least 8 per thread). Each
  // piece starts from the running value and the pending literals the serial encoder
  // would have there and first writes those pending literal tokens itself; the piece
  // before leaves them out. So the pieces simply concatenate to the serial stream.
  constexpr std::size_t pieceWords = std::size_t{1} << 17;
  std::size_t rowsPerPiece = std::max<std::size_t>(1, pieceWords / columns);
  rowsPerPiece = std::min(rowsPerPiece, std::max<std::size_t>(1, rows / (8 * std::size_t{threads})));
  const std::size_t pieces = (rows + rowsPerPiece - 1) / rowsPerPiece;

  // The literal streak before each piece, from the words before it; a streak reaching
  // back over a whole piece adds that piece's, so no word is looked at twice.
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

  // Encodes piece p at begin; returns its bytes without the pending literals the next
  // piece writes again.
  const auto encodePiece = [&](std::size_t p, uint8_t* begin)
  {
    const std::size_t firstRow = p * rowsPerPiece, rowCount = std::min(rowsPerPiece, rows - firstRow);
    const std::size_t firstWord = firstRow * columns;
    EncoderState state;
    if (firstWord > 0)
      state.previous = loadWord(source + 2 * (firstWord - 1));
    state.pending = leading[p];
    uint8_t* out = begin;
    for (std::size_t i = firstWord - leading[p]; i < firstWord; ++i, out += 3)
    {
      const unsigned word = loadWord(source + 2 * i);
      out[0] = literalToken;
      out[1] = static_cast<uint8_t>(word);
      out[2] = static_cast<uint8_t>(word >> 8);
    }
    out = encodeRows(source + 2 * firstWord, rowCount, columns, state, out, loops);
    return static_cast<std::size_t>(out - begin) - 3 * std::size_t{leading[p + 1]};
  };

  // One thread takes the pieces from the front and encodes each in place, right after
  // the one before (the stream before a piece takes at most 3 bytes per word before its
  // pending literals, so it fits). The others take pieces from the back into scratch
  // buffers, which all threads copy behind the front ones once every piece is done.
  // Nobody waits while there is a piece to encode, and with two threads only about half
  // of the stream is copied, by both.
  struct Scratch
  {
    std::unique_ptr<uint8_t[]> buffer;
    std::size_t capacity = 0, size = 0, at = 0;
  };
  std::vector<Scratch> scratch(pieces);
  std::mutex mutex;
  std::size_t front = 0, back = pieces, frontEnd = 0;
  std::atomic<bool> frontTaken{false};
  runOnThreads(threads,
               [&]
               {
                 const bool isFront = !frontTaken.exchange(true);
                 for (;;)
                 {
                   std::size_t p = 0;
                   {
                     const std::lock_guard<std::mutex> lock(mutex);
                     if (front == back)
                       return;
                     p = isFront ? front++ : --back;
                   }
                   if (isFront)
                   {
                     frontEnd += encodePiece(p, destination + frontEnd);
                     continue;
                   }
                   const std::size_t words = leading[p] + std::min(rowsPerPiece, rows - p * rowsPerPiece) * columns;
                   Scratch& piece = scratch[p];
                   piece.buffer = scratchPool().take(maxEncodedSize(words), piece.capacity);
                   piece.size = encodePiece(p, piece.buffer.get());
                 }
               });

  std::size_t end = frontEnd;
  for (std::size_t p = front; p < pieces; ++p)
  {
    scratch[p].at = end;
    end += scratch[p].size;
  }
  if (front < pieces)
  {
    std::atomic<std::size_t> next{front};
    runOnThreads(static_cast<unsigned>(std::min<std::size_t>(threads, pieces - front)),
                 [&]
                 {
                   for (std::size_t p; (p = next.fetch_add(1, std::memory_order_relaxed)) < pieces;)
                   {
                     std::memcpy(destination + scratch[p].at, scratch[p].buffer.get(), scratch[p].size);
                     scratchPool().give(std::move(scratch[p].buffer), scratch[p].capacity);
                   }
                 });
  }
  return end;
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
