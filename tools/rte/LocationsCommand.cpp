// `rte locations`: every folder the library uses and the layout it chose.
//
//   rte locations
//   rte locations --app-data     (as if the program folder held a "useAppData" file)
#include "Command.h"

#include <Core/Common/Exceptions/Exception.h>
#include <Core/Common/OperatingSystem/Locations.h>
#include <Core/Common/Storage/SettingsDocument.h>

#include <QCommandLineParser>

namespace
{

int runLocations(const QStringList& arguments)
{
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Shows the folders of settings, data and temporary files."));
  parser.addHelpOption();
  const QCommandLineOption appData(QStringLiteral("app-data"), QStringLiteral("Use the application-data layout."));
  parser.addOption(appData);
  if (const std::optional<int> stop = rte::parseCommandLine(parser, arguments))
    return *stop;
  if (!parser.positionalArguments().isEmpty())
  {
    rte::err() << "rte locations: unexpected argument '" << parser.positionalArguments().first() << "'\n";
    return 2;
  }
  try
  {
    namespace L = RTE::Locations;
    if (parser.isSet(appData))
      L::forceAppDataUsage(true, false);
    rte::out() << "Layout:                 "
               << (L::applicationUsesPortableSettings() ? "portable (below the program folder)" : "application data")
               << (L::appDataUsageConfigured() ? ", \"useAppData\" present" : "") << "\n";
    const struct
    {
      const char* label;
      QString path;
    } rows[] = {{"Application root", L::getApplicationRootPath()},
                {"Read-only settings", L::getReadOnlySettingsPath()},
                {"Program-data settings", L::getProgramDataSettingsPath()},
                {"Global program data", L::getGlobalProgramDataPath()},
                {"User settings", L::getUserSettingsPath()},
                {"All-users settings", L::getAllUsersSettingsPath()},
                {"All-users profile", L::getAllUsersProfilePath()},
                {"Application data", L::getAppDataPath()},
                {"Default temporary", L::getDefaultTemporaryPath()},
                {"Temporary", L::getTemporaryPath()}};
    for (const auto& row : rows)
      rte::out() << QStringLiteral("%1 %2\n").arg(QString::fromLatin1(row.label) + QLatin1Char(':'), -23).arg(row.path);
    rte::out() << "Settings \"camera\":      "
               << Storage::SettingsDocument::FilePathFor(Storage::Scope::User, QStringLiteral("camera")) << "\n";
    return 0;
  }
  catch (const RTE::Exception& e)
  {
    rte::err() << "rte locations: " << e.message() << "\n";
    return 1;
  }
}

const rte::CommandRegistration reg{
    {QStringLiteral("locations"), QStringLiteral("Folders of settings, data and temporary files"), &runLocations}};

} // namespace
