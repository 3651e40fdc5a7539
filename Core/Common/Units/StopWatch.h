// Measures elapsed time on the monotonic high-resolution clock; unaffected by changes of
// the wall-clock time.
//
//   RTE::StopWatch watch;            // running
//   doWork();
//   RTE::TimeSpan took = watch.Elapsed();
//   watch.Stop();                    // Elapsed() now stays fixed
//   watch.Start();                   // continues from where it stopped
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/TimeSpan.h>

#include <chrono>

namespace RTE
{

class CORECOMMON_EXPORT StopWatch
{
public:
  // Starts running from zero.
  StopWatch();

  // Continues after Stop(); no effect while running.
  void Start();
  // Freezes Elapsed(); no effect while stopped.
  void Stop();
  // Zero and running.
  void Restart();
  // Zero and stopped.
  void Reset();

  bool IsRunning() const { return m_running; }
  // The time spent running since the last Restart()/Reset(), to the clock's resolution.
  TimeSpan Elapsed() const;

private:
  using Clock = std::chrono::steady_clock;

  Clock::time_point m_startedAt;
  Clock::duration m_accumulated{};
  bool m_running = true;
};

} // namespace RTE
