#include <Core/Common/Parameter/C_EnumerationEntry.h>

#include "ParameterLog_p.h"

#include <sstream>

namespace RTE::Parameter
{

namespace
{

void registerEntryMetaTypes()
{
  detail::RegisterMetaType<EnumerationEntry>("RTE::Parameter::EnumerationEntry");
  detail::RegisterMetaType<EnumerationEntries>("RTE::Parameter::EnumerationEntries");
}

} // namespace

C_EnumerationEntry::C_EnumerationEntry(const QString& name, const QString& label, const QString& description,
                                       long long value) :
    C_Node(QString(), QString(), QString(), UndefinedAccesMode, Visible4Customer, QString(), true),
    m_value(value)
{
  registerEntryMetaTypes();
  SetAccessMode(ReadWrite);
  SetName(name);
  SetDescription(description);
  SetLabel(label);
  SetAccessMode(ReadOnly);
}

C_EnumerationEntry::~C_EnumerationEntry() = default;

bool C_EnumerationEntry::operator==(const C_Node& other) const
{
  const auto* entry = dynamic_cast<const C_EnumerationEntry*>(&other);
  return entry && C_Node::operator==(other) && entry->m_value == m_value;
}

std::string C_EnumerationEntry::dump() const
{
  std::ostringstream text;
  text << C_Node::dump() << "EnumEntry: " << m_value;
  return text.str();
}

QString C_EnumerationEntry::GetTypeName() const
{
  return GetStaticTypeName();
}

void C_EnumerationEntry::CopyValues(std::shared_ptr<C_Node>) {}

long long C_EnumerationEntry::GetValue() const
{
  return m_value;
}

void C_EnumerationEntry::SetValue(long long value)
{
  if (GetAccessMode() == ReadOnly)
    RTE::Raise(RTE::Exception(tr("C_EnumerationEntry::SetValue: Access denied.")));
  if (value == m_value)
    return;
  m_value = value;
  NotifyValueChanged();
}

QString C_EnumerationEntry::GetStaticTypeName()
{
  return QStringLiteral("EnumerationEntry");
}

void C_EnumerationEntry::NotifyValueChangedWithValue()
{
  emit ValueChanged(static_cast<int64_t>(m_value));
}

std::shared_ptr<C_EnumerationEntry> CreateEnumerationEntry(const QString& name)
{
  return Private::CreateEnumerationEntry(name, QString(), QString(), 0);
}

std::shared_ptr<C_EnumerationEntry> CastToEnumerationEntry(std::shared_ptr<C_Node> node)
{
  return detail::CastNode<C_EnumerationEntry>(node, "EnumerationEntry");
}

namespace Private
{

std::shared_ptr<C_EnumerationEntry> CreateEnumerationEntry(const QString& name, const QString& label,
                                                           const QString& description, long long value)
{
  return std::make_shared<C_EnumerationEntry>(name, label, description, value);
}

} // namespace Private

} // namespace RTE::Parameter
