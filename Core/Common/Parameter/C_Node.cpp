#include <Core/Common/Parameter/C_Node.h>

#include "ParameterLog_p.h"

#include <sstream>

Q_LOGGING_CATEGORY(lcParameter, "Core.Parameter", QtInfoMsg)

namespace RTE::Parameter
{

std::ostream& operator<<(std::ostream& stream, E_AccessMode mode)
{
  switch (mode)
  {
  case ReadOnly:
    return stream << "ReadOnly";
  case ReadWrite:
    return stream << "ReadWrite";
  case UndefinedAccesMode:
    return stream << "UndefinedAccesMode";
  }
  return stream << "E_AccessMode: I am confused!";
}

std::ostream& operator<<(std::ostream& stream, E_VisibilityLevel level)
{
  switch (level)
  {
  case Visible4Customer:
    return stream << "Visible4Customer";
  case Visible4Service:
    return stream << "Visible4Service";
  case Visible4Developer:
    return stream << "Visible4Developer";
  }
  return stream << "E_VisibilityLevel: I am confused!";
}

namespace
{

void registerNodeMetaTypes()
{
  detail::RegisterMetaType<std::shared_ptr<C_Node>>("RTE::Parameter::Node");
  detail::RegisterMetaType<E_AccessMode>("RTE::Parameter::E_AccessMode");
  detail::RegisterMetaType<E_VisibilityLevel>("RTE::Parameter::E_VisibilityLevel");
}

} // namespace

namespace detail
{

void RaiseCannotCopy(const C_Node* source, const C_Node& target, const std::source_location& where)
{
  const QString sourceDump = source ? QString::fromLatin1(source->dump()) : QString();
  RTE::Raise(RTE::Exception(QCoreApplication::translate("RTE::Parameter", "CopyValues: Cannot copy '%1' to '%2'")
                                .arg(sourceDump, QString::fromLatin1(target.dump()))),
             where);
}

} // namespace detail

C_Node::C_Node(const QString& label, const QString& name, const QString& description, E_AccessMode accessMode,
               E_VisibilityLevel visibilityLevel, const QString& preferredEditor, bool signalsEnabled) :
    m_label(label),
    m_name(name),
    m_description(description),
    m_accessMode(accessMode),
    m_visibilityLevel(visibilityLevel),
    m_preferredEditor(preferredEditor),
    m_signalsEnabled(signalsEnabled)
{
  registerNodeMetaTypes();
}

C_Node::~C_Node() = default;

bool C_Node::operator==(const C_Node& other) const
{
  if (&other == this)
    return true;
  return m_label == other.m_label && m_name == other.m_name && m_description == other.m_description &&
         m_accessMode == other.m_accessMode && m_visibilityLevel == other.m_visibilityLevel;
}

const QString& C_Node::GetLabel() const
{
  return m_label;
}

const QString& C_Node::GetName() const
{
  return m_name;
}

const QString& C_Node::GetDescription() const
{
  return m_description;
}

E_AccessMode C_Node::GetAccessMode() const
{
  return m_accessMode;
}

E_VisibilityLevel C_Node::GetVisibilityLevel() const
{
  return m_visibilityLevel;
}

QString C_Node::GetPreferredEditor() const
{
  return m_preferredEditor;
}

void C_Node::SetPreferredEditor(const QString& editor)
{
  m_preferredEditor = editor;
}

std::string C_Node::dump() const
{
  std::ostringstream line;
  line << "Name: " << m_name.toLatin1().toStdString() << " Label: " << m_label.toLatin1().toStdString()
       << " Tooltip: " << m_description.toLatin1().toStdString() << " Access: " << m_accessMode
       << " Visibility: " << m_visibilityLevel;
  return line.str();
}

QString C_Node::toString() const
{
  return QString();
}

void C_Node::SetLabel(QString label)
{
  if (label == m_label)
    return;
  m_label = std::move(label);
  NotifyValueChanged();
}

void C_Node::SetName(QString name)
{
  if (name == m_name)
    return;
  m_name = std::move(name);
  NotifyValueChanged();
}

void C_Node::SetDescription(QString description)
{
  if (description == m_description)
    return;
  m_description = std::move(description);
  NotifyValueChanged();
}

void C_Node::SetAccessMode(E_AccessMode mode)
{
  if (mode == m_accessMode)
    return;
  m_accessMode = mode;
  NotifyValueChanged();
  NotifyAccessModeChanged();
}

void C_Node::SetVisibilityLevel(E_VisibilityLevel level)
{
  if (level == m_visibilityLevel)
    return;
  m_visibilityLevel = level;
  NotifyValueChanged();
  NotifyVisibilityLevelChanged();
}

QString C_Node::GetTypeName() const
{
  return GetStaticTypeName();
}

void C_Node::EnableSignals(bool enable)
{
  m_signalsEnabled = enable;
}

bool C_Node::AreSignalsEnabled() const
{
  return m_signalsEnabled;
}

QString C_Node::GetStaticTypeName()
{
  return QStringLiteral("Node");
}

void C_Node::NotifyValueChanged()
{
  if (!AreSignalsEnabled())
    return;
  // Untyped listeners first, then the typed signal of the concrete class.
  emit ValueChanged();
  NotifyValueChangedWithValue();
}

void C_Node::NotifyAccessModeChanged()
{
  if (AreSignalsEnabled())
    emit AccessModeChanged(m_accessMode);
}

void C_Node::NotifyVisibilityLevelChanged()
{
  if (AreSignalsEnabled())
    emit VisibilityLevelChanged(m_visibilityLevel);
}

} // namespace RTE::Parameter
