// Maps the 0 to 100 progress of a sub-operation into a slice of its parent's range.
//
//   RTE::SubActivityFeedback copying(feedback, 0, 80);   // copying is 80 % of the work
//   RTE::SubActivityFeedback checking(feedback, 80, 100);
//   copying.reportProgress(50);                          // feedback reports 40
//
// Sub-feedbacks nest: a sub-feedback may be the parent of another.
#pragma once

#include <Core/Common/OperatingSystem/I_ActivityFeedback.h>

namespace RTE
{

class CORECOMMON_EXPORT SubActivityFeedback : public I_ActivityFeedback
{
  Q_OBJECT

public:
  // The parent is not owned and must outlive this object. Throws as SetProgressRange.
  SubActivityFeedback(I_ActivityFeedback& parent, double parentProgressMinValue, double parentProgressMaxValue);
  ~SubActivityFeedback() override;

  // Both values are clamped into [0, 100]. Throws RTE::VerificationFailed if the
  // clamped maximum is below the clamped minimum; the range is then left unchanged.
  void SetProgressRange(double parentProgressMinValue, double parentProgressMaxValue);

  // Reports min + (max - min) / 100 * percent to the parent, percent clamped to
  // [0, 100]. Emits nothing itself.
  void reportProgress(double percent) override;
  // Passes the text to the parent unchanged.
  void reportMessage(const QString& text) override;

  double parentProgressMinValue() const { return m_min; }
  double parentProgressMaxValue() const { return m_max; }

private:
  I_ActivityFeedback& m_parent;
  double m_min = 0.0;
  double m_max = 100.0;
};

} // namespace RTE
