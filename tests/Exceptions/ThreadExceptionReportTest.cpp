#include <Core/Common/Exceptions/ThreadExceptionReport.h>
#include <Core/Common/OperatingSystem/ThreadHandle.h>

#include <QStringList>

#include <gtest/gtest.h>

#include <algorithm>
#include <thread>
#include <vector>

namespace
{

class ThreadExceptionReportTest : public ::testing::Test
{
protected:
  void SetUp() override { RTE::ThreadExceptionReport::Clean(); }
  void TearDown() override { RTE::ThreadExceptionReport::Clean(); }
};

RTE::ThreadHandle::ThreadId addOnNewThread(const QString& text)
{
  RTE::ThreadHandle::ThreadId id = 0;
  std::thread worker(
      [&]
      {
        id = RTE::ThreadHandle::GetThreadId();
        RTE::ThreadExceptionReport::Add(text);
      });
  worker.join();
  return id;
}

} // namespace

TEST_F(ThreadExceptionReportTest, EmptyReportStillNamesTheMainThread)
{
  EXPECT_EQ(RTE::ThreadExceptionReport::Dump(), QStringLiteral("Main thread: \n"));
}

TEST_F(ThreadExceptionReportTest, DumpListsMainThreadFirstThenOthersByAscendingId)
{
  const auto first = addOnNewThread(QStringLiteral("first"));
  const auto second = addOnNewThread(QStringLiteral("second"));
  ASSERT_NE(first, second);
  RTE::ThreadExceptionReport::Add(QStringLiteral("old"));
  RTE::ThreadExceptionReport::Add(QStringLiteral("main"));

  const auto low = std::min(first, second);
  const auto high = std::max(first, second);
  const QString lowText = low == first ? QStringLiteral("first") : QStringLiteral("second");
  const QString highText = high == first ? QStringLiteral("first") : QStringLiteral("second");
  EXPECT_EQ(RTE::ThreadExceptionReport::Dump(),
            QStringLiteral("Main thread: main\nThread id=%1: %2\nThread id=%3: %4\n")
                .arg(QString::number(low), lowText, QString::number(high), highText));

  RTE::ThreadExceptionReport::UnregisterThread();
  RTE::ThreadExceptionReport::Clean();
  EXPECT_EQ(RTE::ThreadExceptionReport::Dump(), QStringLiteral("Main thread: \n"));
}

TEST_F(ThreadExceptionReportTest, ConcurrentAddsKeepOneEntryPerThread)
{
  std::vector<std::thread> workers;
  for (int i = 0; i < 8; ++i)
  {
    workers.emplace_back(
        [i]
        {
          for (int round = 0; round < 200; ++round)
            RTE::ThreadExceptionReport::Add(QStringLiteral("worker %1 round %2").arg(i).arg(round));
        });
  }
  for (auto& worker : workers)
    worker.join();

  const QStringList lines = RTE::ThreadExceptionReport::Dump().split(QLatin1Char('\n'), Qt::SkipEmptyParts);
  ASSERT_EQ(lines.size(), 9);
  for (int i = 1; i < lines.size(); ++i)
    EXPECT_TRUE(lines[i].endsWith(QStringLiteral("round 199"))) << lines[i].toStdString();
}
