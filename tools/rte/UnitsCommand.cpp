// `rte units`: lists the registered unit sets and converts values between units.
//
//   rte units list
//   rte units convert 20 °C K        -> 20 °C = 293.15 K
//   rte units convert -- -40 °C K    (or simply: rte units convert -40 °C K)
#include "Command.h"

#include <Core/Common/Units/NumberFormatter.h>
#include <Core/Common/Units/UnitsRegistry.h>

#include <QCommandLineParser>
#include <QLocale>
#include <QRegularExpression>

namespace
{

const QString usage =
    QStringLiteral("Usage: rte units list [--type TYPE]\n"
                   "       rte units convert VALUE FROM TO\n"
                   "\n"
                   "  list     every registered unit set with its units, labels, factors and offsets\n"
                   "  convert  converts VALUE from the unit id FROM into TO (both of one set)\n");

// Numbers for people: plain within 1e-6..1e12, else scientific; twelve digits.
const Common::NumberFormatter& numbers()
{
  static const Common::NumberFormatter formatter(12, -6, 12);
  return formatter;
}

// QCommandLineParser reads "-40" as options; numbers go after "--" instead.
QStringList withNumbersAsPositionals(const QStringList& arguments)
{
  static const QRegularExpression negativeNumber(QStringLiteral("^-[0-9.]"));
  QStringList options;
  QStringList positionals;
  for (qsizetype i = 1; i < arguments.size(); ++i)
  {
    const QString& argument = arguments[i];
    if (argument == QLatin1String("--"))
    {
      positionals += arguments.mid(i + 1);
      break;
    }
    if (argument.startsWith(QLatin1Char('-')) && !negativeNumber.match(argument).hasMatch())
      options.append(argument);
    else
      positionals.append(argument);
  }
  return QStringList{arguments.first()} + options + QStringList{QStringLiteral("--")} + positionals;
}

// Parses; returns -1 to go on, or the exit code to return (help shown, bad options).
int parse(QCommandLineParser& parser, const QStringList& arguments)
{
  parser.addHelpOption();
  if (const std::optional<int> stop = rte::parseCommandLine(parser, arguments))
    return *stop;
  return -1;
}

int runList(const QStringList& arguments)
{
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Lists every registered unit set with its units."));
  const QCommandLineOption typeOption(QStringLiteral("type"), QStringLiteral("Only the set of this type."),
                                      QStringLiteral("TYPE"));
  parser.addOption(typeOption);
  if (const int code = parse(parser, arguments); code >= 0)
    return code;
  if (!parser.positionalArguments().isEmpty())
  {
    rte::err() << "rte units list: unexpected argument '" << parser.positionalArguments().first() << "'\n";
    return 2;
  }

  const RTE::UnitsRegistry& registry = RTE::UnitsRegistry::getInstance();
  QStringList types = registry.getTypeIdentifiers();
  if (parser.isSet(typeOption))
  {
    const QString type = parser.value(typeOption);
    if (!types.contains(type))
    {
      rte::err() << "rte units list: no unit set of type '" << type
                 << "' is registered (registered: " << types.join(QStringLiteral(", ")) << ")\n";
      return 1;
    }
    types = QStringList{type};
  }

  QTextStream& out = rte::out();
  for (const QString& type : types)
  {
    const RTE::Units& units = *registry.findUnitsByType(type);
    out << type << " (base unit " << units.GetBaseUnitId() << ")\n";
    // Columns padded one by one: chained arg() would read a "%1" inside an id as a
    // placeholder.
    const auto row = [&out](const QString& id, const QString& label, const QString& factor, const QString& offset)
    {
      out << "  " << id.leftJustified(8) << " " << label.leftJustified(8) << " " << factor.leftJustified(22) << " "
          << offset << "\n";
    };
    row(QStringLiteral("id"), QStringLiteral("label"), QStringLiteral("factor"), QStringLiteral("offset"));
    for (const RTE::Unit& unit : units.GetAllUnits())
    {
      row(unit.id, unit.label, QString::number(unit.factor, 'g', QLocale::FloatingPointShortest),
          QString::number(unit.offset, 'g', QLocale::FloatingPointShortest));
    }
  }
  return 0;
}

int runConvert(const QStringList& arguments)
{
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral("Converts a value between two units of one set."));
  parser.addPositionalArgument(QStringLiteral("VALUE"), QStringLiteral("The number to convert, for example 20."));
  parser.addPositionalArgument(QStringLiteral("FROM"), QStringLiteral("Its unit id, for example \u00B0C."));
  parser.addPositionalArgument(QStringLiteral("TO"), QStringLiteral("The unit id to convert into, for example K."));
  if (const int code = parse(parser, withNumbersAsPositionals(arguments)); code >= 0)
    return code;
  const QStringList positional = parser.positionalArguments();
  if (positional.size() != 3)
  {
    rte::err() << "rte units convert: expected VALUE FROM TO\n\n" << usage;
    return 2;
  }
  bool ok = false;
  const double value = QLocale::c().toDouble(positional[0], &ok);
  if (!ok)
  {
    rte::err() << "rte units convert: '" << positional[0] << "' is not a number\n";
    return 2;
  }
  const QString& from = positional[1];
  const QString& to = positional[2];

  const RTE::UnitsRegistry& registry = RTE::UnitsRegistry::getInstance();
  for (const QString& id : {from, to})
  {
    if (!registry.containsUnitId(id, true))
    {
      rte::err() << "rte units convert: unknown unit '" << id << "': no registered unit set holds it\n";
      return 1;
    }
  }
  const RTE::Units& fromSet = registry.getUnits(from, true);
  if (!fromSet.CanScale(from, to))
  {
    rte::err() << "rte units convert: cannot convert '" << from << "' (" << fromSet.GetTypeIdentifier() << ") into '"
               << to << "' (" << registry.getUnits(to, true).GetTypeIdentifier()
               << "): the units belong to different sets\n";
    return 1;
  }
  const double result = fromSet.Convert(value, from, to);
  rte::out() << numbers().ToString(value) << " " << fromSet.GetLabelForUnitId(from) << " = "
             << numbers().ToString(result) << " " << fromSet.GetLabelForUnitId(to) << "\n";
  return 0;
}

int runUnits(const QStringList& arguments)
{
  const QString sub = arguments.value(1);
  QStringList rest = arguments.mid(2);
  rest.prepend(arguments.value(0) + QLatin1Char(' ') + sub);
  if (sub == QLatin1String("list"))
    return runList(rest);
  if (sub == QLatin1String("convert"))
    return runConvert(rest);
  if (sub == QLatin1String("--help") || sub == QLatin1String("-h"))
  {
    rte::out() << usage;
    return 0;
  }
  if (sub.isEmpty())
    rte::err() << usage;
  else
    rte::err() << "rte units: unknown subcommand '" << sub << "'\n\n" << usage;
  return 2;
}

const rte::CommandRegistration registration{
    {QStringLiteral("units"), QStringLiteral("List unit sets and convert values between units"), &runUnits}};

} // namespace
