#include <Core/Common/Logging/DeveloperInfoText.h>
#include <Core/Common/Utilities/VisibilityLevel.h>

namespace RTE::Logging
{

DeveloperInfoText& DeveloperInfoText::instance()
{
  static DeveloperInfoText object;
  return object;
}

void DeveloperInfoText::logInfoText(const QString& text)
{
  if (Service::IsVisibilityLevel(2))
    emit reportInfoText(text);
}

} // namespace RTE::Logging
