// `rte xml`: the value an XPath expression selects in an XML file.
//
//   rte xml camera.xml /camera/@id       -> the attribute's value
//   rte xml camera.xml "//lens[2]"       -> the element's text
#include "Command.h"

#include <Core/Common/Utilities/XmlDocument.h>

#include <QCommandLineParser>
#include <QFileInfo>

namespace
{

int runXml(const QStringList& arguments)
{
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Prints the value of the first node XPATH selects in FILE: an attribute's value or an "
                     "element's text. Texts are shown as the library reads them (Latin-1)."));
  parser.addHelpOption();
  parser.addPositionalArgument(QStringLiteral("FILE"), QStringLiteral("The XML file."));
  parser.addPositionalArgument(QStringLiteral("XPATH"), QStringLiteral("The XPath expression, quoted."));
  if (const std::optional<int> stop = rte::parseCommandLine(parser, arguments))
    return *stop;
  const QStringList positional = parser.positionalArguments();
  if (positional.size() != 2)
  {
    rte::err() << "rte xml: expected FILE XPATH\n";
    return 2;
  }
  const QFileInfo file(positional[0]);
  if (!file.isFile())
  {
    rte::err() << "rte xml: no such file: " << positional[0] << "\n";
    return 1;
  }
  if (!Common::XmlDocument::loadFromFile(file.absoluteFilePath()).isValid())
  {
    rte::err() << "rte xml: " << positional[0] << " is not well-formed XML\n";
    return 1;
  }
  const std::optional<QString> value = Common::XmlDocument::getValueFrom(file, positional[1]);
  if (!value)
  {
    rte::err() << "rte xml: " << positional[1] << " selects nothing in " << positional[0] << "\n";
    return 1;
  }
  rte::out() << *value << "\n";
  return 0;
}

const rte::CommandRegistration registration{
    {QStringLiteral("xml"), QStringLiteral("Print the value an XPath expression selects in an XML file"), &runXml}};

} // namespace
