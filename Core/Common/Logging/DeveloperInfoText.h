// Developer information texts for whoever listens (typically a developer console),
// passed on only while the service visibility level is 2 (developer).
//
//   connect(&RTE::Logging::DeveloperInfoText::instance(),
//           &RTE::Logging::DeveloperInfoText::reportInfoText, console, &Console::append);
//   RTE::Logging::DeveloperInfoText::instance().logInfoText("cache rebuilt in 12 ms");
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QObject>
#include <QString>

namespace RTE::Logging
{

class CORECOMMON_EXPORT DeveloperInfoText : public QObject
{
  Q_OBJECT

public:
  // The process-wide instance (no parent), made on first use.
  static DeveloperInfoText& instance();

  // Emits reportInfoText(text) when Service::IsVisibilityLevel(2) holds; else nothing.
  void logInfoText(const QString& text);

signals:
  void reportInfoText(const QString& text);

private:
  DeveloperInfoText() = default;
};

} // namespace RTE::Logging
