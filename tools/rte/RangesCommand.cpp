// `rte ranges`: parses an index-range text as users type it and shows what it selects.
//
//   rte ranges "1-3; 5, !2" --max 9       -> ranges 1, 3, 5 (0-based), singles 5
//   rte ranges "1-3" --max 9 --one-based  -> the numbers count from 1
#include "Command.h"

#include <Core/Common/Exceptions/Exception.h>
#include <Core/Common/Utilities/RangeString.h>

#include <QCommandLineParser>
#include <QRegularExpression>

#include <optional>

namespace
{

// "-3" is a range statement, not an option: such arguments are passed after "--".
QStringList withRangesAsPositionals(const QStringList& arguments)
{
  static const QRegularExpression leadingMinus(QStringLiteral("^-[0-9]"));
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
    if (argument.startsWith(QLatin1Char('-')) && !leadingMinus.match(argument).hasMatch())
    {
      options.append(argument);
      // The value of --min/--max follows as its own argument.
      if ((argument == QLatin1String("--min") || argument == QLatin1String("--max")) && i + 1 < arguments.size())
        options.append(arguments[++i]);
    }
    else
    {
      positionals.append(argument);
    }
  }
  return QStringList{arguments.first()} + options + QStringList{QStringLiteral("--")} + positionals;
}

std::optional<unsigned int> bound(const QString& text)
{
  bool ok = false;
  const unsigned int value = text.toUInt(&ok);
  return ok ? std::optional<unsigned int>(value) : std::nullopt;
}

QString describe(const std::vector<RTE::RangeT<unsigned int>>& ranges)
{
  QStringList parts;
  for (const auto& range : ranges)
    parts.append(range.minimum == range.maximum ? QString::number(range.minimum)
                                                : QStringLiteral("%1-%2").arg(range.minimum).arg(range.maximum));
  return parts.isEmpty() ? QStringLiteral("(none)") : parts.join(QStringLiteral(", "));
}

int runRanges(const QStringList& arguments)
{
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Parses an index-range text such as \"1-5, 8, !3\" and prints the selected indices.\n"
                     "Parts: n, -n (0..n), n- (n..max), a-b, !n (cleared afterwards); \";\" is read as \",\"."));
  parser.addHelpOption();
  const QCommandLineOption minOption(QStringLiteral("min"), QStringLiteral("Lowest allowed index (default 0)."),
                                     QStringLiteral("A"), QStringLiteral("0"));
  const QCommandLineOption maxOption(QStringLiteral("max"), QStringLiteral("Highest allowed index."),
                                     QStringLiteral("B"));
  const QCommandLineOption oneBasedOption(QStringLiteral("one-based"),
                                          QStringLiteral("The numbers of TEXT count from 1."));
  parser.addOptions({minOption, maxOption, oneBasedOption});
  parser.addPositionalArgument(QStringLiteral("TEXT"), QStringLiteral("The range text, quoted."));
  if (!parser.parse(withRangesAsPositionals(arguments)))
  {
    rte::err() << "rte ranges: " << parser.errorText() << "\n";
    return 2;
  }
  if (parser.isSet(QStringLiteral("help")))
  {
    rte::out() << rte::helpText(parser, arguments.first());
    return 0;
  }
  const QStringList positional = parser.positionalArguments();
  if (positional.size() != 1 || !parser.isSet(maxOption))
  {
    rte::err() << "rte ranges: expected TEXT --max B [--min A] [--one-based]\n";
    return 2;
  }
  const std::optional<unsigned int> minIndex = bound(parser.value(minOption));
  const std::optional<unsigned int> maxIndex = bound(parser.value(maxOption));
  if (!minIndex || !maxIndex)
  {
    rte::err() << "rte ranges: --min and --max take whole numbers from 0 to 4294967295\n";
    return 2;
  }

  const bool oneBased = parser.isSet(oneBasedOption);
  std::vector<bool> singles;
  std::vector<bool> flags;
  try
  {
    flags = RTE::ParseRangeString(positional.first(), *minIndex, *maxIndex, singles, oneBased);
  }
  catch (const RTE::Exception& e)
  {
    rte::err() << "rte ranges: " << e.message() << "\n";
    return 1;
  }
  unsigned long long selected = 0;
  for (bool flag : flags)
    selected += flag ? 1 : 0;
  QTextStream& out = rte::out();
  out << "Ranges (0-based): " << describe(RTE::ConvertBoolVectorToRangeVector(flags, 0, *maxIndex, singles)) << "\n";
  out << "Singles: " << describe(RTE::ConvertBoolVectorToRangeVector(singles, 0, *maxIndex, singles)) << "\n";
  out << "Selected: " << selected << " of " << flags.size() << " indices\n";
  return 0;
}

const rte::CommandRegistration registration{
    {QStringLiteral("ranges"), QStringLiteral("Parse an index-range text such as \"1-5, 8, !3\""), &runRanges}};

} // namespace
