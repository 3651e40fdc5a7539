#include "Command.h"

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
