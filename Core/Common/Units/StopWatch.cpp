#include <Core/Common/Units/StopWatch.h>

namespace RTE
{

StopWatch::StopWatch() : m_startedAt(Clock::now()) {}

void StopWatch::Start()
{
  if (m_running)
    return;
  m_startedAt = Clock::now();
  m_running = true;
}

void StopWatch::Stop()
{
  if (!m_running)
    return;
  m_accumulated += Clock::now() - m_startedAt;
  m_running = false;
}

void StopWatch::Restart()
{
  m_accumulated = Clock::duration::zero();
  m_startedAt = Clock::now();
  m_running = true;
}

void StopWatch::Reset()
{
  m_accumulated = Clock::duration::zero();
  m_running = false;
}

TimeSpan StopWatch::Elapsed() const
{
  Clock::duration total = m_accumulated;
  if (m_running)
    total += Clock::now() - m_startedAt;
  return NanoSeconds(std::chrono::duration_cast<std::chrono::nanoseconds>(total).count());
}

} // namespace RTE
