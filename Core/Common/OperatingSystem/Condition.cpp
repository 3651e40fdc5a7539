#include <Core/Common/OperatingSystem/Condition.h>

#include <chrono>

namespace RTE
{

void Condition::Signal()
{
  {
    std::lock_guard lock(m_mutex);
    m_signaled = true;
  }
  m_changed.notify_one();
}

void Condition::Broadcast()
{
  {
    std::lock_guard lock(m_mutex);
    m_signaled = true;
  }
  m_changed.notify_all();
}

void Condition::Reset()
{
  std::lock_guard lock(m_mutex);
  m_signaled = false;
}

bool Condition::IsSignaled() const
{
  std::lock_guard lock(m_mutex);
  return m_signaled;
}

void Condition::Wait()
{
  std::unique_lock lock(m_mutex);
  m_changed.wait(lock, [this] { return m_signaled; });
}

bool Condition::TimedWait(int milliseconds)
{
  const auto deadline =
      std::chrono::steady_clock::now() + std::chrono::milliseconds(milliseconds > 0 ? milliseconds : 0);
  std::unique_lock lock(m_mutex);
  return m_changed.wait_until(lock, deadline, [this] { return m_signaled; });
}

} // namespace RTE
