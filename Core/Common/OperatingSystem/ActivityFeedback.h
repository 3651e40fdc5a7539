// The ordinary activity feedback: passes progress (clamped to 0..100) and messages on
// as its signals.
//
//   RTE::ActivityFeedback feedback;
//   feedback.reportProgress(150);   // progressReported(100)
#pragma once

#include <Core/Common/OperatingSystem/I_ActivityFeedback.h>

namespace RTE
{

class CORECOMMON_EXPORT ActivityFeedback : public I_ActivityFeedback
{
  Q_OBJECT

public:
  ActivityFeedback() = default;
  ~ActivityFeedback() override;

  // Emits progressReported with percent clamped into [0, 100] (not a number: 0).
  void reportProgress(double percent) override;
  // Emits messageReported(text).
  void reportMessage(const QString& text) override;
};

// percent clamped into [0, 100]; not a number gives 0.
CORECOMMON_EXPORT double clampPercent(double percent);

} // namespace RTE
