// Locations are decided once per process, so every layout runs in a child: a copy of
// this program in its own program folder, with its own HOME and PUBLIC, running the
// disabled LocationsChild test, which prints what it found as "key=value" lines.
#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/OperatingSystem/Locations.h>
#include <Core/Common/Storage/SettingsDocument.h>

#include "TestHelpers.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QProcess>
#include <QSysInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <iostream>

namespace Loc = RTE::Locations;

namespace
{

void Print(const char* key, const QString& value)
{
  std::cout << "@" << key << "=" << value.toStdString() << std::endl;
}

using Report = QMap<QString, QString>;

// Runs a copy of this program placed at programFile with the given environment and steps.
Report RunChild(const QString& programFile, const QString& home, const QString& publicFolder, const QString& steps)
{
  QDir().mkpath(QFileInfo(programFile).absolutePath());
  if (!QFileInfo::exists(programFile))
  {
    EXPECT_TRUE(QFile::copy(QCoreApplication::applicationFilePath(), programFile));
    QFile::setPermissions(programFile, QFile::permissions(programFile) | QFileDevice::ExeOwner);
  }
  QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
  for (const char* name : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "PUBLIC"})
    env.remove(QString::fromLatin1(name));
  env.insert(QStringLiteral("ALLUSERSPROFILE"), QStringLiteral("C:\\ProgramData"));
  env.insert(QStringLiteral("HOME"), home);
  if (!publicFolder.isEmpty())
    env.insert(QStringLiteral("PUBLIC"), publicFolder);
  env.insert(QStringLiteral("LOCATIONS_CHILD_STEPS"), steps);
  QProcess child;
  child.setProcessEnvironment(env);
  child.start(programFile, {QStringLiteral("--gtest_also_run_disabled_tests"),
                            QStringLiteral("--gtest_filter=DISABLED_LocationsChild.*")});
  EXPECT_TRUE(child.waitForFinished(60000));
  EXPECT_EQ(child.exitCode(), 0) << child.readAllStandardError().toStdString();
  Report report;
  for (const QString& line : QString::fromUtf8(child.readAllStandardOutput()).split(QLatin1Char('\n')))
    if (line.startsWith(QLatin1Char('@')))
      report.insert(line.mid(1).section(QLatin1Char('='), 0, 0), line.section(QLatin1Char('='), 1));
  return report;
}

class LocationsLayout : public ::testing::Test
{
protected:
  void TearDown() override
  {
    // The machine-wide folder of the child lies outside the scratch folder.
    if (!m_global.isEmpty() && m_global.contains(QStringLiteral("CoreCommonLocationsTest")))
      QDir(m_global.left(m_global.indexOf(QStringLiteral("CoreCommonLocationsTest")) + 23)).removeRecursively();
  }
  Report Run(const QString& program, const QString& home, const QString& publicFolder, const QString& steps)
  {
    Report report = RunChild(program, home, publicFolder, steps);
    if (report.contains(QStringLiteral("global")))
      m_global = report[QStringLiteral("global")];
    return report;
  }

  QTemporaryDir m_dir;
  QString m_global;
};

} // namespace

TEST(DISABLED_LocationsChild, Run)
{
  QCoreApplication::setOrganizationName(QStringLiteral("CoreCommonLocationsTest"));
  const QStringList steps = qEnvironmentVariable("LOCATIONS_CHILD_STEPS").split(QLatin1Char(','), Qt::SkipEmptyParts);
  for (const QString& step : steps)
  {
    if (step == QStringLiteral("oneLevelUp"))
      Loc::setApplicationPathOneLevelUp();
    else if (step == QStringLiteral("appData"))
      Loc::forceAppDataUsage(true, false);
    else if (step.startsWith(QStringLiteral("user=")))
      Loc::forceUserName(step.mid(5));
    else if (step.startsWith(QStringLiteral("suffix=")))
      Loc::modifyTemporaryPathApplicationName(step.mid(7));
  }
  Print("portable", Loc::applicationUsesPortableSettings() ? "1" : "0");
  Print("root", Loc::getApplicationRootPath());
  Print("global", Loc::getGlobalProgramDataPath());
  Print("programData", Loc::getProgramDataSettingsPath());
  Print("readOnly", Loc::getReadOnlySettingsPath());
  Print("user", Loc::getUserSettingsPath());
  Print("allUsers", Loc::getAllUsersSettingsPath());
  Print("profile", Loc::getAllUsersProfilePath());
  Print("temp", Loc::getTemporaryPath());
  Print("defaultTemp", Loc::getDefaultTemporaryPath());
  Print("tempExists", QFileInfo(Loc::getTemporaryPath()).isDir() ? "1" : "0");
  Print("late", MessageOf<RTE::Exception>([] { Loc::setApplicationPathOneLevelUp(); }));

  for (const QString& step : steps)
  {
    if (step == QStringLiteral("allUsers"))
      Loc::changeUsersMode(true);
    else if (step.startsWith(QStringLiteral("switchTemp=")))
    {
      const QString before = Loc::getTemporaryPath();
      Loc::setTemporaryPathSettings({step.mid(11), false});
      Print("switchedTemp", Loc::getTemporaryPath());
      Print("oldTempGone", QFileInfo::exists(before) ? "0" : "1");
      Loc::useDefaultTemporaryPath();
      Print("backToDefault", Loc::getTemporaryPath());
      Print("lateSuffix",
            MessageOf<RTE::Exception>([] { Loc::modifyTemporaryPathApplicationName(QStringLiteral("x")); }));
    }
    else if (step == QStringLiteral("defaults"))
    {
      Loc::initializeUserSettingsFromDefaults();
      Print("defaulted", QFileInfo::exists(Loc::getUserSettingsPath() + "a.xml") ? "1" : "0");
    }
    else if (step == QStringLiteral("scopes"))
    {
      using namespace Storage;
      {
        SettingsDocument user(Scope::User, QStringLiteral("plugins/camera"), AutoSync::LoadAndSave);
        user.SetContent(QStringLiteral("<root><gain class=\"int32\">4</gain></root>"));
      }
      Print("userFile", SettingsDocument::FilePathFor(Scope::User, QStringLiteral("plugins/camera")));
      SettingsDocument app(Scope::Application, QStringLiteral("app"), AutoSync::Off);
      Print("appSaved", app.Save() ? "1" : "0");
      Print("appFile", SettingsDocument::FilePathFor(Scope::Application, QStringLiteral("app")));
      SettingsDocument fixed(Scope::Fixed, QStringLiteral("fixed"), AutoSync::LoadAndSave);
      Print("fixedContent", fixed.GetContent().simplified());
      fixed.SetContent(QStringLiteral("<root/>"));
      Print("fixedSave", fixed.Save() ? "1" : "0");
      Print("fixedSaveTo", fixed.SaveTo(Scope::Fixed, QString()) ? "1" : "0");
      Print("fixedDelete", SettingsDocument::DeleteDocument(Scope::Fixed, QStringLiteral("fixed")) ? "1" : "0");
    }
  }
}

TEST_F(LocationsLayout, PortableLayoutLivesBelowTheProgramFolder)
{
  const QString d = m_dir.path();
  const QString home = d + "/home";
  // A folder of the default name exists already: as if another instance were running.
  const QString taken = home + "/tmp/app_" + QSysInfo::machineHostName();
  QDir().mkpath(taken);
  QDir().mkpath(d + "/prog/ReadOnlySettings");
  QFile fixedFile(d + "/prog/ReadOnlySettings/fixed.xml");
  ASSERT_TRUE(fixedFile.open(QIODevice::WriteOnly));
  fixedFile.write("<?xml version=\"1.0\"?><root><x class=\"string\">ro</x></root>");
  fixedFile.close();

  const Report r = Run(d + "/prog/app", home, {}, QStringLiteral("user=alice,suffix=-x,scopes"));
  EXPECT_EQ(r["portable"], "1");
  EXPECT_EQ(r["root"], d + "/prog/");
  EXPECT_EQ(r["programData"], d + "/prog/ProgramData/");
  EXPECT_TRUE(QFileInfo(r["programData"]).isDir());
  EXPECT_EQ(r["readOnly"], d + "/prog/ReadOnlySettings/");
  EXPECT_EQ(r["user"], d + "/prog/Users/alice/");
  EXPECT_EQ(r["allUsers"], d + "/prog/All users/");
  EXPECT_EQ(r["profile"], "");
  EXPECT_TRUE(r["global"].endsWith("/CoreCommonLocationsTest/app/")) << r["global"].toStdString();
  // The suffix makes the name differ from the taken one, so no unique tail is needed.
  EXPECT_EQ(r["temp"], home + "/tmp/app-x_" + QSysInfo::machineHostName());
  EXPECT_EQ(r["tempExists"], "1");
  EXPECT_FALSE(QFileInfo::exists(r["temp"])) << "removed at shutdown";
  EXPECT_EQ(r["late"], "Locations are already initialized!");

  EXPECT_EQ(r["userFile"], d + "/prog/Users/alice/plugins/camera.xml");
  EXPECT_TRUE(QFileInfo::exists(r["userFile"]));
  EXPECT_EQ(r["appSaved"], "1");
  EXPECT_TRUE(QFileInfo::exists(d + "/prog/ProgramData/app.xml"));
  EXPECT_TRUE(r["fixedContent"].contains(">ro<")) << r["fixedContent"].toStdString();
  EXPECT_EQ(r["fixedSave"], "0");
  EXPECT_EQ(r["fixedSaveTo"], "0");
  EXPECT_EQ(r["fixedDelete"], "0");
  QFile fixedAfter(d + "/prog/ReadOnlySettings/fixed.xml");
  ASSERT_TRUE(fixedAfter.open(QIODevice::ReadOnly));
  EXPECT_TRUE(fixedAfter.readAll().contains(">ro<"));

  // A second run without the suffix meets the taken name and gets a unique tail.
  const Report second = Run(d + "/prog/app", home, {}, {});
  EXPECT_TRUE(second["temp"].startsWith(taken + "_")) << second["temp"].toStdString();
  EXPECT_EQ(second["temp"].size(), taken.size() + 37);
  EXPECT_EQ(second["defaultTemp"], second["temp"]);
}

TEST_F(LocationsLayout, OneLevelUpRootAndTheSuperusersTemporaryFolder)
{
  const QString d = m_dir.path();
  const Report r = Run(d + "/prog/bin/app", QStringLiteral("/root"), {}, QStringLiteral("oneLevelUp,user=bob"));
  EXPECT_EQ(r["root"], d + "/prog/");
  EXPECT_EQ(r["readOnly"], d + "/prog/ReadOnlySettings/");
  EXPECT_EQ(r["temp"], d + "/prog/Users/bob/tmp/app_" + QSysInfo::machineHostName());
}

TEST_F(LocationsLayout, AppDataLayoutUsesPublicOrTheUsersDataFolderAndTheUsersMode)
{
  const QString d = m_dir.path();
  const QString home = d + "/home";
  QDir().mkpath(d + "/prog");
  QFile(d + "/prog/useAppData").open(QIODevice::WriteOnly);

  const Report shared = Run(d + "/prog/app", home, d + "/public", QStringLiteral("allUsers"));
  EXPECT_EQ(shared["portable"], "0");
  EXPECT_EQ(shared["allUsers"], d + "/public/app/All users/");
  EXPECT_EQ(shared["user"], home + "/.config/CoreCommonLocationsTest/app/");
  EXPECT_EQ(shared["programData"], shared["global"]);
  EXPECT_TRUE(QFileInfo(d + "/public/app").isDir());

  // "AllUsersMode" written by the run before now applies.
  const Report allUsers = Run(d + "/prog/app", home, d + "/public", {});
  EXPECT_EQ(allUsers["user"], d + "/public/app/All users/");

  // Without PUBLIC the common base is the user's data folder.
  const Report own = Run(d + "/prog/app", home, {}, {});
  EXPECT_EQ(own["allUsers"], home + "/.local/share/app/All users/");
}

TEST_F(LocationsLayout, MissingUserSettingsAreFilledFromTheDefaults)
{
  const QString d = m_dir.path();
  QDir().mkpath(d + "/prog/ProgramData/DefaultUser");
  QFile(d + "/prog/ProgramData/DefaultUser/a.xml").open(QIODevice::WriteOnly);
  const Report r = Run(d + "/prog/app", d + "/home", {}, QStringLiteral("user=carol,defaults"));
  EXPECT_EQ(r["defaulted"], "1");
  EXPECT_TRUE(QFileInfo::exists(d + "/prog/Users/carol/a.xml"));
}

TEST_F(LocationsLayout, ChangingTheTemporaryFolderRemovesTheOldOne)
{
  const QString d = m_dir.path();
  const Report r = Run(d + "/prog/app", d + "/home", {}, "switchTemp=" + d + "/elsewhere");
  EXPECT_TRUE(r["switchedTemp"].startsWith(d + "/elsewhere/app_")) << r["switchedTemp"].toStdString();
  EXPECT_EQ(r["oldTempGone"], "1");
  EXPECT_EQ(r["backToDefault"], r["defaultTemp"]);
  EXPECT_EQ(r["lateSuffix"], "Locations are already initialized!");
}
