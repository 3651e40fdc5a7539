#include <Core/Common/OperatingSystem/ActivityFeedback.h>

#include <cmath>

namespace RTE
{

double clampPercent(double percent)
{
  if (std::isnan(percent))
    return 0.0;
  return percent < 0.0 ? 0.0 : (percent > 100.0 ? 100.0 : percent);
}

ActivityFeedback::~ActivityFeedback() = default;

void ActivityFeedback::reportProgress(double percent)
{
  emit progressReported(clampPercent(percent));
}

void ActivityFeedback::reportMessage(const QString& text)
{
  emit messageReported(text);
}

} // namespace RTE
