#include <Core/Common/Parameter/C_TextList.h>

#include "ParameterLog_p.h"

#include <QStringList>

namespace RTE::Parameter
{

namespace
{

QString joined(const std::vector<QString>& values)
{
  return QStringList(values.begin(), values.end()).join(QLatin1Char(' '));
}

} // namespace

const QString C_TextList::EditorLineEdit = QStringLiteral("LineEdit");
const QString C_TextList::EditorTreeView = QStringLiteral("TreeView");
const QString C_TextList::EditorListView = QStringLiteral("ListView");

C_TextList::C_TextList() :
    C_Node(QString(), QString(), QString(), UndefinedAccesMode, Visible4Customer, QString(), true)
{
  detail::RegisterMetaType<std::shared_ptr<C_TextList>>("RTE::Parameter::TextList");
}

C_TextList::~C_TextList() = default;

bool C_TextList::operator==(const C_Node& other) const
{
  const auto* list = dynamic_cast<const C_TextList*>(&other);
  return list && C_Node::operator==(other) && list->m_values == m_values;
}

std::string C_TextList::dump() const
{
  std::string text = C_Node::dump() + " Value:";
  for (const QString& value : m_values)
    text += ' ' + value.toLatin1().toStdString();
  return text;
}

QString C_TextList::toString() const
{
  return joined(m_values);
}

QString C_TextList::GetTypeName() const
{
  return GetStaticTypeName();
}

void C_TextList::CopyValues(std::shared_ptr<C_Node> source)
{
  const auto* list = dynamic_cast<const C_TextList*>(source.get());
  if (!list)
    detail::RaiseCannotCopy(source.get(), *this);
  SetValues(list->m_values);
}

bool C_TextList::operator!=(const C_Node& other) const
{
  return !(*this == other);
}

size_t C_TextList::GetSize() const
{
  return m_values.size();
}

QString C_TextList::GetValue(size_t index) const
{
  return index < m_values.size() ? m_values[index] : QString();
}

const std::vector<QString>& C_TextList::GetValues() const
{
  return m_values;
}

void C_TextList::SetSize(size_t size, const QString& fill)
{
  m_values.resize(size, fill);
}

void C_TextList::SetValue(size_t index, const QString& text)
{
  if (index >= m_values.size())
  {
    qCWarning(lcParameter) << "SetValue: index" << index << "beyond the size" << m_values.size() << "of" << GetName();
    return;
  }
  if (m_values[index] == text)
    return;
  m_values[index] = text;
  NotifyValueChanged();
}

void C_TextList::SetValue(const QString& text, size_t index)
{
  SetValue(index, text);
}

void C_TextList::SetValues(const std::vector<QString>& values)
{
  if (values == m_values)
    return;
  m_values = values;
  NotifyValueChanged();
}

std::string C_TextList::ValuesToString() const
{
  return joined(m_values).toLatin1().toStdString();
}

void C_TextList::ValuesToString(const std::string& text)
{
  m_values.clear();
  const QStringList parts =
      QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())).split(QLatin1Char(' '), Qt::KeepEmptyParts);
  m_values.assign(parts.begin(), parts.end());
}

QString C_TextList::GetStaticTypeName()
{
  return QStringLiteral("TextList");
}

void C_TextList::NotifyValueChangedWithValue()
{
  emit ValueChanged(m_values);
}

std::shared_ptr<C_TextList> CreateTextList(const QString& name, size_t size, const QString& label,
                                           const QString& description, E_AccessMode accessMode, const QString& fill,
                                           const QString& editor)
{
  auto node = std::make_shared<C_TextList>();
  node->SetName(name);
  node->SetLabel(label);
  node->SetDescription(description);
  node->SetSize(size, fill);
  node->SetAccessMode(accessMode);
  node->SetPreferredEditor(editor);
  return node;
}

std::shared_ptr<C_TextList> CastToTextList(std::shared_ptr<C_Node> node)
{
  return detail::CastNode<C_TextList>(node, "TextList");
}

} // namespace RTE::Parameter
