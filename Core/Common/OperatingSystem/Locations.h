// Where the application keeps its settings, read-only data, shared program data and
// temporary files; decided once per process by the first getter.
//
//   int main(int argc, char* argv[])
//   {
//     QCoreApplication app(argc, argv);
//     RTE::Locations::setApplicationPathOneLevelUp();  // configuration before any getter
//     const QString settings = RTE::Locations::getUserSettingsPath();
//   }
//
// Two layouts: portable (everything below the application's folder) and application
// data (the user's and the machine's data folders), chosen by a "useAppData" file in
// the application folder or by forceAppDataUsage. Folders end with "/".
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>

namespace RTE::Locations
{

struct CORECOMMON_EXPORT TemporaryPathSettings
{
  QString path;
  bool useDefault = true;
};

// Whether the getters can answer: only while the application object exists, since the
// folders derive from its path and names. Never throws; lets code that may run at static
// initialisation or after shutdown skip its settings instead of raising.
CORECOMMON_EXPORT bool areLocationsWorking();

CORECOMMON_EXPORT QString getApplicationRootPath();
CORECOMMON_EXPORT bool appDataUsageConfigured();
CORECOMMON_EXPORT bool applicationUsesPortableSettings();

// Configuration. forceAppDataUsage may come at any time and makes the next getter
// decide everything again; the others throw RTE::VerificationFailed once initialised.
CORECOMMON_EXPORT void forceAppDataUsage(bool useAppData, bool versionedFolder);
CORECOMMON_EXPORT void forceUserName(const QString& name);
CORECOMMON_EXPORT void setApplicationPathOneLevelUp();
CORECOMMON_EXPORT void modifyTemporaryPathApplicationName(const QString& text);

CORECOMMON_EXPORT QString getGlobalProgramDataPath();
CORECOMMON_EXPORT QString getProgramDataSettingsPath();
CORECOMMON_EXPORT QString getReadOnlySettingsPath();
CORECOMMON_EXPORT QString getUserSettingsPath();
CORECOMMON_EXPORT QString getAllUsersSettingsPath();
CORECOMMON_EXPORT QString getAllUsersProfilePath();
CORECOMMON_EXPORT QString getAppDataPath();
CORECOMMON_EXPORT QString getDefaultTemporaryPath();
// Throws RTE::VerificationFailed after the folder was removed at shutdown.
CORECOMMON_EXPORT QString getTemporaryPath();
CORECOMMON_EXPORT TemporaryPathSettings getTemporaryPathSettings();
// Removes the current temporary folder (or remembers it for later removal) and derives
// a new one from the settings.
CORECOMMON_EXPORT void setTemporaryPathSettings(const TemporaryPathSettings& settings);
CORECOMMON_EXPORT void useDefaultTemporaryPath();

// Writes "AllUsersMode" into the common "Locations.ini"; read at the next initialisation.
CORECOMMON_EXPORT void changeUsersMode(bool allUsers);
// Copies "DefaultUser/" of the program-data settings into a user settings folder that
// the initialisation found missing, never overwriting a user's file.
CORECOMMON_EXPORT void initializeUserSettingsFromDefaults();

} // namespace RTE::Locations
