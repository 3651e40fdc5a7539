// Runs the rte tool of the same build as a user would, for tests of its subcommands.
//
//   const RteRun run = runRte({"settings", file});
//   EXPECT_EQ(run.exitCode, 0);
#pragma once

#include <QCoreApplication>
#include <QFileInfo>
#include <QProcess>
#include <QString>
#include <QStringList>

struct RteRun
{
  int exitCode = -1;
  QString out;
  QString err;
};

// build/tests/<Suite>Tests -> build/tools/rte/rte
inline QString rtePath()
{
  return QCoreApplication::applicationDirPath() + QStringLiteral("/../tools/rte/rte");
}

inline RteRun runRte(const QStringList& arguments)
{
  QProcess process;
  process.start(rtePath(), arguments);
  process.waitForFinished(30000);
  return RteRun{process.exitCode(), QString::fromUtf8(process.readAllStandardOutput()),
                QString::fromUtf8(process.readAllStandardError())};
}

// Skips the calling test in builds without the tool (the ThreadSanitizer build has none).
#define SKIP_WITHOUT_RTE()                                                                                   \
  do                                                                                                         \
  {                                                                                                          \
    if (!QFileInfo::exists(rtePath()))                                                                       \
      GTEST_SKIP() << "rte not built";                                                                       \
  } while (false)
