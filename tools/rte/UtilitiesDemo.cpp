// Demo step: hierarchy paths, index ranges, number parsing, environment variables, the
// XML helpers and feature flags.
#include "Command.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Utilities/FeatureFlags.h>
#include <Core/Common/Utilities/HierarchyPath.h>
#include <Core/Common/Utilities/Indices.h>
#include <Core/Common/Utilities/RangeString.h>
#include <Core/Common/Utilities/StringUtilities.h>
#include <Core/Common/Utilities/XmlDocument.h>

#include <clocale>
#include <string>

namespace
{

void demoUtilities(QTextStream& out)
{
  const RTE::HierarchyPath path(QStringLiteral("cameras/left/exposure"), QStringLiteral("/"));
  const RTE::HierarchyPath prefix(QStringLiteral("cameras"), QStringLiteral("/"));
  out << "Hierarchy path " << path.AsString() << ": depth " << path.GetDepth() << ", parent "
      << path.GetParent().AsString() << ", without the prefix " << path.TrimParents(prefix).AsString() << "\n";
  const RTE::HierarchyPath repeated(QStringLiteral("a/b/a/c"), QStringLiteral("/"));
  out << "  a/b/a/c contains a/c? "
      << (repeated.Contains(RTE::HierarchyPath(QStringLiteral("a/c"), QStringLiteral("/"))) ? "yes" : "no")
      << " (each token is looked up from the start)\n";

  out << "\nIndex ranges as users type them (one-based, 20 frames, every 2nd):\n";
  const RTE::Indices frames(QStringLiteral("1-10; 15-, !3"), 19, 2);
  out << "  \"1-10; 15-, !3\" -> ranges " << frames.toString() << ", visited:";
  for (unsigned int index : frames)
    out << " " << index;
  out << " (" << frames.size() << " indices)\n";
  for (const char* bad : {"2-4-6", "1-99", "18446744073709551616"})
  {
    try
    {
      (void)RTE::ParseRangeString(QString::fromLatin1(bad), 0, 19, true);
    }
    catch (const RTE::OutOfRangeError& e)
    {
      out << "  \"" << bad << "\" -> OutOfRangeError: " << e.message() << "\n";
    }
    catch (const RTE::Exception& e)
    {
      out << "  \"" << bad << "\" -> Exception: " << e.message() << "\n";
    }
  }

  out << "\nNumbers are read in the C locale whatever the process locale says:\n";
  const std::string previous = std::setlocale(LC_NUMERIC, nullptr);
  const bool german = std::setlocale(LC_NUMERIC, "de_DE.UTF-8") != nullptr;
  out << "  process locale " << (german ? "de_DE.UTF-8" : previous.c_str())
      << ": toDouble(\"1.5\") = " << RTE::toDouble(std::string("1.5"))
      << ", toDouble(\" 3.0abc\") = " << RTE::toDouble(std::string(" 3.0abc")) << "\n";
  std::setlocale(LC_NUMERIC, previous.c_str());
  qputenv("RTEDEMODIR", "/data/run42");
  out << "  \"%RTEDEMODIR%/images\" -> "
      << RTE::String::replaceEnvironmentVariables(QStringLiteral("%RTEDEMODIR%/images")) << "\n";
  qunsetenv("RTEDEMODIR");

  out << "\nXML helpers (XPath over a free-form document):\n";
  const QString xml =
      QStringLiteral("<camera id=\"left\"><lens focal=\"35\">wide</lens><lens focal=\"85\">tele</lens></camera>");
  const Common::XmlDocument doc = Common::XmlDocument::loadFromString(xml);
  for (const Common::XmlNode& lens : doc.selectNodeList(QStringLiteral("//lens[@focal > 50]")))
    out << "  //lens[@focal > 50] -> " << lens.getValue().value_or(QString()) << "\n";
  out << "  getValueFrom(\"/camera/@id\") -> "
      << Common::XmlDocument::getValueFrom(xml, QStringLiteral("/camera/@id")).value_or(QStringLiteral("(nothing)"))
      << "\n";

  out << "\nFeature flags (registered by a module, switched for this run only):\n";
  Service::FeatureFlags& flags = Service::FeatureFlags::instance();
  flags.registerFlag(QStringLiteral("DemoTurbo"), QStringLiteral("Turbo"), QStringLiteral("Skips every check"),
                     QStringLiteral("Demo"), false);
  out << "  DemoTurbo before: " << (flags.isValid(QStringLiteral("DemoTurbo")) ? "on" : "off");
  flags.setFlag(QStringLiteral("DemoTurbo"), true, false);
  out << ", after setFlag(on, no store): " << (flags.isValid(QStringLiteral("DemoTurbo")) ? "on" : "off")
      << "; the user's choices live in " << flags.getStoragePath() << "\n";
  flags.unregisterFlag(QStringLiteral("DemoTurbo"));
}

const rte::DemoStepRegistration step{{90, QStringLiteral("General utilities"), &demoUtilities}};

} // namespace
