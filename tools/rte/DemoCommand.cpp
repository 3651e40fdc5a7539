// `rte demo`: a guided tour that runs every registered demo step in order.
#include "Command.h"

#include <Core/Common/Exceptions/Exception.h>

#include <QCommandLineParser>

namespace
{

int runDemo(const QStringList& arguments)
{
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("A guided tour of what the library does, step by step."));
  parser.addHelpOption();
  if (const std::optional<int> stop = rte::parseCommandLine(parser, arguments))
    return *stop;

  QTextStream& out = rte::out();
  out << "Core.Common guided tour\n=======================\n";
  int number = 0;
  for (const rte::DemoStep& step : rte::demoSteps())
  {
    out << "\nStep " << ++number << ": " << step.title << "\n"
        << QString(step.title.size() + 8, QLatin1Char('-')) << "\n";
    try
    {
      step.run(out);
    }
    catch (const RTE::Exception& e)
    {
      out << Qt::flush;
      rte::err() << "Step failed: " << e.message() << "\n";
      return 1;
    }
    out << Qt::flush;
  }
  out << "\nDone: " << number << " steps.\n";
  return 0;
}

const rte::CommandRegistration registration{
    {QStringLiteral("demo"), QStringLiteral("A guided tour of the library"), &runDemo}};

} // namespace
