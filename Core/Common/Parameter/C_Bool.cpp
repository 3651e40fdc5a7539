#include <Core/Common/Parameter/C_Bool.h>

#include "ParameterLog_p.h"

namespace RTE::Parameter
{

const QString C_Bool::EditorCheckBox = QStringLiteral("CheckBox");
const QString C_Bool::EditorCheckButton = QStringLiteral("CheckButton");
const QString C_Bool::EditorComboBox = QStringLiteral("ComboBox");

C_Bool::C_Bool() : C_Node(QString(), QString(), QString(), UndefinedAccesMode, Visible4Customer, QString(), true)
{
  detail::RegisterMetaType<std::shared_ptr<C_Bool>>("RTE::Parameter::Bool");
}

C_Bool::~C_Bool() = default;

bool C_Bool::operator==(const C_Node& other) const
{
  const auto* node = dynamic_cast<const C_Bool*>(&other);
  return node && C_Node::operator==(other) && node->m_value == m_value;
}

std::string C_Bool::dump() const
{
  return C_Node::dump() + " Value: " + (m_value ? "true" : "false");
}

QString C_Bool::toString() const
{
  return m_value ? tr("true") : tr("false");
}

QString C_Bool::GetTypeName() const
{
  return GetStaticTypeName();
}

void C_Bool::CopyValues(std::shared_ptr<C_Node> source)
{
  SetValue(CastToBool(std::move(source))->GetValue());
}

bool C_Bool::GetValue() const
{
  return m_value;
}

void C_Bool::SetValue(bool value)
{
  if (value == m_value)
    return;
  m_value = value;
  NotifyValueChanged();
}

QString C_Bool::GetStaticTypeName()
{
  return QStringLiteral("Bool");
}

void C_Bool::NotifyValueChangedWithValue()
{
  emit ValueChanged(m_value);
}

std::shared_ptr<C_Bool> CreateBool(const QString& name, const QString& label, const QString& description,
                                   E_AccessMode accessMode, bool value, const QString& editor)
{
  auto node = std::make_shared<C_Bool>();
  node->SetName(name);
  node->SetLabel(label);
  node->SetDescription(description);
  node->SetAccessMode(accessMode);
  node->SetValue(value);
  node->SetPreferredEditor(editor);
  return node;
}

std::shared_ptr<C_Bool> CreateBool(const QString& name, bool value)
{
  return CreateBool(name, QString(), QString(), ReadWrite, value, C_Bool::EditorCheckBox);
}

std::shared_ptr<C_Bool> CastToBool(std::shared_ptr<C_Node> node)
{
  return detail::CastNode<C_Bool>(node, "Bool");
}

std::ostream& operator<<(std::ostream& stream, const C_Bool& node)
{
  return stream << node.dump();
}

} // namespace RTE::Parameter
