#include <Core/Common/OperatingSystem/SubActivityFeedback.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/OperatingSystem/ActivityFeedback.h>

namespace RTE
{

SubActivityFeedback::SubActivityFeedback(I_ActivityFeedback& parent, double parentProgressMinValue,
                                         double parentProgressMaxValue) :
    m_parent(parent)
{
  SetProgressRange(parentProgressMinValue, parentProgressMaxValue);
}

SubActivityFeedback::~SubActivityFeedback() = default;

void SubActivityFeedback::SetProgressRange(double parentProgressMinValue, double parentProgressMaxValue)
{
  const double min = clampPercent(parentProgressMinValue);
  const double max = clampPercent(parentProgressMaxValue);
  if (max < min)
  {
    // The numbers as the caller gave them, not the clamped ones.
    Raise(VerificationFailed(tr("parentProgressMinValue '%1' is greater than parentProgressMaxValue '%2'")
                                 .arg(parentProgressMinValue)
                                 .arg(parentProgressMaxValue)));
  }
  m_min = min;
  m_max = max;
}

void SubActivityFeedback::reportProgress(double percent)
{
  m_parent.reportProgress(m_min + (m_max - m_min) / 100.0 * clampPercent(percent));
}

void SubActivityFeedback::reportMessage(const QString& text)
{
  m_parent.reportMessage(text);
}

} // namespace RTE
