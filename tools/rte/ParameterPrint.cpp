#include "ParameterPrint.h"

#include <Core/Common/Parameter/C_Tree.h>

#include <QStringList>

#include <sstream>

namespace rte
{

namespace
{

using namespace RTE::Parameter;

QString accessText(E_AccessMode mode)
{
  std::ostringstream text;
  text << mode;
  return QString::fromStdString(text.str());
}

QString number(long long value)
{
  return QString::number(value);
}

QString number(double value)
{
  return QString::number(value, 'g', 6);
}

QString quoted(QString text)
{
  text.replace(QLatin1Char('\\'), QLatin1String("\\\\"))
      .replace(QLatin1Char('"'), QLatin1String("\\\""))
      .replace(QLatin1Char('\n'), QLatin1String("\\n"));
  return QLatin1Char('"') + text + QLatin1Char('"');
}

template <typename List>
QString listValues(const List& list)
{
  QStringList values;
  for (size_t i = 0; i < list.GetSize(); ++i)
    values.append(number(list.GetValue(i)));
  return QStringLiteral("(") + values.join(QLatin1String(", ")) + QStringLiteral(")");
}

template <typename Range>
QString rangeText(const Range& range)
{
  return QStringLiteral("[%1 .. %2]").arg(number(range.minimum), number(range.maximum));
}

void printNode(QTextStream& out, const std::shared_ptr<C_Node>& node, const QString& name, int depth);

// Value and range columns of one node, and its sub-nodes (if any).
std::list<std::shared_ptr<C_Node>> describe(const std::shared_ptr<C_Node>& node, QStringList& columns)
{
  if (auto category = std::dynamic_pointer_cast<C_Category>(node))
    return category->GetChildList();
  if (auto value = std::dynamic_pointer_cast<C_Bool>(node))
    columns << QStringLiteral("= ") + (value->GetValue() ? QStringLiteral("true") : QStringLiteral("false"));
  else if (auto integer = std::dynamic_pointer_cast<C_Integer>(node))
    columns << QStringLiteral("= ") + number(integer->GetValue()) << rangeText(integer->GetRange());
  else if (auto real = std::dynamic_pointer_cast<C_Double>(node))
    columns << QStringLiteral("= ") + number(real->GetValue()) << rangeText(real->GetRange());
  else if (auto integers = std::dynamic_pointer_cast<C_IntegerList>(node))
    columns << QStringLiteral("= ") + listValues(*integers) << rangeText(integers->GetRange());
  else if (auto reals = std::dynamic_pointer_cast<C_DoubleList>(node))
    columns << QStringLiteral("= ") + listValues(*reals) << rangeText(reals->GetRange());
  else if (auto text = std::dynamic_pointer_cast<C_Text>(node))
    columns << QStringLiteral("= ") + quoted(text->GetValue());
  else if (auto texts = std::dynamic_pointer_cast<C_TextList>(node))
  {
    QStringList values;
    for (const QString& value : texts->GetValues())
      values.append(quoted(value));
    columns << QStringLiteral("= (") + values.join(QLatin1String(", ")) + QLatin1Char(')');
  }
  else if (auto enumeration = std::dynamic_pointer_cast<C_Enumeration>(node))
  {
    QStringList entries;
    for (const auto& entry : enumeration->GetEntries())
      entries.append(entry->GetName() + QLatin1Char('=') + number(entry->GetValue()));
    columns << QStringLiteral("= ") + enumeration->GetCurrentEntry()->GetName()
            << QStringLiteral("{") + entries.join(QLatin1String(", ")) + QLatin1Char('}');
  }
  else if (auto entry = std::dynamic_pointer_cast<C_EnumerationEntry>(node))
    columns << QStringLiteral("= ") + number(entry->GetValue());
  else if (auto list = std::dynamic_pointer_cast<C_List>(node))
  {
    columns << QStringLiteral("length %1").arg(list->GetLength());
    std::list<std::shared_ptr<C_Node>> items;
    for (unsigned int i = 0; i < list->GetLength(); ++i)
      items.push_back(list->GetAt(i));
    return items;
  }
  return {};
}

void printNode(QTextStream& out, const std::shared_ptr<C_Node>& node, const QString& name, int depth)
{
  QStringList columns{QString(depth * 2, QLatin1Char(' ')) + name, node->GetTypeName()};
  const auto children = describe(node, columns);
  columns << accessText(node->GetAccessMode());
  out << columns.join(QLatin1String("  ")) << "\n";
  if (std::dynamic_pointer_cast<C_List>(node))
  {
    int index = 0;
    for (const auto& item : children)
      printNode(out, item, QStringLiteral("[%1] %2").arg(index++).arg(item->GetName()), depth + 1);
  }
  else
    printParameters(out, children, depth + 1);
}

} // namespace

void printParameters(QTextStream& out, const std::list<std::shared_ptr<C_Node>>& nodes, int depth)
{
  for (const auto& node : nodes)
  {
    if (node)
      printNode(out, node, node->GetName(), depth);
  }
}

} // namespace rte
