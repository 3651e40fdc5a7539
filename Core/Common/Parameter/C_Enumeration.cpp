#include <Core/Common/Parameter/C_Enumeration.h>

#include "ParameterLog_p.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>

#include <algorithm>

namespace RTE::Parameter
{

const QString C_Enumeration::ENTRY_INVALID = QStringLiteral("__invalid__");
const QString C_Enumeration::EditorComboBox = QStringLiteral("ComboBox");
const QString C_Enumeration::EditorListView = QStringLiteral("ListView");

C_Enumeration::C_Enumeration() :
    C_Node(QString(), QString(), QString(), UndefinedAccesMode, Visible4Customer, QString(), true)
{
  detail::RegisterMetaType<std::shared_ptr<C_Enumeration>>("RTE::Parameter::Enumeration");
  detail::RegisterMetaType<EnumerationEntry>("RTE::Parameter::EnumerationEntry");
  detail::RegisterMetaType<EnumerationEntries>("RTE::Parameter::EnumerationEntries");
  SetCurrentEntryInvalid();
}

C_Enumeration::~C_Enumeration() = default;

bool C_Enumeration::operator==(const C_Node& other) const
{
  const auto* enumeration = dynamic_cast<const C_Enumeration*>(&other);
  if (!enumeration)
    return false;
  if (enumeration == this)
    return true;
  return C_Node::operator==(other) && m_currentEntry->GetName() == enumeration->m_currentEntry->GetName() &&
         std::equal(m_entries.begin(), m_entries.end(), enumeration->m_entries.begin(), enumeration->m_entries.end(),
                    [](const auto& a, const auto& b) { return *a == *b; });
}

std::string C_Enumeration::dump() const
{
  return C_Node::dump() + " Value: " + m_currentEntry->GetName().toLatin1().toStdString();
}

QString C_Enumeration::toString() const
{
  return m_currentEntry->GetName();
}

QString C_Enumeration::GetTypeName() const
{
  return GetStaticTypeName();
}

void C_Enumeration::CopyValues(std::shared_ptr<C_Node> source)
{
  const QString name = CastToEnumeration(std::move(source))->GetCurrentEntry()->GetName();
  if (Contains(name))
    SetCurrentEntry(name);
}

const std::list<std::shared_ptr<C_EnumerationEntry>>& C_Enumeration::GetEntries() const
{
  return m_entries;
}

void C_Enumeration::AddEntry(std::shared_ptr<C_EnumerationEntry> entry)
{
  if (!entry)
    RTE::Raise(RTE::InvalidArgumentError(tr("Cannot add an empty enumeration entry")));
  ThrowIfNotUnique(entry);
  m_entries.push_back(std::move(entry));
  if (m_entries.size() == 1)
    SetCurrentEntry(m_entries.begin());
  else
    NotifyValueChanged(); // listeners re-read the list although the selection stays
  NotifyEntriesChangedWithValue();
}

void C_Enumeration::Clear()
{
  SetCurrentEntryInvalid();
  m_entries.clear();
  NotifyEntriesChangedWithValue();
}

void C_Enumeration::Erase(const QString& name)
{
  auto entry =
      std::find_if(m_entries.begin(), m_entries.end(), [&name](const auto& e) { return e->GetName() == name; });
  if (entry == m_entries.end())
    RTE::Raise(RTE::Exception(tr("Cannot erase entry. Specified entry not available: ") + name));
  const bool wasCurrent = (*entry)->GetName() == m_currentEntry->GetName();
  const auto next = m_entries.erase(entry);
  if (!wasCurrent)
    return;
  if (next != m_entries.end())
    SetCurrentEntry(next);
  else if (!m_entries.empty())
    SetCurrentEntry(std::prev(m_entries.end()));
  else
    SetCurrentEntryInvalid();
  NotifyEntriesChangedWithValue();
}

std::shared_ptr<C_EnumerationEntry> C_Enumeration::GetCurrentEntry() const
{
  if (!m_currentEntry)
    RTE::Raise(RTE::Exception(tr("C_Enumeration::GetCurrentEntry: No Entry available!")));
  return m_currentEntry;
}

long long C_Enumeration::GetCurrentValue() const
{
  return GetCurrentEntry()->GetValue();
}

void C_Enumeration::SetCurrentEntry(const QString& name)
{
  if (m_currentEntry->GetName().compare(name, m_caseSensitivity) == 0)
    return;
  const auto entry = std::find_if(m_entries.begin(), m_entries.end(),
                                  [&](const auto& e) { return e->GetName().compare(name, m_caseSensitivity) == 0; });
  if (entry == m_entries.end())
    RTE::Raise(RTE::Exception(tr("The enumeration '%1' has no entry '%2'").arg(GetName(), name)));
  SetCurrentEntry(entry);
}

void C_Enumeration::SetCurrentEntry(long long value)
{
  if (m_currentEntry->GetValue() == value)
    return;
  const auto entry =
      std::find_if(m_entries.begin(), m_entries.end(), [value](const auto& e) { return e->GetValue() == value; });
  if (entry == m_entries.end())
    RTE::Raise(RTE::Exception(tr("The enumeration '%1' has no entry %2").arg(GetName(), QString::number(value))));
  SetCurrentEntry(entry);
}

void C_Enumeration::setCaseSensitivity(Qt::CaseSensitivity sensitivity)
{
  m_caseSensitivity = sensitivity;
}

bool C_Enumeration::Contains(const QString& name) const
{
  return std::any_of(m_entries.begin(), m_entries.end(),
                     [&](const auto& e) { return e->GetName().compare(name, m_caseSensitivity) == 0; });
}

void C_Enumeration::CopyEverything(std::shared_ptr<C_Node> source)
{
  const auto enumeration = CastToEnumeration(std::move(source));
  if (enumeration.get() == this)
    return;
  SetCurrentEntryInvalid();
  m_entries.clear();
  for (const auto& sourceEntry : enumeration->m_entries)
  {
    auto entry = Private::CreateEnumerationEntry(sourceEntry->GetName(), sourceEntry->GetLabel(),
                                                 sourceEntry->GetDescription(), sourceEntry->GetValue());
    entry->SetAccessMode(sourceEntry->GetAccessMode());
    entry->SetVisibilityLevel(sourceEntry->GetVisibilityLevel());
    m_entries.push_back(std::move(entry));
  }
  SetCurrentEntry(enumeration->GetCurrentEntry()->GetName());
}

QString C_Enumeration::GetStaticTypeName()
{
  return QStringLiteral("Enumeration");
}

void C_Enumeration::NotifyEntriesChangedWithValue()
{
  if (AreSignalsEnabled())
    emit EntriesChanged(m_entries);
}

void C_Enumeration::NotifyValueChangedWithValue()
{
  emit ValueChanged(m_entries);
}

void C_Enumeration::SetCurrentEntry(Entries::iterator entry)
{
  if (entry == m_entries.end())
    RTE::Raise(RTE::Exception(tr("Cannot set current entry. Specified entry not available.")));
  m_currentEntry = *entry;
  NotifyValueChanged();
  // Not gated by the signals flag: views must follow the selection even during silent updates.
  emit CurrentEntryChanged(m_currentEntry);
}

void C_Enumeration::SetCurrentEntryInvalid()
{
  m_currentEntry = Private::CreateEnumerationEntry(ENTRY_INVALID, ENTRY_INVALID, ENTRY_INVALID, 0);
}

void C_Enumeration::ThrowIfNotUnique(std::shared_ptr<C_EnumerationEntry> entry)
{
  for (const auto& existing : m_entries)
  {
    // Names are compared exactly here, whatever the lookup sensitivity.
    if (*existing == *entry || existing->GetValue() == entry->GetValue() || existing->GetName() == entry->GetName())
      RTE::Raise(RTE::Exception(
          tr("Enumeration entry not unique: %1 equals to %2").arg(entry->GetName(), existing->GetName())));
  }
}

std::shared_ptr<C_Enumeration> CreateEnumeration(const QString& name, const QString& label, const QString& description,
                                                 const QString& editor)
{
  auto enumeration = std::make_shared<C_Enumeration>();
  enumeration->SetName(name);
  enumeration->SetLabel(label);
  enumeration->SetDescription(description);
  enumeration->SetPreferredEditor(editor);
  return enumeration;
}

std::shared_ptr<C_Enumeration> CastToEnumeration(std::shared_ptr<C_Node> node)
{
  return detail::CastNode<C_Enumeration>(node, "Enumeration");
}

} // namespace RTE::Parameter
