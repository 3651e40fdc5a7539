// `rte flags`: the feature flags this tool knows and the user's stored choices.
//
//   rte flags list
//   rte flags set FastPreview on            (this run only: shows the effect)
//   rte flags set FastPreview on --store    (kept in the user's "FeatureFlags.xml")
#include "Command.h"

#include <Core/Common/Utilities/FeatureFlags.h>

#include <QCommandLineParser>

namespace
{

// What a host module does at start-up: register the flags it knows.
void registerToolFlags(Service::FeatureFlags& flags)
{
  flags.registerFlag(QStringLiteral("FastPreview"), QStringLiteral("Fast preview"),
                     QStringLiteral("Shows every fourth frame while recording"), QStringLiteral("Acquisition"), false);
  flags.registerFlag(QStringLiteral("ExperimentalCodecs"), QStringLiteral("Experimental codecs"),
                     QStringLiteral("Offers compressors still under evaluation"), QStringLiteral("Storage"), true);
}

QString onOff(bool value)
{
  return value ? QStringLiteral("on") : QStringLiteral("off");
}

void list(const Service::FeatureFlags& flags)
{
  QTextStream& out = rte::out();
  out << "File: " << flags.getStoragePath() << "\n";
  out << "Registered (name, answer, group: label, default):\n";
  for (const auto& flag : flags.getRegisteredFlagsForUI())
    out << QStringLiteral("  %1 %2  %3: %4, default %5\n")
               .arg(flag.name, -20)
               .arg(onOff(flags.isValid(flag.name)), -3)
               .arg(flag.group, flag.label, onOff(flag.defaultValue));
  out << "Stored:\n";
  const auto stored = flags.getStoredFlags();
  for (const auto& [name, value] : stored)
    out << QStringLiteral("  %1 %2\n").arg(name, -20).arg(onOff(value));
  if (stored.empty())
    out << "  (none)\n";
}

int runFlags(const QStringList& arguments)
{
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Lists the feature flags or switches one.\n"
                     "  list                  registered flags, their answers, and the stored choices\n"
                     "  set NAME on|off       switch a flag for this run, or with --store for good"));
  parser.addHelpOption();
  const QCommandLineOption storeOption(QStringLiteral("store"),
                                       QStringLiteral("Keep the choice in the user's \"FeatureFlags.xml\"."));
  parser.addOption(storeOption);
  parser.addPositionalArgument(QStringLiteral("list|set"), QStringLiteral("What to do."));
  if (const std::optional<int> stop = rte::parseCommandLine(parser, arguments))
    return *stop;
  Service::FeatureFlags& flags = Service::FeatureFlags::instance();
  registerToolFlags(flags);
  const QStringList positional = parser.positionalArguments();
  if (positional == QStringList{QStringLiteral("list")} && !parser.isSet(storeOption))
  {
    list(flags);
    return 0;
  }
  if (positional.size() == 3 && positional[0] == QLatin1String("set") &&
      (positional[2] == QLatin1String("on") || positional[2] == QLatin1String("off")))
  {
    const QString& name = positional[1];
    const bool store = parser.isSet(storeOption);
    flags.setFlag(name, positional[2] == QLatin1String("on"), store);
    rte::out() << name << " is " << onOff(flags.isValid(name))
               << (store ? QStringLiteral(" (stored in %1)").arg(flags.getStoragePath())
                         : QStringLiteral(" for this run"))
               << (flags.isFlagRegistered(name) ? "" : "; no module of this tool registers it") << "\n";
    return 0;
  }
  rte::err() << "rte flags: expected 'list' or 'set NAME on|off [--store]'\n";
  return 2;
}

const rte::CommandRegistration registration{
    {QStringLiteral("flags"), QStringLiteral("List or switch feature flags"), &runFlags}};

} // namespace
