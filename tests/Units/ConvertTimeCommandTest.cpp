// `rte convert-time`, run as a user would run it.
#include "RteRun.h"

#include <QFileInfo>

#include <gtest/gtest.h>

TEST(ConvertTimeCommand, ConvertsExactlyAndExplainsFailures)
{
  SKIP_WITHOUT_RTE();
  RteRun run = runRte({QStringLiteral("convert-time"), QStringLiteral("12.5 ms"), QStringLiteral("us")});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_EQ(run.out, QString::fromUtf8("12.5 ms = 12500 µs\n"));

  run = runRte({QStringLiteral("convert-time"), QStringLiteral("--"), QStringLiteral("-9223372.036854775808 s"),
                QStringLiteral("ps")});
  EXPECT_EQ(run.out, QStringLiteral("-9223372.036854775808 s = -9223372036854775808 ps\n"));
  run = runRte({QStringLiteral("convert-time"), QStringLiteral("1234567ps")});
  EXPECT_EQ(run.out, QString::fromUtf8("1234567ps = 1.234567 µs\n"));

  run = runRte({QStringLiteral("convert-time"), QStringLiteral("--help")});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_TRUE(run.out.startsWith(QStringLiteral("Usage: rte convert-time DURATION [UNIT]")));

  run = runRte({QStringLiteral("convert-time"), QStringLiteral("12,5 ms"), QStringLiteral("us")});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_TRUE(run.err.contains(QStringLiteral("'12,5 ms' is not a duration"))) << run.err.toStdString();
  run = runRte({QStringLiteral("convert-time"), QStringLiteral("1 s"), QStringLiteral("days")});
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_TRUE(run.err.contains(QStringLiteral("'days' is not a time unit"))) << run.err.toStdString();
  run = runRte({QStringLiteral("convert-time")});
  EXPECT_EQ(run.exitCode, 2);
}
