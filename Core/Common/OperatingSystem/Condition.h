// A manual-reset event: once signalled it stays set, and every Wait returns at once,
// until Reset.
//
//   RTE::Condition ready;
//   worker: prepare(); ready.Broadcast();
//   others: if (!ready.TimedWait(500)) reportTimeout();
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <condition_variable>
#include <mutex>

namespace RTE
{

class CORECOMMON_EXPORT Condition
{
public:
  Condition() = default;
  Condition(const Condition&) = delete;
  Condition& operator=(const Condition&) = delete;

  // Sets the flag and wakes one waiter.
  void Signal();
  // Sets the flag and wakes every waiter.
  void Broadcast();
  // Clears the flag.
  void Reset();
  bool IsSignaled() const;

  // Blocks until the flag is set; returns at once if it is.
  void Wait();
  // Waits at most `milliseconds` (0 or less: not at all) for the flag; returns whether
  // it is set. The deadline is fixed on entry, so spurious wake-ups do not extend it.
  bool TimedWait(int milliseconds);

private:
  mutable std::mutex m_mutex;
  std::condition_variable m_changed;
  bool m_signaled = false;
};

} // namespace RTE
