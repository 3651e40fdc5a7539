// Shared by `rte du` and `rte copy`: Ctrl-C turns into a cancel of an activity control,
// and a one-line progress bar.
#pragma once

#include <Core/Common/OperatingSystem/ActivityControl.h>

#include <QString>

#include <functional>

namespace rte
{

// Runs work on a worker thread; while it runs, Ctrl-C cancels control. Returns whether
// Ctrl-C was pressed. An exception of work is passed on.
bool runCancellable(RTE::ActivityControl& control, const std::function<void()>& work);

// "\r[#####-----]  42% text" on standard error, padded to clear the previous line.
void showProgress(double percent, const QString& text);

} // namespace rte
