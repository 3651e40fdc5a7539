// Subcommands and demo steps of the rte tool. Each source registers its own at start-up:
//
//   static const rte::CommandRegistration reg{{"units", "List and convert units", &runUnits}};
//   static const rte::DemoStepRegistration step{{20, "Units", &demoUnits}};
#pragma once

#include <QCommandLineParser>
#include <QStringList>
#include <QTextStream>

#include <functional>
#include <optional>
#include <vector>

namespace rte
{

struct Command
{
  QString name;
  QString summary;
  // arguments[0] is "rte <name>", the rest what followed the name on the command line.
  // Returns the process exit code.
  std::function<int(const QStringList& arguments)> run;
};

struct DemoStep
{
  int order; // steps run in ascending order
  QString title;
  std::function<void(QTextStream& out)> run;
};

// Registered commands, sorted by name; registered steps, sorted by order.
std::vector<Command>& commands();
std::vector<DemoStep>& demoSteps();

struct CommandRegistration
{
  explicit CommandRegistration(Command command);
};

struct DemoStepRegistration
{
  explicit DemoStepRegistration(DemoStep step);
};

// The parser's help with the usage line naming commandLine ("rte units list") rather
// than the path the program was started by.
QString helpText(const QCommandLineParser& parser, const QString& commandLine);

// Parses a command's arguments (arguments[0] is "rte <name>"). When the command should
// stop here, returns its exit code: 2 after printing the parse error, 0 after printing
// the help for --help.
std::optional<int> parseCommandLine(QCommandLineParser& parser, const QStringList& arguments);

QTextStream& out();
QTextStream& err();

} // namespace rte
