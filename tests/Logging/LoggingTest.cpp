#include <Core/Common/Logging/ApplicationLogger.h>
#include <Core/Common/Logging/DeveloperInfoText.h>
#include <Core/Common/Utilities/VisibilityLevel.h>

#include "LogCapture.h"

#include <QRegularExpression>
#include <QSignalSpy>

#include <gtest/gtest.h>

namespace
{

struct VisibilityGuard
{
  ~VisibilityGuard() { Service::SetVisibilityLevel(0); }
};

} // namespace

TEST(VisibilityLevel, EachAudienceSeesWhatItMay)
{
  VisibilityGuard guard;
  struct Case
  {
    int current;
    bool level0, level1, level2;
  };
  for (const Case& c : {Case{0, true, false, false}, Case{1, true, true, false}, Case{2, true, true, true}})
  {
    SCOPED_TRACE(c.current);
    Service::SetVisibilityLevel(c.current);
    EXPECT_EQ(Service::GetVisibilityLevel(), c.current);
    EXPECT_EQ(Service::IsVisibilityLevel(0), c.level0);
    EXPECT_EQ(Service::IsVisibilityLevel(1), c.level1);
    EXPECT_EQ(Service::IsVisibilityLevel(2), c.level2);
  }
  Service::SetVisibilityLevel(7);
  EXPECT_EQ(Service::GetVisibilityLevel(), 2);
  Service::SetVisibilityLevel(-3);
  EXPECT_EQ(Service::GetVisibilityLevel(), 0);
}

TEST(DeveloperInfoText, EmitsOnlyAtTheDeveloperLevel)
{
  VisibilityGuard guard;
  auto& info = RTE::Logging::DeveloperInfoText::instance();
  EXPECT_EQ(&info, &RTE::Logging::DeveloperInfoText::instance());
  EXPECT_EQ(info.parent(), nullptr);
  QSignalSpy spy(&info, &RTE::Logging::DeveloperInfoText::reportInfoText);

  for (int level : {0, 1})
  {
    Service::SetVisibilityLevel(level);
    info.logInfoText(QStringLiteral("hidden"));
  }
  EXPECT_EQ(spy.count(), 0);

  Service::SetVisibilityLevel(2);
  info.logInfoText(QStringLiteral("first"));
  info.logInfoText(QStringLiteral(" second\n"));
  ASSERT_EQ(spy.count(), 2);
  EXPECT_EQ(spy.at(0).at(0).toString(), QStringLiteral("first"));
  EXPECT_EQ(spy.at(1).at(0).toString(), QStringLiteral(" second\n"));
}

TEST(ApplicationLogger, LineCarriesEventDetailMemoryAndHandles)
{
  LogCapture capture("Core.Application");
  RTE::ApplicationLogger::log(QString(), QString());
  RTE::ApplicationLogger::log(QStringLiteral("Recording started"), QStringLiteral("camera 1"));
  ASSERT_EQ(capture.messages().size(), 2);

  const QRegularExpression empty(QStringLiteral("^: , (\\d+) MB, 0 GDI-handles$"));
  EXPECT_TRUE(empty.match(capture.messages().at(0)).hasMatch()) << capture.messages().at(0).toStdString();

  const QRegularExpression line(QStringLiteral("^Recording started: camera 1, (\\d+) MB, 0 GDI-handles$"));
  const auto match = line.match(capture.messages().at(1));
  ASSERT_TRUE(match.hasMatch()) << capture.messages().at(1).toStdString();
  // The figure is KiB shifted down by ten bits; the process is larger than 1 MB but not 1 TB.
  const qulonglong megabytes = match.captured(1).toULongLong();
  EXPECT_GE(megabytes, 1u);
  EXPECT_LT(megabytes, 1u << 20);
}
