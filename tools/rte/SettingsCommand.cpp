// `rte settings`: shows, reads and changes settings files.
//
//   rte settings camera.xml                         the tree: names, classes, versions, values
//   rte settings camera.xml --get center/X          one value (items as name[3])
//   rte settings camera.xml --get gain --as int32   read as another type: a report
//   rte settings camera.xml --set gain=1.5 --type double
#include "Command.h"

#include <Core/Common/Exceptions/Exception.h>
#include <Core/Common/Storage/SettingsDocument.h>

#include <QCommandLineParser>
#include <QFileInfo>
#include <QLoggingCategory>
#include <QRegularExpression>

#include <limits>
#include <optional>

namespace
{

using Storage::Settings;

const QStringList& typeNames()
{
  static const QStringList names{QStringLiteral("string"), QStringLiteral("int8"),     QStringLiteral("char"),
                                 QStringLiteral("uint8"),  QStringLiteral("int16"),    QStringLiteral("uint16"),
                                 QStringLiteral("int32"),  QStringLiteral("uint32_t"), QStringLiteral("int64"),
                                 QStringLiteral("uint64"), QStringLiteral("float"),    QStringLiteral("double"),
                                 QStringLiteral("bool")};
  return names;
}

// One step of a path: "name" or "name[index]".
struct Step
{
  QString name;
  std::optional<unsigned long long> index;
};

std::optional<QList<Step>> parsePath(const QString& path)
{
  static const QRegularExpression pattern(QStringLiteral("^([^\\[\\]/]+)(?:\\[(\\d+)\\])?$"));
  QList<Step> steps;
  for (const QString& part : path.split(QLatin1Char('/'), Qt::SkipEmptyParts))
  {
    const QRegularExpressionMatch match = pattern.match(part);
    if (!match.hasMatch())
      return std::nullopt;
    Step step{match.captured(1), std::nullopt};
    if (match.hasCaptured(2))
      step.index = match.captured(2).toULongLong();
    steps.append(step);
  }
  if (steps.isEmpty())
    return std::nullopt;
  return steps;
}

// The value of child name (item index) read as type, as text; nullopt for an unknown type.
std::optional<QString> readValue(const Settings& parent, const Step& step, const QString& type)
{
  const auto read = [&]<typename T>(T fallback) -> T
  {
    return step.index ? parent.GetCollectionItem<T>(step.name, *step.index, fallback)
                      : parent.Get<T>(step.name, fallback);
  };
  if (type == QLatin1String("string"))
    return read(QString());
  if (type == QLatin1String("int8"))
    return QString::number(read(static_cast<signed char>(0)));
  if (type == QLatin1String("char"))
    return QString::number(static_cast<unsigned char>(read(char(0))));
  if (type == QLatin1String("uint8"))
    return QString::number(read(static_cast<unsigned char>(0)));
  if (type == QLatin1String("int16"))
    return QString::number(read(short(0)));
  if (type == QLatin1String("uint16"))
    return QString::number(read(static_cast<unsigned short>(0)));
  if (type == QLatin1String("int32"))
    return QString::number(read(0));
  if (type == QLatin1String("uint32_t"))
    return QString::number(read(0u));
  if (type == QLatin1String("int64"))
    return QString::number(read(0LL));
  if (type == QLatin1String("uint64"))
    return QString::number(read(0ULL));
  if (type == QLatin1String("float"))
    return QString::number(static_cast<double>(read(0.0f)), 'g', 10);
  if (type == QLatin1String("double"))
    return QString::number(read(0.0), 'g', 15);
  if (type == QLatin1String("bool"))
    return read(false) ? QStringLiteral("true") : QStringLiteral("false");
  return std::nullopt;
}

// Stores text under name as type; false when the text is no value of that type.
bool setValue(Settings& parent, const QString& name, const QString& type, const QString& text)
{
  bool ok = true;
  const auto integer = [&]<typename T>(T)
  {
    if constexpr (std::is_signed_v<T>)
    {
      const qlonglong v = text.toLongLong(&ok);
      ok = ok && v >= std::numeric_limits<T>::min() && v <= std::numeric_limits<T>::max();
      if (ok)
        parent.Set(name, static_cast<T>(v));
    }
    else
    {
      const qulonglong v = text.toULongLong(&ok);
      ok = ok && v <= std::numeric_limits<T>::max();
      if (ok)
        parent.Set(name, static_cast<T>(v));
    }
  };
  if (type == QLatin1String("string"))
    parent.Set(name, text);
  else if (type == QLatin1String("int8"))
    integer(static_cast<signed char>(0));
  else if (type == QLatin1String("char"))
  {
    const uint v = text.toUInt(&ok);
    ok = ok && v <= 255;
    if (ok)
      parent.Set(name, static_cast<char>(static_cast<unsigned char>(v)));
  }
  else if (type == QLatin1String("uint8"))
    integer(static_cast<unsigned char>(0));
  else if (type == QLatin1String("int16"))
    integer(short(0));
  else if (type == QLatin1String("uint16"))
    integer(static_cast<unsigned short>(0));
  else if (type == QLatin1String("int32"))
    integer(0);
  else if (type == QLatin1String("uint32_t"))
    integer(0u);
  else if (type == QLatin1String("int64"))
    integer(0LL);
  else if (type == QLatin1String("uint64"))
    integer(0ULL);
  else if (type == QLatin1String("float"))
  {
    const float v = text.toFloat(&ok);
    if (ok)
      parent.Set(name, v);
  }
  else if (type == QLatin1String("double"))
  {
    const double v = text.toDouble(&ok);
    if (ok)
      parent.Set(name, v);
  }
  else if (type == QLatin1String("bool"))
  {
    ok = text == QLatin1String("true") || text == QLatin1String("false");
    if (ok)
      parent.Set(name, text == QLatin1String("true"));
  }
  else
    ok = false;
  return ok;
}

QString oneLine(QString text)
{
  return text.replace(QLatin1Char('\\'), QStringLiteral("\\\\"))
      .replace(QLatin1Char('\n'), QStringLiteral("\\n"))
      .replace(QLatin1Char('\r'), QStringLiteral("\\r"))
      .replace(QLatin1Char('\t'), QStringLiteral("\\t"));
}

QString nodeLabel(const Settings& node)
{
  QString label;
  if (!node.GetClass().isEmpty())
    label += QStringLiteral("  class=\"%1\"").arg(node.GetClass());
  if (node.GetVersion() != 0)
    label += QStringLiteral("  version=%1").arg(node.GetVersion());
  return label;
}

void printChild(QTextStream& out, const Settings& parent, const Step& step, const Settings& child, int depth);

void printChildren(QTextStream& out, const Settings& node, int depth)
{
  for (const QString& name : node.GetChildrenNames())
  {
    if (node.IsCollection(name))
    {
      const unsigned long long count = node.Count(name);
      for (unsigned long long index = 0; index < count; ++index)
      {
        try
        {
          printChild(out, node, Step{name, index}, *node.GetCollectionNode(name, index), depth);
        }
        catch (const RTE::Exception&)
        {
          // a gap in the indexes, or a plain element among the items
        }
      }
      if (!node.GetClass(name).isEmpty())
        printChild(out, node, Step{name, std::nullopt}, *node.GetNode(name), depth);
      continue;
    }
    try
    {
      printChild(out, node, Step{name, std::nullopt}, *node.GetNode(name), depth);
    }
    catch (const RTE::Exception&)
    {
      out << QString(depth * 2, QLatin1Char(' ')) << name << "  (items without index 0)\n";
    }
  }
}

void printChild(QTextStream& out, const Settings& parent, const Step& step, const Settings& child, int depth)
{
  const QString indent(depth * 2, QLatin1Char(' '));
  const QString label = step.index ? QStringLiteral("%1[%2]").arg(step.name).arg(*step.index) : step.name;
  const QString type = child.GetClass();
  if (typeNames().contains(type) && child.GetChildrenNames().isEmpty())
  {
    out << indent << label << " = " << oneLine(readValue(parent, step, type).value_or(QString())) << "  (" << type
        << ")\n";
    return;
  }
  out << indent << label << nodeLabel(child) << "\n";
  printChildren(out, child, depth + 1);
}

// A handle on the document itself, for paths of one step.
std::shared_ptr<Settings> handle(Settings& document)
{
  return std::shared_ptr<Settings>(&document, [](Settings*) {});
}

// The node that holds the last step. Throws as Settings::GetNode when a step is missing.
std::shared_ptr<const Settings> findParent(Settings& document, const QList<Step>& steps)
{
  std::shared_ptr<const Settings> current = handle(document);
  for (qsizetype i = 0; i + 1 < steps.size(); ++i)
  {
    const Step& step = steps[i];
    current = step.index ? current->GetCollectionNode(step.name, *step.index) : current->GetNode(step.name);
  }
  return current;
}

// The node that holds the last step, creating missing plain nodes; null when the path
// goes through a collection item (those belong to the programs that write them).
std::shared_ptr<Settings> makeParent(Settings& document, const QList<Step>& steps)
{
  std::shared_ptr<Settings> current = handle(document);
  for (qsizetype i = 0; i + 1 < steps.size(); ++i)
  {
    const Step& step = steps[i];
    if (step.index)
      return nullptr;
    current = current->Contains(step.name) ? current->GetNode(step.name) : current->CreateNode(step.name);
  }
  return current;
}

int runSettings(const QStringList& arguments)
{
  QCommandLineParser parser;
  parser.setApplicationDescription(QStringLiteral(
      "Shows a settings file as a tree of names, classes, versions and values, reads one value or sets one.\n"
      "Paths join names with '/'; a collection item is name[index]. Report texts go to the standard error;\n"
      "the exit code is 3 when reading found anything amiss."));
  parser.addHelpOption();
  parser.addPositionalArgument(QStringLiteral("file"), QStringLiteral("The settings file."));
  const QCommandLineOption getOption(QStringLiteral("get"), QStringLiteral("Print the value at <path>."),
                                     QStringLiteral("path"));
  const QCommandLineOption asOption(QStringLiteral("as"),
                                    QStringLiteral("With --get: read the value as <type> (default: its own)."),
                                    QStringLiteral("type"));
  const QCommandLineOption setOption(QStringLiteral("set"), QStringLiteral("Set <path>=<value> and save the file."),
                                     QStringLiteral("path=value"));
  const QCommandLineOption typeOption(
      QStringLiteral("type"), QStringLiteral("With --set: the value type, one of %1.").arg(typeNames().join(", ")),
      QStringLiteral("type"), QStringLiteral("string"));
  parser.addOptions({getOption, asOption, setOption, typeOption});
  if (const std::optional<int> stop = rte::parseCommandLine(parser, arguments))
    return *stop;
  if (parser.positionalArguments().size() != 1 || (parser.isSet(getOption) && parser.isSet(setOption)))
  {
    rte::err() << "rte settings: give one file, and at most one of --get and --set.\n";
    return 2;
  }

  // Reports are info messages of the storage's category: show them.
  QLoggingCategory::setFilterRules(QStringLiteral("Core.Serialization.info=true"));
  const QString path = parser.positionalArguments().first();
  const bool exists = QFileInfo::exists(path);
  Storage::SettingsDocument document(path, Storage::AutoSync::Off);
  if (!exists && !parser.isSet(setOption))
  {
    rte::err() << "rte settings: " << path << " does not exist.\n";
    return 1;
  }
  if (exists && !document.Load()) // never overwrite what could not be read
  {
    rte::err() << "rte settings: " << path << " is no readable settings file.\n";
    return 1;
  }
  QTextStream& out = rte::out();
  const auto finish = [&out, &document]
  {
    out << "Reports: " << (document.HasReports() ? "yes (see above)" : "none") << "\n";
    return document.HasReports() ? 3 : 0;
  };
  try
  {
    if (parser.isSet(setOption))
    {
      const QString assignment = parser.value(setOption);
      const qsizetype equals = assignment.indexOf(QLatin1Char('='));
      const auto steps = parsePath(assignment.left(equals));
      const QString type = parser.value(typeOption);
      if (equals < 0 || !steps || steps->last().index)
      {
        rte::err() << "rte settings: --set needs <path>=<value> with plain names.\n";
        return 2;
      }
      const std::shared_ptr<Settings> parent = makeParent(document, *steps);
      if (!parent)
      {
        rte::err() << "rte settings: cannot set values inside collection items.\n";
        return 2;
      }
      Settings& target = *parent;
      if (target.IsCollection(steps->last().name))
      {
        rte::err() << "rte settings: " << steps->last().name << " is a collection.\n";
        return 1;
      }
      if (!setValue(target, steps->last().name, type, assignment.mid(equals + 1)))
      {
        rte::err() << "rte settings: '" << assignment.mid(equals + 1) << "' is no " << type << " value.\n";
        return 2;
      }
      if (!document.Save())
      {
        rte::err() << "rte settings: " << path << " could not be written; it is unchanged.\n";
        return 1;
      }
      out << "Set " << assignment.left(equals) << " (" << type << ") in " << path << "\n";
      return 0;
    }
    if (parser.isSet(getOption))
    {
      const auto steps = parsePath(parser.value(getOption));
      if (!steps)
      {
        rte::err() << "rte settings: invalid path '" << parser.value(getOption) << "'.\n";
        return 2;
      }
      const std::shared_ptr<const Settings> parent = findParent(document, *steps);
      const Step& last = steps->last();
      std::shared_ptr<const Settings> node;
      try
      {
        node = last.index ? parent->GetCollectionNode(last.name, *last.index) : parent->GetNode(last.name);
      }
      catch (const RTE::Exception&)
      {
        rte::err() << "rte settings: nothing at " << parser.value(getOption) << "\n";
        return 1;
      }
      const QString type = parser.isSet(asOption) ? parser.value(asOption) : node->GetClass();
      if (!parser.isSet(asOption) && (!typeNames().contains(type) || !node->GetChildrenNames().isEmpty()))
      {
        printChild(out, *parent, last, *node, 0); // a node: its tree
        return finish();
      }
      const std::optional<QString> value = readValue(*parent, last, type);
      if (!value)
      {
        rte::err() << "rte settings: '" << type << "' is no value type; the node is:\n" << node->ToString() << "\n";
        return 1;
      }
      out << *value << "\n";
    }
    else
    {
      out << "root" << nodeLabel(document) << "\n";
      printChildren(out, document, 1);
    }
  }
  catch (const RTE::Exception& e)
  {
    rte::err() << "rte settings: " << e.message() << "\n";
    return 1;
  }
  return finish();
}

const rte::CommandRegistration registration{
    {QStringLiteral("settings"), QStringLiteral("Show, read and set values of settings files"), &runSettings}};

} // namespace
