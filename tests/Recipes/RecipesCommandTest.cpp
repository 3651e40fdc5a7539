#include "RteRun.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

TEST(RecipesCommandTest, SaveActivateArchiveRemove)
{
  SKIP_WITHOUT_RTE();
  QTemporaryDir dir;
  ASSERT_TRUE(dir.isValid());
  const QStringList folder{QStringLiteral("--folder"), dir.path()};

  RteRun run = runRte(QStringList{"recipes", "save", "Cold start", "--select", "camera=fast"} + folder);
  ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
  EXPECT_TRUE(run.out.contains("[1/2] prepared Camera")) << run.out.toStdString();
  EXPECT_TRUE(run.out.contains("[2/2] prepared Laser"));
  run = runRte(QStringList{"recipes", "save", "Warm start", "--select", "laser=precise"} + folder);
  ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();

  // An unknown preset is refused by the check and saves nothing.
  run = runRte(QStringList{"recipes", "save", "Bad", "--select", "camera=turbo"} + folder);
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_TRUE(run.out.contains("Camera: unknown preset 'turbo'")) << run.out.toStdString();

  run = runRte(QStringList{"recipes", "list"} + folder);
  EXPECT_TRUE(run.out.contains("Cold start")) << run.out.toStdString();
  EXPECT_TRUE(run.out.contains("2 recipe(s)"));

  // The camera (order 10) goes before the laser (order 5).
  run = runRte(QStringList{"recipes", "activate", "Cold start"} + folder);
  ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
  const qsizetype camera = run.out.indexOf("[1/2] activated Camera");
  EXPECT_GE(camera, 0) << run.out.toStdString();
  EXPECT_GT(run.out.indexOf("[2/2] activated Laser"), camera);

  run = runRte(QStringList{"recipes", "save", "Hot", "--select", "laser=fast"} + folder);
  run = runRte(QStringList{"recipes", "activate", "Hot", "--context", "LASER"} + folder);
  EXPECT_TRUE(run.out.contains("[1/1] activated Laser\n  warning from Laser: PowerPercent 90 is above 80"))
      << run.out.toStdString();

  run = runRte(QStringList{"recipes", "show", "Cold start"} + folder);
  EXPECT_TRUE(run.out.contains("Camera: preset fast, ExposureMs 0.5, Gain 4")) << run.out.toStdString();

  run = runRte(QStringList{"recipes", "archive", "Cold start", "--successor", "Warm start"} + folder);
  ASSERT_EQ(run.exitCode, 0) << run.err.toStdString();
  run = runRte(QStringList{"recipes", "remove", "Cold start"} + folder);
  EXPECT_EQ(run.exitCode, 1);
  run = runRte(QStringList{"recipes", "remove", "Warm start"} + folder);
  EXPECT_EQ(run.exitCode, 0) << run.err.toStdString();
  run = runRte(QStringList{"recipes", "list", "--all"} + folder);
  EXPECT_TRUE(run.out.contains("2 recipe(s)")) << run.out.toStdString();
  EXPECT_TRUE(run.out.contains("[archived"));

  run = runRte(QStringList{"recipes", "show", "Nothing"} + folder);
  EXPECT_EQ(run.exitCode, 1);
  EXPECT_EQ(runRte(QStringList{"recipes", "frobnicate"} + folder).exitCode, 2);
  EXPECT_EQ(runRte(QStringList{"recipes", "save", "x", "--select", "nope=fast"} + folder).exitCode, 2);
}
