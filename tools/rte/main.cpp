// rte: command-line access to the Core.Common library.
#include "Command.h"

#include <Core/Common/Units/DefaultUnits.h>
#include <Core/Common/Utilities/InstructionSets.h>
#include <Core/Common/Utilities/VersionInfo.h>

#include <QCommandLineParser>
#include <QCoreApplication>

namespace
{

// The tool's version, then what the library reports about itself.
void showVersion()
{
  const QString unknown = QStringLiteral("unknown");
  const auto orUnknown = [&unknown](const QString& text) { return text.isEmpty() ? unknown : text; };
  const QString libraryFile = RTE::VersionInfo::libraryFilePath();
  QTextStream& out = rte::out();
  out << "rte " << QCoreApplication::applicationVersion() << "\n";
  out << "Core.Common " << RTE::VersionInfo::libraryVersion() << "\n";
  out << "  source revision:  " << orUnknown(RTE::VersionInfo::sourceRevision()) << "\n";
  out << "  build date:       " << orUnknown(RTE::VersionInfo::buildDate()) << "\n";
  out << "  library file:     " << orUnknown(libraryFile) << "\n";
  out << "  file version:     " << orUnknown(RTE::VersionInfo::fileVersion(libraryFile)) << "\n";
  out << "  instruction sets: " << RTE::InstructionSets::host().toString() << "\n";
  out << Qt::flush;
}

QString commandList()
{
  QString text = QStringLiteral("Commands:\n");
  for (const rte::Command& command : rte::commands())
    text += QStringLiteral("  %1  %2\n").arg(command.name, -12).arg(command.summary);
  return text;
}

} // namespace

int main(int argc, char* argv[])
{
  QCoreApplication app(argc, argv);
  QCoreApplication::setApplicationName(QStringLiteral("rte"));
  QCoreApplication::setApplicationVersion(QStringLiteral(RTE_TOOL_VERSION));
  // What a host does at start-up.
  RTE::registerDefaultUnits();

  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Command-line access to the Core.Common runtime library.\n\n") +
                                   commandList() +
                                   QStringLiteral("\nRun 'rte <command> --help' for the options of a command."));
  parser.addHelpOption();
  parser.addVersionOption();
  parser.addPositionalArgument(QStringLiteral("command"), QStringLiteral("The command to run (see above)."));
  parser.setOptionsAfterPositionalArgumentsMode(QCommandLineParser::ParseAsPositionalArguments);

  const QStringList arguments = QCoreApplication::arguments();
  if (!parser.parse(arguments))
  {
    rte::err() << parser.errorText() << "\n" << Qt::flush;
    return 2;
  }
  if (parser.isSet(QStringLiteral("version")))
  {
    showVersion();
    return 0;
  }
  const QStringList positional = parser.positionalArguments();
  if (parser.isSet(QStringLiteral("help")) || positional.isEmpty())
  {
    if (positional.isEmpty() && !parser.isSet(QStringLiteral("help")))
    {
      rte::err() << rte::helpText(parser, QStringLiteral("rte")) << Qt::flush;
      return 2;
    }
    rte::out() << rte::helpText(parser, QStringLiteral("rte")) << Qt::flush;
    return 0;
  }

  const QString name = positional.first();
  for (const rte::Command& command : rte::commands())
  {
    if (command.name == name)
    {
      QStringList rest = positional.mid(1);
      rest.prepend(QStringLiteral("rte ") + name);
      const int code = command.run(rest);
      rte::out() << Qt::flush;
      rte::err() << Qt::flush;
      return code;
    }
  }
  rte::err() << "rte: unknown command '" << name << "'\n\n" << commandList() << Qt::flush;
  return 2;
}
