#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/OperatingSystem/ActivityControl.h>
#include <Core/Common/OperatingSystem/ActivityFeedback.h>
#include <Core/Common/OperatingSystem/SubActivityFeedback.h>

#include "TestHelpers.h"

#include <QSignalSpy>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <thread>

namespace
{

double lastProgress(const QSignalSpy& spy)
{
  return spy.isEmpty() ? std::nan("") : spy.last().at(0).toDouble();
}

} // namespace

TEST(ActivityControl, CancelSetsTheFlagBeforeSignallingAndResetIsSilent)
{
  RTE::ActivityControl control;
  QSignalSpy canceled(&control, &RTE::I_ActivityControl::canceled);
  bool flagSeenBySlot = false;
  QObject::connect(&control, &RTE::I_ActivityControl::canceled, [&] { flagSeenBySlot = control.isCanceled(); });
  EXPECT_FALSE(control.isCanceled());

  std::thread other([&] { control.cancel(); });
  other.join();
  EXPECT_TRUE(control.isCanceled());
  EXPECT_TRUE(flagSeenBySlot);
  EXPECT_EQ(canceled.count(), 1);

  control.reset();
  EXPECT_FALSE(control.isCanceled());
  EXPECT_EQ(canceled.count(), 1);
}

TEST(ActivityFeedback, ProgressIsClampedAndMessagesPassUnchanged)
{
  RTE::ActivityFeedback feedback;
  QSignalSpy progress(&feedback, &RTE::I_ActivityFeedback::progressReported);
  QSignalSpy messages(&feedback, &RTE::I_ActivityFeedback::messageReported);

  const struct
  {
    double given;
    double reported;
  } cases[] = {{150, 100}, {-3, 0}, {42.5, 42.5}, {0, 0}, {100, 100}, {std::nan(""), 0}};
  for (const auto& c : cases)
  {
    SCOPED_TRACE(c.given);
    feedback.reportProgress(c.given);
    EXPECT_EQ(lastProgress(progress), c.reported);
  }
  EXPECT_EQ(progress.count(), 6);

  feedback.reportMessage(QStringLiteral("Copying 'a b.txt'"));
  ASSERT_EQ(messages.count(), 1);
  EXPECT_EQ(messages.at(0).at(0).toString(), QStringLiteral("Copying 'a b.txt'"));
}

TEST(SubActivityFeedback, MapsProgressIntoTheParentsSliceAndNests)
{
  RTE::ActivityFeedback root;
  QSignalSpy progress(&root, &RTE::I_ActivityFeedback::progressReported);
  QSignalSpy messages(&root, &RTE::I_ActivityFeedback::messageReported);

  RTE::SubActivityFeedback sub(root, 20, 60);
  sub.reportProgress(50);
  EXPECT_DOUBLE_EQ(lastProgress(progress), 40);
  sub.reportProgress(250);
  EXPECT_DOUBLE_EQ(lastProgress(progress), 60);
  sub.reportProgress(-1);
  EXPECT_DOUBLE_EQ(lastProgress(progress), 20);

  // A slice of a slice: 25..75 of 20..60 is 30..50 of the root.
  RTE::SubActivityFeedback nested(sub, 25, 75);
  nested.reportProgress(50);
  EXPECT_DOUBLE_EQ(lastProgress(progress), 40);
  nested.reportProgress(100);
  EXPECT_DOUBLE_EQ(lastProgress(progress), 50);
  nested.reportMessage(QStringLiteral("deep"));
  ASSERT_EQ(messages.count(), 1);
  EXPECT_EQ(messages.at(0).at(0).toString(), QStringLiteral("deep"));

  // Out-of-range bounds are clamped, not refused.
  sub.SetProgressRange(-10, 130);
  EXPECT_EQ(sub.parentProgressMinValue(), 0);
  EXPECT_EQ(sub.parentProgressMaxValue(), 100);
  sub.reportProgress(30);
  EXPECT_DOUBLE_EQ(lastProgress(progress), 30);
  // An empty slice reports its one point.
  sub.SetProgressRange(70, 70);
  sub.reportProgress(90);
  EXPECT_DOUBLE_EQ(lastProgress(progress), 70);
}

TEST(SubActivityFeedback, ReversedRangeIsRefusedWithTheNumbersAsGiven)
{
  RTE::ActivityFeedback root;
  EXPECT_EQ(MessageOf<RTE::VerificationFailed>([&] { RTE::SubActivityFeedback(root, 80, 20); }),
            QStringLiteral("parentProgressMinValue '80' is greater than parentProgressMaxValue '20'"));

  // The unclamped numbers appear; the old range stays.
  RTE::SubActivityFeedback sub(root, 10, 20);
  EXPECT_EQ(MessageOf<RTE::VerificationFailed>([&] { sub.SetProgressRange(150.5, -7); }),
            QStringLiteral("parentProgressMinValue '150.5' is greater than parentProgressMaxValue '-7'"));
  EXPECT_EQ(sub.parentProgressMinValue(), 10);
  EXPECT_EQ(sub.parentProgressMaxValue(), 20);
  // 120 and 110 both clamp to 100: not reversed once clamped.
  EXPECT_NO_THROW(sub.SetProgressRange(120, 110));
}
