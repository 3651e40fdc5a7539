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
