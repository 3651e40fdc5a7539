// The progress sink a caller hands to a long operation: the operation reports percent
// done (0 to 100) and messages, a user interface follows the signals.
//
//   RTE::ActivityFeedback feedback;
//   connect(&feedback, &RTE::I_ActivityFeedback::progressReported, bar, &ProgressBar::setPercent);
//   RTE::FileSystem::CopyFolder(from, to, control, feedback);
//
// Signals are emitted on the reporting thread.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QObject>
#include <QString>

namespace RTE
{

class CORECOMMON_EXPORT I_ActivityFeedback : public QObject
{
  Q_OBJECT

public:
  ~I_ActivityFeedback() override;

  // Progress in percent, 0 to 100.
  virtual void reportProgress(double percent) = 0;
  virtual void reportMessage(const QString& text) = 0;

signals:
  void progressReported(double percent);
  void messageReported(const QString& text);
};

} // namespace RTE
