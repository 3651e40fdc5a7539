#include <Core/Common/OperatingSystem/FolderSizeCalculator.h>

#include <Core/Common/OperatingSystem/FileSystem.h>
#include <Core/Common/OperatingSystem/JobQueue.h>

#include <vector>

namespace RTE
{

FolderSizeCalculator::FolderSizeCalculator(Callback callback, int threadCount) :
    m_callback(std::move(callback)),
    m_queue(std::make_unique<JobQueue>(JobQueue::Unlimited, threadCount, m_control,
                                       QStringLiteral("FolderSizeCalculatorThread")))
{
}

FolderSizeCalculator::~FolderSizeCalculator()
{
  stop();
  m_queue.reset();
}

void FolderSizeCalculator::queue(const QString& path)
{
  // Outside the lock: a worker that finishes meanwhile must be able to store its result.
  m_queue->Enqueue([this, path] { measure(path); });
}

void FolderSizeCalculator::update(const QString& path)
{
  {
    std::lock_guard lock(m_mutex);
    Entry& entry = m_entries[path];
    if (!m_enabled)
    {
      entry.state = State::Waiting;
      return;
    }
    if (entry.state == State::Queued || entry.state == State::InProgress)
      return;
    entry.state = State::Queued;
  }
  queue(path);
}

qint64 FolderSizeCalculator::getSize(const QString& path) const
{
  std::lock_guard lock(m_mutex);
  const auto it = m_entries.constFind(path);
  return it == m_entries.cend() ? -1 : it->size;
}

void FolderSizeCalculator::setSize(const QString& path, qint64 size)
{
  std::lock_guard lock(m_mutex);
  Entry& entry = m_entries[path];
  entry.size = size;
  entry.state = State::Known;
}

void FolderSizeCalculator::remove(const QString& path)
{
  std::lock_guard lock(m_mutex);
  const auto it = m_entries.find(path);
  if (it != m_entries.end())
    it->state = State::Removed;
}

bool FolderSizeCalculator::isRemoved(const QString& path) const
{
  std::lock_guard lock(m_mutex);
  const auto it = m_entries.constFind(path);
  return it != m_entries.cend() && it->state == State::Removed;
}

void FolderSizeCalculator::enable(bool on)
{
  std::vector<QString> waiting;
  {
    std::lock_guard lock(m_mutex);
    m_enabled = on;
    if (!on)
      return;
    for (auto it = m_entries.begin(); it != m_entries.end(); ++it)
    {
      if (it->state == State::Waiting)
      {
        it->state = State::Queued;
        waiting.push_back(it.key());
      }
    }
  }
  for (const QString& path : waiting)
    queue(path);
}

void FolderSizeCalculator::stop()
{
  {
    std::lock_guard lock(m_mutex);
    for (Entry& entry : m_entries)
      entry.state = State::Removed;
  }
  m_control.cancel();
  m_queue->Cancel();
}

void FolderSizeCalculator::measure(const QString& path)
{
  {
    std::lock_guard lock(m_mutex);
    const auto it = m_entries.find(path);
    if (it == m_entries.end() || it->state == State::Removed)
      return;
    it->state = State::InProgress;
  }
  const auto size = static_cast<qint64>(FileSystem::DirSize(path, m_control, true));
  {
    std::lock_guard lock(m_mutex);
    const auto it = m_entries.find(path);
    if (m_control.isCanceled() || it == m_entries.end() || it->state == State::Removed)
      return;
    it->size = size;
    it->state = State::Known;
  }
  if (m_callback)
    m_callback(path, size);
}

} // namespace RTE
