#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/OperatingSystem/ActivityControl.h>
#include <Core/Common/OperatingSystem/ActivityFeedback.h>
#include <Core/Common/OperatingSystem/MultiSignalWaiter.h>
#include <Core/Common/OperatingSystem/SignalWaiter.h>

#include "TestHelpers.h"

#include <QTimer>

#include <gtest/gtest.h>

#include <thread>

TEST(SignalWaiter, WaitsForASignalFromATimerOrAnotherThread)
{
  RTE::ActivityControl control;
  RTE::SignalWaiter waiter(&control, &RTE::I_ActivityControl::canceled);
  EXPECT_FALSE(waiter.hasArrived());
  EXPECT_FALSE(waiter.wait(20));

  // Comes through the event loop that wait() runs.
  QTimer::singleShot(10, &control, [&] { control.cancel(); });
  EXPECT_TRUE(waiter.wait(10000));

  waiter.reset();
  EXPECT_FALSE(waiter.hasArrived());
  std::thread other([&] { control.cancel(); });
  EXPECT_TRUE(waiter.wait(10000));
  other.join();
}

TEST(MultiSignalWaiter, WaitsForEverySignalAndOnlyOnce)
{
  RTE::ActivityControl control;
  RTE::ActivityFeedback feedback;
  Common::MultiSignalWaiter waiter;
  waiter.addSignal(&control, &RTE::I_ActivityControl::canceled);
  waiter.addSignal(&feedback, &RTE::I_ActivityFeedback::progressReported);
  int passes = 0;
  waiter.setWaitAction(
      [&]
      {
        // The action runs while waiting: let it deliver the second signal.
        if (++passes == 3)
          feedback.reportProgress(50);
      });

  QTimer::singleShot(0, &control, [&] { control.cancel(); });
  EXPECT_TRUE(waiter.waitForSignal(QEventLoop::AllEvents, 10000));
  EXPECT_GE(passes, 3);
  EXPECT_TRUE(waiter.allArrived());

  EXPECT_EQ(MessageOf<RTE::InvalidRequest>([&] { waiter.waitForSignal(); }),
            QStringLiteral("MultiSignalWaiter::waitForSignal must not be called twice on the same object!"));

  // After reset it waits again: one signal alone is not enough.
  waiter.reset();
  waiter.setWaitAction({});
  control.cancel();
  EXPECT_FALSE(waiter.waitForSignal(QEventLoop::AllEvents, 30));
}
