// The cancel switch a caller hands to a long operation: another thread asks the
// operation to stop, the operation polls isCanceled() between pieces of work.
//
//   RTE::ActivityControl control;
//   connect(stopButton, &QPushButton::clicked, &control, &RTE::I_ActivityControl::cancel);
//   RTE::FileSystem::CopyFolder(from, to, control, feedback);
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QObject>

namespace RTE
{

class CORECOMMON_EXPORT I_ActivityControl : public QObject
{
  Q_OBJECT

public:
  ~I_ActivityControl() override;

  // Asks the operation to stop; emits canceled() on the calling thread. Any thread.
  virtual void cancel() = 0;
  // Whether cancel() was called since construction or the last reset(). Any thread.
  virtual bool isCanceled() const = 0;
  // Clears the request, without a signal, so the control can be used again.
  virtual void reset() = 0;

signals:
  void canceled();
};

} // namespace RTE
