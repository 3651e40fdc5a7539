// `rte params`: prints a parameter tree stored in a settings file.
//
//   rte params camera.xml                   the tree at the root, or the first top-level
//                                           node of class "ParameterTree"
//   rte params setup.xml --node Cameras/Camera0
//
// One line per node: name, kind, value, range, access mode; sub-nodes indented.
#include "Command.h"
#include "ParameterPrint.h"

#include <Core/Common/Exceptions/Exception.h>
#include <Core/Common/Parameter/ParameterStorage.h>
#include <Core/Common/Storage/SettingsDocument.h>

#include <QCommandLineParser>
#include <QFileInfo>

namespace
{

using Storage::Settings;

const QString treeClass = QStringLiteral("ParameterTree");

// The node named by the '/'-joined path; without a path, the first top-level node that
// holds a tree. Null when there is none.
std::shared_ptr<const Settings> findTree(Storage::SettingsDocument& document, const QString& path)
{
  if (!path.isEmpty())
  {
    std::shared_ptr<const Settings> node;
    for (const QString& name : path.split(QLatin1Char('/'), Qt::SkipEmptyParts))
    {
      const Settings& parent = node ? *node : document;
      if (!parent.Contains(name))
        return nullptr;
      node = parent.GetNode(name);
    }
    return node;
  }
  for (const QString& name : document.GetChildrenNames())
  {
    if (document.GetClass(name) == treeClass)
      return document.GetNode(name);
  }
  return nullptr;
}

int runParams(const QStringList& arguments)
{
  QCommandLineParser parser;
  parser.setApplicationDescription(
      QStringLiteral("Prints a parameter tree stored in a settings file: one line per node with its name, kind,\n"
                     "value, range and access mode."));
  parser.addHelpOption();
  parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("The settings file."));
  const QCommandLineOption nodeOption(
      QStringLiteral("node"),
      QStringLiteral("The settings node holding the tree or a single parameter node, names joined with '/'."),
      QStringLiteral("path"));
  parser.addOption(nodeOption);
  if (const std::optional<int> stop = rte::parseCommandLine(parser, arguments))
    return *stop;
  if (parser.positionalArguments().size() != 1)
  {
    rte::err() << "rte params: give one file.\n";
    return 2;
  }
  const QString path = parser.positionalArguments().first();
  if (!QFileInfo::exists(path))
  {
    rte::err() << "rte params: " << path << " does not exist.\n";
    return 1;
  }
  Storage::SettingsDocument document(path, Storage::AutoSync::Off);
  if (!document.Load())
  {
    rte::err() << "rte params: " << path << " is no readable settings file.\n";
    return 1;
  }
  try
  {
    const QString nodePath = parser.value(nodeOption);
    const Settings* node = nullptr;
    std::shared_ptr<const Settings> found;
    if (nodePath.isEmpty() && document.IsClass(treeClass))
      node = &document;
    else
    {
      found = findTree(document, nodePath);
      node = found.get();
    }
    if (!node)
    {
      rte::err() << "rte params: no parameter tree in " << path
                 << (nodePath.isEmpty() ? QString() : QStringLiteral(" at ") + nodePath) << ".\n";
      return 1;
    }
    std::list<std::shared_ptr<RTE::Parameter::C_Node>> nodes;
    if (node->IsClass(treeClass))
    {
      std::shared_ptr<RTE::Parameter::C_Tree> tree;
      Storage::DeserializeFrom(*node, tree);
      nodes = tree->GetChildList();
    }
    else
    {
      std::shared_ptr<RTE::Parameter::C_Node> single;
      Storage::DeserializeFrom(*node, single);
      nodes.push_back(single);
    }
    rte::printParameters(rte::out(), nodes);
  }
  catch (const RTE::Exception& e)
  {
    rte::err() << "rte params: " << e.message() << "\n";
    return 1;
  }
  return 0;
}

const rte::CommandRegistration registration{
    {QStringLiteral("params"), QStringLiteral("Print a parameter tree stored in a settings file"), &runParams}};

} // namespace
