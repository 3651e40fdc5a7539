// `rte timestamps`: look into a "Timestamps.bin" cycle file, or write a synthetic one.
#include "Command.h"
#include "TimestampsTool.h"

#include <Core/Common/Exceptions/Exception.h>

#include <QCommandLineParser>
#include <QFile>

namespace
{

const QString usage = QStringLiteral("Usage: rte timestamps show FILE [--limit N] [--format binary|legacy|old-legacy]\n"
                                     "       rte timestamps synth [--output FILE] [options]\n");

bool parse(QCommandLineParser& parser, const QStringList& arguments, int& exitCode)
{
  parser.addHelpOption();
  if (!parser.parse(arguments))
  {
    rte::err() << parser.errorText() << "\n";
    exitCode = 2;
    return false;
  }
  if (parser.isSet(QStringLiteral("help")))
  {
    rte::out() << rte::helpText(parser, arguments.first());
    exitCode = 0;
    return false;
  }
  return true;
}

int runShow(const QStringList& arguments)
{
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Prints the settings and kind of a recorded cycle, then each exposure's time, crank angle, "
                     "speed and PPR step."));
  parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("A cycle file such as Timestamps.bin."));
  parser.addOption({QStringLiteral("limit"), QStringLiteral("List at most <n> exposures."), QStringLiteral("n")});
  parser.addOption({QStringLiteral("format"),
                    QStringLiteral("binary (Timestamps.bin), legacy (key=value text) or old-legacy (line text)."),
                    QStringLiteral("format"), QStringLiteral("binary")});
  int code = 0;
  if (!parse(parser, arguments, code))
    return code;
  const QStringList files = parser.positionalArguments();
  if (files.size() != 1)
  {
    rte::err() << "rte timestamps show: expected one file\n";
    return 2;
  }
  std::optional<qint64> limit;
  if (parser.isSet(QStringLiteral("limit")))
  {
    bool ok = false;
    limit = parser.value(QStringLiteral("limit")).toLongLong(&ok);
    if (!ok || *limit < 0)
    {
      rte::err() << "rte timestamps show: --limit takes a number of rows\n";
      return 2;
    }
  }
  const QString format = parser.value(QStringLiteral("format"));
  if (format != QLatin1String("binary") && format != QLatin1String("legacy") && format != QLatin1String("old-legacy"))
  {
    rte::err() << "rte timestamps show: unknown --format '" << format << "'\n";
    return 2;
  }
  QFile file(files.first());
  if (!file.open(QIODevice::ReadOnly))
  {
    rte::err() << "rte timestamps show: cannot open '" << files.first() << "': " << file.errorString() << "\n";
    return 1;
  }
  const RTE::CycleTimestamps cycle = format == QLatin1String("legacy") ? RTE::CycleTimestamps::loadLegacyFormat(file)
                                     : format == QLatin1String("old-legacy")
                                         ? RTE::CycleTimestamps::loadOldLegacyFormat(file)
                                         : RTE::CycleTimestamps::load(file);
  rte::out() << "File:              " << files.first() << "\n";
  rte::printCycle(rte::out(), cycle, limit);
  return 0;
}

int runSynth(const QStringList& arguments)
{
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Writes a plausible cycle file of a single-cylinder engine, to try the tools without a test "
                     "bench."));
  const rte::SynthOptions defaults;
  parser.addOptions({
      {{QStringLiteral("o"), QStringLiteral("output")},
       QStringLiteral("The file to write (Timestamps.bin)."),
       QStringLiteral("file"),
       QStringLiteral("Timestamps.bin")},
      {QStringLiteral("rpm"), QStringLiteral("Mean engine speed (1200)."), QStringLiteral("rpm"),
       QString::number(defaults.rpm)},
      {QStringLiteral("degrees"), QStringLiteral("Degrees per cycle, 360 or 720 (720)."), QStringLiteral("degrees"),
       QString::number(defaults.degreesPerCycle)},
      {QStringLiteral("marks"), QStringLiteral("Crank degree marks per cycle (720)."), QStringLiteral("n"),
       QString::number(defaults.marksPerCycle)},
      {QStringLiteral("exposures"), QStringLiteral("Exposures per cycle (100)."), QStringLiteral("n"),
       QString::number(defaults.exposuresPerCycle)},
      {QStringLiteral("ppr-steps"), QStringLiteral("Steps of a multi-step acquisition; 0 for none (0)."),
       QStringLiteral("n"), QString::number(defaults.pprSteps)},
      {QStringLiteral("cycle"), QStringLiteral("Recorded cycle number (1)."), QStringLiteral("n"),
       QString::number(defaults.cycle)},
      {QStringLiteral("kind"), QStringLiteral("full, start-missing or end-missing (full)."), QStringLiteral("kind"),
       QStringLiteral("full")},
  });
  int code = 0;
  if (!parse(parser, arguments, code))
    return code;
  if (!parser.positionalArguments().isEmpty())
  {
    rte::err() << "rte timestamps synth: unexpected argument '" << parser.positionalArguments().first() << "'\n";
    return 2;
  }

  rte::SynthOptions options;
  bool ok = true;
  const auto number = [&](const char* name, auto& target)
  {
    bool valid = false;
    const double value = parser.value(QLatin1String(name)).toDouble(&valid);
    using Target = std::remove_reference_t<decltype(target)>;
    if (!valid || value < 0 || (std::is_integral_v<Target> && (value != std::floor(value) || value > 4294967295.0)))
    {
      rte::err() << "rte timestamps synth: invalid --" << name << " '" << parser.value(QLatin1String(name)) << "'\n";
      ok = false;
      return;
    }
    target = static_cast<Target>(value);
  };
  number("rpm", options.rpm);
  number("degrees", options.degreesPerCycle);
  number("marks", options.marksPerCycle);
  number("exposures", options.exposuresPerCycle);
  number("ppr-steps", options.pprSteps);
  number("cycle", options.cycle);
  const QString kind = parser.value(QStringLiteral("kind"));
  if (kind == QLatin1String("full"))
    options.kind = rte::CycleKind::Full;
  else if (kind == QLatin1String("start-missing"))
    options.kind = rte::CycleKind::StartMissing;
  else if (kind == QLatin1String("end-missing"))
    options.kind = rte::CycleKind::EndMissing;
  else
  {
    rte::err() << "rte timestamps synth: unknown --kind '" << kind << "'\n";
    ok = false;
  }
  if (!ok)
    return 2;

  const RTE::CycleTimestamps cycle = rte::synthesizeCycle(options);
  const QString output = parser.value(QStringLiteral("output"));
  cycle.store(output);
  rte::out() << "Wrote " << output << ": " << cycle.cdmCount() << " CDMs, " << cycle.exposureCount() << " exposures\n";
  return 0;
}

int runTimestamps(const QStringList& arguments)
{
  const QString sub = arguments.value(1);
  QStringList rest = arguments.mid(2);
  rest.prepend(arguments.value(0) + QLatin1Char(' ') + sub);
  try
  {
    if (sub == QLatin1String("show"))
      return runShow(rest);
    if (sub == QLatin1String("synth"))
      return runSynth(rest);
  }
  catch (const RTE::Exception& e)
  {
    rte::err() << "rte timestamps " << sub << ": " << e.message() << "\n";
    return 1;
  }
  if (sub == QLatin1String("--help") || sub == QLatin1String("-h"))
  {
    rte::out() << usage;
    return 0;
  }
  rte::err() << usage;
  return 2;
}

const rte::CommandRegistration registration{
    {QStringLiteral("timestamps"), QStringLiteral("Show or synthesise engine-cycle timestamp files"), &runTimestamps}};

} // namespace
