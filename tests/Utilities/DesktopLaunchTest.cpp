// Manuals and the external viewer, with fake handler programs first on PATH.
#include "LogCapture.h"
#include "OperatingSystem/TestHelpers.h"

#include <Core/Common/Exceptions/FileOpenError.h>
#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Utilities/ExternalViewer.h>
#include <Core/Common/Utilities/Manuals.h>

#include <QDeadlineTimer>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

namespace
{

// A folder with a fake program that writes its arguments, one a line, to a file; the
// folder is put first on PATH while the fixture lives.
class DesktopLaunch : public ::testing::Test
{
protected:
  void SetUp() override
  {
    ASSERT_TRUE(m_bin.isValid() && m_data.isValid());
    m_savedPath = qgetenv("PATH");
    writeProgram(QStringLiteral("xdg-open"));
    writeProgram(QStringLiteral("fake-viewer"));
    qputenv("PATH", QFile::encodeName(m_bin.path()) + ':' + m_savedPath);
  }
  void TearDown() override { qputenv("PATH", m_savedPath); }

  void writeProgram(const QString& name)
  {
    QFile script(m_bin.filePath(name));
    ASSERT_TRUE(script.open(QIODevice::WriteOnly));
    script.write(
        "#!/bin/sh\nfor a in \"$@\"; do echo \"$a\"; done > \"$0.args.tmp\"\nmv \"$0.args.tmp\" \"$0.args\"\n");
    script.close();
    script.setPermissions(QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ExeOwner);
  }

  // The arguments the fake program got, waiting up to 10 s for it to run.
  QStringList argumentsOf(const QString& name)
  {
    QFile file(m_bin.filePath(name + QStringLiteral(".args")));
    const QDeadlineTimer deadline(10000);
    while (!file.exists() && !deadline.hasExpired())
      QThread::msleep(10);
    if (!file.open(QIODevice::ReadOnly))
      return {};
    return QString::fromUtf8(file.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
  }

  QString addFile(const QString& relative)
  {
    const QString path = m_data.filePath(relative);
    QDir().mkpath(QFileInfo(path).path());
    QFile file(path);
    file.open(QIODevice::WriteOnly);
    return QFileInfo(path).absoluteFilePath();
  }

  QTemporaryDir m_bin;
  QTemporaryDir m_data;
  QByteArray m_savedPath;
};

} // namespace

TEST_F(DesktopLaunch, ManualInTheLanguageOrEnglishIsHandedToTheDesktop)
{
  const QString german = addFile(QStringLiteral("manuals/de/CameraSetup.pdf"));
  const QString english = addFile(QStringLiteral("manuals/en/CameraSetup.pdf"));
  const QString onlyEnglish = addFile(QStringLiteral("manuals/en/Laser Safety.html"));
  const QString regional = addFile(QStringLiteral("manuals/de_AT/CameraSetup.pdf"));
  const RTE::Manuals manuals(m_data.filePath(QStringLiteral("manuals")));

  EXPECT_EQ(manuals.findManual(QStringLiteral("CameraSetup"), QStringLiteral("de_DE")), german);
  EXPECT_EQ(manuals.findManual(QStringLiteral("CameraSetup"), QStringLiteral("de_AT")), regional);
  EXPECT_EQ(manuals.findManual(QStringLiteral("CameraSetup"), QStringLiteral("de-CH")), german);
  EXPECT_EQ(manuals.findManual(QStringLiteral("CameraSetup.pdf"), QStringLiteral("fr")), english);
  EXPECT_EQ(manuals.findManual(QStringLiteral("Laser Safety"), QStringLiteral("de")), onlyEnglish);
  EXPECT_TRUE(manuals.findManual(QStringLiteral("Missing"), QStringLiteral("de")).isEmpty());
  for (const QString& bad : {QStringLiteral("../en/CameraSetup"), QStringLiteral("a/b"), QString()})
    EXPECT_THROW(manuals.findManual(bad, QStringLiteral("de")), RTE::InvalidArgumentError);
  EXPECT_THROW(manuals.findManual(QStringLiteral("CameraSetup"), QStringLiteral("..")), RTE::InvalidArgumentError);

  LogCapture log("Core.Utilities.Launch");
  EXPECT_EQ(manuals.openManual(QStringLiteral("Laser Safety"), QStringLiteral("fr")), onlyEnglish);
  EXPECT_EQ(argumentsOf(QStringLiteral("xdg-open")), QStringList{onlyEnglish});
  ASSERT_EQ(log.messages().size(), 1);
  EXPECT_TRUE(log.messages().first().contains(onlyEnglish));
}

TEST_F(DesktopLaunch, MissingManualOrHandlerIsAClearLoggedError)
{
  addFile(QStringLiteral("manuals/en/CameraSetup.pdf"));
  RTE::Manuals manuals(m_data.filePath(QStringLiteral("manuals")));
  LogCapture log("Core.Exception");
  const QString missing =
      MessageOf<RTE::FileOpenError>([&] { manuals.openManual(QStringLiteral("Missing"), QStringLiteral("de")); });
  EXPECT_TRUE(missing.contains(QStringLiteral("No manual 'Missing' in language 'de' or in English")))
      << missing.toStdString();
  EXPECT_EQ(log.messages().size(), 1);

  manuals.setHandler(QStringLiteral("no-such-handler-program"));
  const QString noHandler =
      MessageOf<RTE::InvalidRequest>([&] { manuals.openManual(QStringLiteral("CameraSetup"), QStringLiteral("en")); });
  EXPECT_TRUE(noHandler.contains(QStringLiteral("'no-such-handler-program' was not found"))) << noHandler.toStdString();
  EXPECT_EQ(log.messages().size(), 2);
  EXPECT_FALSE(QFile::exists(m_bin.filePath(QStringLiteral("xdg-open.args"))));
}

TEST_F(DesktopLaunch, ViewerGetsTheFileInItsArguments)
{
  const QString image = addFile(QStringLiteral("run 1/frame%2.tif"));
  RTE::ExternalViewer viewer(QStringLiteral("fake-viewer"),
                             {QStringLiteral("--mode=view"), QStringLiteral("--file=%1")});
  {
    LogCapture log("Core.Utilities.Launch");
    EXPECT_GT(viewer.open(image), 0);
    ASSERT_EQ(log.messages().size(), 1);
    EXPECT_TRUE(log.messages().first().endsWith(QStringLiteral("--file=") + image)); // "%2" kept as it is
  }
  EXPECT_EQ(argumentsOf(QStringLiteral("fake-viewer")),
            (QStringList{QStringLiteral("--mode=view"), QStringLiteral("--file=") + image}));
  EXPECT_EQ(RTE::ExternalViewer(QStringLiteral("v")).argumentsFor(image), QStringList{image});

  // By path, too; and every failure is reported before anything starts.
  viewer.setProgram(m_bin.filePath(QStringLiteral("fake-viewer")));
  viewer.setArguments({});
  EXPECT_GT(viewer.open(image), 0);
  EXPECT_THROW(viewer.open(m_data.filePath(QStringLiteral("missing.tif"))), RTE::FileOpenError);
  EXPECT_THROW(RTE::ExternalViewer().open(image), RTE::InvalidRequest);
  EXPECT_THROW(RTE::ExternalViewer(m_data.filePath(QStringLiteral("run 1"))).open(image), RTE::InvalidRequest);
  EXPECT_THROW(RTE::ExternalViewer(image).open(image), RTE::InvalidRequest); // not executable
}
