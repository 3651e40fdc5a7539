// `rte convert-time`: reads a duration and writes it in another time unit, exactly.
//
//   rte convert-time "12.5 ms" us      -> 12.5 ms = 12500 µs
//   rte convert-time "90 s" min        -> 90 s = 1.5 min
//   rte convert-time 1234567ps         -> 1234567ps = 1.234567 µs   (automatic unit)
#include "Command.h"

#include <Core/Common/Exceptions/Exception.h>
#include <Core/Common/Units/DefaultStringToTimeConverter.h>
#include <Core/Common/Units/DefaultTimeToStringConverter.h>
#include <Core/Common/Units/TimeUnits.h>

namespace
{

const QString help =
    QStringLiteral("Usage: rte convert-time DURATION [UNIT]\n"
                   "\n"
                   "Reads DURATION, a number and a time unit such as \"12.5 ms\" (quote it when it holds a\n"
                   "blank), and writes it in UNIT, exactly to the picosecond. Without UNIT the largest of\n"
                   "s, ms, \u00B5s, ns, ps that keeps the number at 1 or more is used.\n"
                   "\n"
                   "Units: s, ms, \u00B5s (or us), ns, ps, min, h. Durations reach about 106 days either way.\n"
                   "\n"
                   "Examples:\n"
                   "  rte convert-time \"12.5 ms\" us     12.5 ms = 12500 \u00B5s\n"
                   "  rte convert-time \"90 s\" min       90 s = 1.5 min\n"
                   "  rte convert-time -- \"-2 h\" s      -2 h = -7200 s\n");

int runConvertTime(const QStringList& arguments)
{
  QStringList positional;
  bool afterDashes = false;
  for (const QString& argument : arguments.mid(1))
  {
    if (!afterDashes && (argument == QLatin1String("--help") || argument == QLatin1String("-h")))
    {
      rte::out() << help;
      return 0;
    }
    if (!afterDashes && argument == QLatin1String("--"))
      afterDashes = true;
    else
      positional.append(argument);
  }
  if (positional.isEmpty() || positional.size() > 2)
  {
    rte::err() << "rte convert-time: expected DURATION [UNIT]\n\n" << help;
    return 2;
  }
  try
  {
    const RTE::TimeSpan span = RTE::DefaultStringToTimeConverter().convert(positional[0]);
    const RTE::DefaultTimeToStringConverter writer =
        positional.size() == 2 ? RTE::DefaultTimeToStringConverter(positional[1]) : RTE::DefaultTimeToStringConverter();
    rte::out() << positional[0].trimmed() << " = " << writer.convert(span) << "\n";
    return 0;
  }
  catch (const RTE::Exception& e)
  {
    rte::err() << "rte convert-time: " << e.message() << "\n";
    return 1;
  }
}

const rte::CommandRegistration registration{{QStringLiteral("convert-time"),
                                             QStringLiteral("Convert a duration such as \"12.5 ms\" into another unit"),
                                             &runConvertTime}};

} // namespace
