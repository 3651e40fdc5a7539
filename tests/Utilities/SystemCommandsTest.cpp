// `rte isa` and `rte --version`, run as a user would run them.
#include "RteRun.h"

#include <Core/Common/Utilities/InstructionSets.h>
#include <Core/Common/Utilities/VersionInfo.h>

#include <QFileInfo>

#include <gtest/gtest.h>

TEST(SystemCommands, IsaListsEveryFeatureAsTheLibrarySeesIt)
{
  SKIP_WITHOUT_RTE();
  const RteRun run = runRte({QStringLiteral("isa")});
  EXPECT_EQ(run.exitCode, 0);
  const RTE::InstructionSets& host = RTE::InstructionSets::host();
  if (host.isX86())
  {
    const QStringList lines = run.out.split(QLatin1Char('\n'), Qt::SkipEmptyParts);
    ASSERT_EQ(lines.size(), RTE::InstructionSets::FeatureCount);
    for (int i = 0; i < RTE::InstructionSets::FeatureCount; ++i)
    {
      const auto feature = static_cast<RTE::InstructionSets::E_Feature>(i);
      EXPECT_EQ(lines[i].simplified(), RTE::InstructionSets::name(feature) +
                                           (host.has(feature) ? QStringLiteral(" yes") : QStringLiteral(" no")));
    }
  }
  else
    EXPECT_EQ(run.out, QStringLiteral("not x86\n"));

  EXPECT_EQ(runRte({QStringLiteral("isa"), QStringLiteral("--help")}).exitCode, 0);
  EXPECT_EQ(runRte({QStringLiteral("isa"), QStringLiteral("extra")}).exitCode, 2);
}

TEST(SystemCommands, VersionNamesLibraryRevisionAndFile)
{
  SKIP_WITHOUT_RTE();
  const RteRun run = runRte({QStringLiteral("--version")});
  EXPECT_EQ(run.exitCode, 0);
  EXPECT_TRUE(
      run.out.contains(QStringLiteral("Core.Common ") + RTE::VersionInfo::libraryVersion() + QLatin1Char('\n')));
  const QString revision = RTE::VersionInfo::sourceRevision();
  EXPECT_TRUE(run.out.contains(QStringLiteral("source revision:  ") +
                               (revision.isEmpty() ? QStringLiteral("unknown") : revision)));
  EXPECT_TRUE(run.out.contains(QStringLiteral("file version:     ") + RTE::VersionInfo::libraryVersion()))
      << run.out.toStdString();
  EXPECT_TRUE(run.out.contains(QStringLiteral("instruction sets: ") + RTE::InstructionSets::host().toString()));
}
