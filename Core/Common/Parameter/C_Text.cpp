#include <Core/Common/Parameter/C_Text.h>

#include "ParameterLog_p.h"

namespace RTE::Parameter
{

const QString C_Text::EditorLineEdit = QStringLiteral("LineEdit");
const QString C_Text::EditorFileEdit = QStringLiteral("FileEdit");
const QString C_Text::EditorDirectoryEdit = QStringLiteral("DirectoryEdit");

C_Text::C_Text() : C_Node(QString(), QString(), QString(), UndefinedAccesMode, Visible4Customer, QString(), true)
{
  detail::RegisterMetaType<std::shared_ptr<C_Text>>("RTE::Parameter::Text");
}

C_Text::~C_Text() = default;

bool C_Text::operator==(const C_Node& other) const
{
  const auto* node = dynamic_cast<const C_Text*>(&other);
  return node && C_Node::operator==(other) && node->m_value == m_value;
}

std::string C_Text::dump() const
{
  return C_Node::dump() + " Value: " + m_value.toLatin1().toStdString();
}

QString C_Text::toString() const
{
  return m_value;
}

QString C_Text::GetTypeName() const
{
  return GetStaticTypeName();
}

void C_Text::CopyValues(std::shared_ptr<C_Node> source)
{
  const auto* text = dynamic_cast<const C_Text*>(source.get());
  if (!text)
    detail::RaiseCannotCopy(source.get(), *this);
  SetValue(text->GetValue());
}

bool C_Text::operator!=(const C_Node& other) const
{
  return !(*this == other);
}

QString C_Text::GetValue() const
{
  return m_value;
}

void C_Text::SetValue(const QString& value)
{
  if (value == m_value)
    return;
  m_value = value;
  NotifyValueChanged();
}

QVariant C_Text::toQVariant() const
{
  return QVariant(m_value);
}

QString C_Text::GetStaticTypeName()
{
  return QStringLiteral("Text");
}

void C_Text::NotifyValueChangedWithValue()
{
  emit ValueChanged(m_value);
}

std::shared_ptr<C_Text> CreateText(const QString& name, const QString& label, const QString& description,
                                   E_AccessMode accessMode, const QString& value, const QString& editor)
{
  auto node = std::make_shared<C_Text>();
  node->SetName(name);
  node->SetLabel(label);
  node->SetDescription(description);
  node->SetValue(value);
  node->SetAccessMode(accessMode);
  node->SetPreferredEditor(editor);
  return node;
}

std::shared_ptr<C_Text> CastToText(std::shared_ptr<C_Node> node)
{
  return detail::CastNode<C_Text>(node, "Text");
}

} // namespace RTE::Parameter
