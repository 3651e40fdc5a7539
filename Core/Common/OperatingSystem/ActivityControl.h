// The ordinary activity control: an atomic flag, so cancel() may come from any thread
// while workers poll isCanceled().
//
//   RTE::ActivityControl control;
//   RTE::JobQueue queue(16, 2, control, "Writer");
//   ...
//   control.cancel();   // the queue's workers stop after their current job
#pragma once

#include <Core/Common/OperatingSystem/I_ActivityControl.h>

#include <atomic>

namespace RTE
{

class CORECOMMON_EXPORT ActivityControl : public I_ActivityControl
{
  Q_OBJECT

public:
  ActivityControl() = default;
  ~ActivityControl() override;

  // Sets the flag, then emits canceled() (on the calling thread).
  void cancel() override;
  bool isCanceled() const override;
  // Clears the flag; emits nothing.
  void reset() override;

private:
  std::atomic<bool> m_canceled{false};
};

} // namespace RTE
