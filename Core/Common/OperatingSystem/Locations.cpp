#include <Core/Common/OperatingSystem/Locations.h>

#include "FileSystem_p.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/OperatingSystem/FileSystem.h>
#include <Zn/Utils/Locations.h>

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QMutex>
#include <QSettings>
#include <QStandardPaths>
#include <QSysInfo>
#include <QUuid>

#include <optional>
#include <pwd.h>
#include <unistd.h>

namespace RTE::Locations
{

namespace
{

QString Tr(const char* text)
{
  return QCoreApplication::translate("RTE::Locations", text);
}

struct State
{
  QMutex mutex{};
  bool initialized = false;
  bool oneLevelUp = false;
  std::optional<bool> forcedAppData;
  bool usesAppData = false;
  bool versionedFolder = false;
  QString forcedUserName;
  QString temporaryNameSuffix;
  bool needsUserDefaults = false;
  bool driveMappingRead = false;
  bool cleanupRegistered = false;

  QString root;
  QString commonBase;
  QString globalProgramData;
  QString programDataSettings;
  QString readOnlySettings;
  QString userSettings;
  QString allUsersSettings;
  QString allUsersProfile;
  QString defaultTemporary;
  QString temporary;
  TemporaryPathSettings temporarySettings;
  QStringList pendingRemovals;
};

State& state()
{
  static State s;
  return s;
}

QString WithSlash(QString path)
{
  if (!path.endsWith(QLatin1Char('/')))
    path += QLatin1Char('/');
  return path;
}

QString ApplicationFolderName(bool versioned)
{
  const QString name = QCoreApplication::applicationName();
  return versioned ? name + QLatin1Char('/') + QCoreApplication::applicationVersion() : name;
}

// Creation failures surface when callers write there; a warning names the folder now.
void MakeFolder(const QString& path)
{
  if (!QDir().mkpath(path))
    qCWarning(lcFileSystem).noquote() << "Locations: the folder" << path << "cannot be created";
}

QString SettingsStoreFolder(QSettings::Scope scope, const QString& folderName)
{
  const QSettings store(QSettings::IniFormat, scope, QCoreApplication::organizationName(), folderName);
  QString file = store.fileName();
  file.chop(4); // ".ini"
  return WithSlash(file);
}

QString CurrentUserName()
{
  if (const passwd* entry = ::getpwuid(::geteuid()))
    return QString::fromLocal8Bit(entry->pw_name);
  return qEnvironmentVariable("USER");
}

QString RootPath(const State& s)
{
  if (QCoreApplication::instance() == nullptr)
    RTE::Raise(RTE::VerificationFailed(
        Tr("QCoreApplication not initialized yet! Can't detect application path yet. Please move your code away "
           "from global static initialization. Ask Orlen about details.")));
  QDir dir(QCoreApplication::applicationDirPath());
  if (s.oneLevelUp)
    dir.cdUp();
  return WithSlash(dir.absolutePath().replace(QLatin1Char('\\'), QLatin1Char('/')));
}

// Folder name of a temporary folder below base, unique among the running instances.
QString TemporaryFolderIn(const State& s, const QString& base)
{
  QString path = base + QLatin1Char('/') + QCoreApplication::applicationName() + s.temporaryNameSuffix +
                 QLatin1Char('_') + QSysInfo::machineHostName();
  if (QFileInfo::exists(path))
    path += QLatin1Char('_') + QUuid::createUuid().toString(QUuid::WithoutBraces);
  return QDir::cleanPath(path);
}

void RemoveTemporaryFolders()
{
  State& s = state();
  const QMutexLocker lock(&s.mutex);
  for (const QString& folder : std::as_const(s.pendingRemovals))
    QDir(folder).removeRecursively();
  s.pendingRemovals.clear();
  if (!s.temporary.isEmpty())
    QDir(s.temporary).removeRecursively();
  s.temporary.clear();
}

void Initialize(State& s)
{
  if (s.initialized)
    return;
  s.root = RootPath(s);
  // A re-initialisation (forceAppDataUsage) gives the old temporary folder up.
  if (!s.temporary.isEmpty())
    QDir(s.temporary).removeRecursively();

  s.usesAppData = s.forcedAppData.value_or(QFileInfo::exists(s.root + QStringLiteral("useAppData")));
  const QString folderName = ApplicationFolderName(s.versionedFolder);

  if (s.usesAppData)
  {
    QString base = qEnvironmentVariable("PUBLIC");
    if (base.isEmpty())
      base = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation);
    s.commonBase = WithSlash(base + QLatin1Char('/') + folderName);
  }
  else
    s.commonBase = s.root;
  MakeFolder(s.commonBase);

  s.globalProgramData = SettingsStoreFolder(QSettings::SystemScope, folderName);
  MakeFolder(s.globalProgramData);
  s.programDataSettings = s.usesAppData ? s.globalProgramData : s.root + QStringLiteral("ProgramData/");
  MakeFolder(s.programDataSettings);
  s.readOnlySettings = s.root + QStringLiteral("ReadOnlySettings/");
  s.allUsersSettings = s.commonBase + QStringLiteral("All users/");

  const QSettings locations(s.commonBase + QStringLiteral("Locations.ini"), QSettings::IniFormat);
  if (locations.value(QStringLiteral("AllUsersMode"), false).toBool())
    s.userSettings = s.allUsersSettings;
  else if (s.usesAppData)
    s.userSettings = SettingsStoreFolder(QSettings::UserScope, folderName);
  else
    s.userSettings = s.root + QStringLiteral("Users/") +
                     (s.forcedUserName.isEmpty() ? CurrentUserName() : s.forcedUserName) + QLatin1Char('/');
  s.needsUserDefaults = !QFileInfo::exists(s.userSettings);

  const QString home = qEnvironmentVariable("HOME");
  const QString temporaryBase =
      home == QStringLiteral("/root") ? s.userSettings + QStringLiteral("tmp") : home + QStringLiteral("/tmp");
  s.defaultTemporary = TemporaryFolderIn(s, temporaryBase);
  s.temporary = s.temporarySettings.useDefault ? s.defaultTemporary : TemporaryFolderIn(s, s.temporarySettings.path);
  MakeFolder(s.temporary);
  // A Windows folder; Linux has none, whatever the environment says.
  s.allUsersProfile.clear();

  if (!s.driveMappingRead)
  {
    FileSystem::ReadLinuxDriveMappingConfiguration(s.programDataSettings + QStringLiteral("LinuxDriveMapping.txt"));
    s.driveMappingRead = true;
  }
  if (!s.cleanupRegistered)
  {
    qAddPostRoutine(&RemoveTemporaryFolders);
    s.cleanupRegistered = true;
  }
  s.initialized = true;
}

template <typename T>
T Get(T State::*member)
{
  State& s = state();
  const QMutexLocker lock(&s.mutex);
  Initialize(s);
  return s.*member;
}

void RefuseWhenInitialized(const State& s)
{
  if (s.initialized)
    RTE::Raise(RTE::VerificationFailed(Tr("Locations are already initialized!")));
}

} // namespace

bool areLocationsWorking()
{
  return QCoreApplication::instance() != nullptr;
}

QString getApplicationRootPath()
{
  State& s = state();
  const QMutexLocker lock(&s.mutex);
  return RootPath(s);
}

bool appDataUsageConfigured()
{
  return QFileInfo::exists(getApplicationRootPath() + QStringLiteral("useAppData"));
}

bool applicationUsesPortableSettings()
{
  return !Get(&State::usesAppData);
}

void forceAppDataUsage(bool useAppData, bool versionedFolder)
{
  State& s = state();
  const QMutexLocker lock(&s.mutex);
  s.forcedAppData = useAppData;
  s.versionedFolder = versionedFolder;
  s.commonBase.clear();
  s.initialized = false;
}

void forceUserName(const QString& name)
{
  State& s = state();
  const QMutexLocker lock(&s.mutex);
  s.forcedUserName = name;
}

void setApplicationPathOneLevelUp()
{
  State& s = state();
  const QMutexLocker lock(&s.mutex);
  RefuseWhenInitialized(s);
  s.oneLevelUp = true;
}

void modifyTemporaryPathApplicationName(const QString& text)
{
  State& s = state();
  const QMutexLocker lock(&s.mutex);
  RefuseWhenInitialized(s);
  s.temporaryNameSuffix = text;
}

QString getGlobalProgramDataPath()
{
  return Get(&State::globalProgramData);
}

QString getProgramDataSettingsPath()
{
  return Get(&State::programDataSettings);
}

QString getReadOnlySettingsPath()
{
  return Get(&State::readOnlySettings);
}

QString getUserSettingsPath()
{
  return Get(&State::userSettings);
}

QString getAllUsersSettingsPath()
{
  return Get(&State::allUsersSettings);
}

QString getAllUsersProfilePath()
{
  return Get(&State::allUsersProfile);
}

QString getAppDataPath()
{
  return Zn::Locations::appDataPath().toString() + QDir::separator();
}

QString getDefaultTemporaryPath()
{
  return Get(&State::defaultTemporary);
}

QString getTemporaryPath()
{
  const QString path = Get(&State::temporary);
  if (path.isEmpty())
    RTE::Raise(RTE::VerificationFailed(Tr("Temporary path not initialized or already removed during shutdown.")));
  return path;
}

TemporaryPathSettings getTemporaryPathSettings()
{
  return Get(&State::temporarySettings);
}

void setTemporaryPathSettings(const TemporaryPathSettings& settings)
{
  State& s = state();
  const QMutexLocker lock(&s.mutex);
  Initialize(s);
  if (!s.temporary.isEmpty() && !QDir(s.temporary).removeRecursively())
    s.pendingRemovals << s.temporary;
  s.temporarySettings = settings;
  s.temporary = settings.useDefault ? s.defaultTemporary : TemporaryFolderIn(s, settings.path);
  MakeFolder(s.temporary);
}

void useDefaultTemporaryPath()
{
  TemporaryPathSettings settings = getTemporaryPathSettings();
  settings.useDefault = true;
  setTemporaryPathSettings(settings);
}

void changeUsersMode(bool allUsers)
{
  const QString commonBase = Get(&State::commonBase);
  QSettings locations(commonBase + QStringLiteral("Locations.ini"), QSettings::IniFormat);
  locations.setValue(QStringLiteral("AllUsersMode"), allUsers);
  locations.sync();
}

void initializeUserSettingsFromDefaults()
{
  State& s = state();
  const QMutexLocker lock(&s.mutex);
  Initialize(s);
  if (!s.needsUserDefaults)
    return;
  const QString defaults = s.programDataSettings + QStringLiteral("DefaultUser/");
  if (QFileInfo(defaults).isDir())
    FileSystem::LazyCopyFolderContent(defaults, s.userSettings);
  s.needsUserDefaults = false;
}

} // namespace RTE::Locations
