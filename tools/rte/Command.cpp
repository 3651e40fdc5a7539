#include "Command.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstdio>

namespace rte
{

std::vector<Command>& commands()
{
  static std::vector<Command> registered;
  return registered;
}

std::vector<DemoStep>& demoSteps()
{
  static std::vector<DemoStep> registered;
  return registered;
}

CommandRegistration::CommandRegistration(Command command)
{
  auto& all = commands();
  const auto at = std::lower_bound(all.begin(), all.end(), command.name,
                                   [](const Command& c, const QString& name) { return c.name < name; });
  all.insert(at, std::move(command));
}

DemoStepRegistration::DemoStepRegistration(DemoStep step)
{
  auto& all = demoSteps();
  const auto at = std::upper_bound(all.begin(), all.end(), step.order,
                                   [](int order, const DemoStep& s) { return order < s.order; });
  all.insert(at, std::move(step));
}

QString helpText(const QCommandLineParser& parser, const QString& commandLine)
{
  QString text = parser.helpText();
  // QCommandLineParser names the program by its first argument, the path it was started by.
  const QString program = QCoreApplication::arguments().value(0);
  const qsizetype at = text.indexOf(program);
  const qsizetype lineEnd = text.indexOf(QLatin1Char('\n'));
  if (!program.isEmpty() && at >= 0 && (lineEnd < 0 || at < lineEnd))
    text.replace(at, program.size(), commandLine);
  return text;
}

std::optional<int> parseCommandLine(QCommandLineParser& parser, const QStringList& arguments)
{
  if (!parser.parse(arguments))
  {
    err() << arguments.first() << ": " << parser.errorText() << "\n";
    return 2;
  }
  if (parser.isSet(QStringLiteral("help")))
  {
    out() << helpText(parser, arguments.first());
    return 0;
  }
  return std::nullopt;
}

QTextStream& out()
{
  static QTextStream stream(stdout);
  return stream;
}

QTextStream& err()
{
  static QTextStream stream(stderr);
  return stream;
}

} // namespace rte
