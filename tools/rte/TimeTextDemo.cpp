// Demo step: numbers and durations as text, for machines (exact) and for people (rounded).
#include "Command.h"

#include <Core/Common/Exceptions/Exception.h>
#include <Core/Common/Units/DefaultStringToTimeConverter.h>
#include <Core/Common/Units/DefaultTimeToStringConverter.h>
#include <Core/Common/Units/FloatConverter.h>
#include <Core/Common/Units/TimeFormatter.h>

namespace
{

void demoTimeText(QTextStream& out)
{
  out << "Doubles as the shortest text that reads back exactly, with '.' whatever the locale:\n";
  for (const double value : {0.1, 2.0 / 3.0, 1e-7, 6.02214076e23})
  {
    const QString text = RTE::FloatConverter::toString(value);
    out << "  " << text << " reads back " << (RTE::FloatConverter::toDouble(text) == value ? "exactly" : "WRONG")
        << "\n";
  }
  try
  {
    (void)RTE::FloatConverter::toDouble(u"1,5");
  }
  catch (const RTE::Exception& e)
  {
    out << "  toDouble(\"1,5\") throws: " << e.message() << "\n";
  }

  out << "\nDurations for files are exact to the picosecond; for people they are rounded:\n";
  const RTE::DefaultTimeToStringConverter exact;
  const RTE::DefaultStringToTimeConverter reader;
  for (const RTE::TimeSpan span :
       {RTE::TimeSpan(12345678901), RTE::Seconds(5400), RTE::TimeSpan(-1), RTE::TimeSpan::Maximum()})
  {
    const QString text = exact.convert(span);
    out << "  " << text.leftJustified(26) << Common::TimeFormatter::Default().ToString(span).leftJustified(12)
        << (reader.convert(text) == span ? "(reads back exactly)" : "(WRONG)") << "\n";
  }
  out << "  \"12.5 ms\" in \u00B5s: " << RTE::DefaultTimeToStringConverter(u"us").convert(reader.convert(u"12.5 ms"))
      << "   (rte convert-time \"12.5 ms\" us)\n";
}

const rte::DemoStepRegistration step{{35, QStringLiteral("Number and time text"), &demoTimeText}};

} // namespace
