#include <Core/Common/Parameter/C_List.h>

#include "ParameterLog_p.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>

#include <algorithm>

namespace RTE::Parameter
{

const QString C_List::EditorLineEdit = QStringLiteral("LineEdit");
const QString C_List::EditorTreeView = QStringLiteral("TreeView");
const QString C_List::EditorListView = QStringLiteral("ListView");

C_List::C_List(EntryMaker maker) :
    C_Node(QString(), QString(), QString(), UndefinedAccesMode, Visible4Customer, QString(), true),
    m_maker(std::move(maker))
{
}

C_List::~C_List() = default;

bool C_List::operator==(const C_Node& other) const
{
  const auto* list = dynamic_cast<const C_List*>(&other);
  if (!list)
    return false;
  if (list == this)
    return true;
  return C_Node::operator==(other) &&
         std::equal(m_entries.begin(), m_entries.end(), list->m_entries.begin(), list->m_entries.end(),
                    [](const auto& a, const auto& b) { return a == b || (a && b && *a == *b); });
}

std::string C_List::dump() const
{
  std::string text = C_Node::dump() + " [";
  for (size_t i = 0; i < m_entries.size(); ++i)
  {
    if (i)
      text += ' ';
    text += m_entries[i]->dump();
  }
  return text + "]";
}

QString C_List::GetTypeName() const
{
  return GetStaticTypeName();
}

void C_List::CopyValues(std::shared_ptr<C_Node> source)
{
  if (!m_maker)
    RTE::Raise(RTE::VerificationFailed(tr("Allocator for list entry is NULL.")));
  if (source.get() == this)
    return;
  const auto list = CastToList(std::move(source));
  m_entries.clear();
  for (const auto& sourceEntry : list->m_entries)
  {
    auto entry = m_maker();
    Append(entry);
    entry->CopyValues(sourceEntry);
  }
}

void C_List::EnableSignals(bool enable)
{
  C_Node::EnableSignals(enable);
  for (const auto& entry : m_entries)
    entry->EnableSignals(enable);
}

bool C_List::AreSignalsEnabled() const
{
  return C_Node::AreSignalsEnabled() ||
         std::any_of(m_entries.begin(), m_entries.end(), [](const auto& e) { return e->AreSignalsEnabled(); });
}

bool C_List::operator!=(const C_Node& other) const
{
  return !(*this == other);
}

void C_List::NotifyEvent()
{
  NotifyValueChanged();
  for (const auto& entry : m_entries)
    entry->NotifyValueChanged();
}

void C_List::Append(std::shared_ptr<C_Node> entry)
{
  if (!entry)
    RTE::Raise(RTE::InvalidArgumentError(tr("Cannot append an empty entry")));
  m_entries.push_back(std::move(entry));
  NotifyValueChanged();
}

void C_List::Clear()
{
  if (m_entries.empty())
    return;
  m_entries.clear();
  NotifyValueChanged();
}

void C_List::EraseAt(unsigned int index)
{
  if (index >= m_entries.size())
    RTE::Raise(RTE::VerificationFailed(tr("Invalid index")));
  m_entries.erase(m_entries.begin() + index);
  NotifyValueChanged();
}

std::shared_ptr<C_Node> C_List::GetAt(unsigned int index) const
{
  if (index >= m_entries.size())
    RTE::Raise(RTE::Exception(tr("Index %1 is out of range.").arg(index)));
  return m_entries[index];
}

unsigned int C_List::GetLength() const
{
  return static_cast<unsigned int>(m_entries.size());
}

QString C_List::GetStaticTypeName()
{
  return QStringLiteral("List");
}

void C_List::NotifyValueChangedWithValue() {}

std::shared_ptr<C_List> CreateList(const QString& name, const QString& label, const QString& description,
                                   C_List::EntryMaker maker, const QString& editor)
{
  auto list = std::make_shared<C_List>(std::move(maker));
  list->SetName(name);
  list->SetLabel(label);
  list->SetDescription(description);
  list->SetPreferredEditor(editor);
  return list;
}

std::shared_ptr<C_List> CastToList(std::shared_ptr<C_Node> node)
{
  return detail::CastNode<C_List>(node, "List");
}

} // namespace RTE::Parameter
