#include "SettingsChildIndex_p.h"

#include <charconv>
#include <cstring>

namespace Storage::Private
{

namespace
{

bool IsElement(pugi::xml_node node)
{
  return node.type() == pugi::node_element;
}

bool HasIndex(pugi::xml_node element, unsigned long long index)
{
  unsigned long long value = 0;
  return SettingsChildIndex::ParseIndex(element.attribute("index").as_string(nullptr), value) && value == index;
}

} // namespace

bool SettingsChildIndex::ParseIndex(const char* text, unsigned long long& index)
{
  if (!text || !*text)
    return false;
  const size_t length = std::strlen(text);
  if (length > 1 && text[0] == '0')
    return false;
  const auto [end, error] = std::from_chars(text, text + length, index, 10);
  return error == std::errc() && end == text + length;
}

void SettingsChildIndex::NameEntry::Add(pugi::xml_node element)
{
  if (count++ == 0)
    first = element;
  unsigned long long index = 0;
  if (!ParseIndex(element.attribute("index").as_string(nullptr), index) || Item(index))
    return; // the first element of an index wins
  if (index < dense.size())
    dense[index] = element;
  else if (index == dense.size())
    dense.push_back(element);
  else
    sparse.emplace(index, element);
}

pugi::xml_node SettingsChildIndex::NameEntry::Item(unsigned long long index) const
{
  if (index < dense.size() && dense[index])
    return dense[index];
  const auto it = sparse.find(index);
  return it == sparse.end() ? pugi::xml_node() : it->second;
}

SettingsChildIndex::Table* SettingsChildIndex::TableFor(pugi::xml_node parent)
{
  if (const auto it = m_tables.find(parent.internal_object()); it != m_tables.end())
    return &it->second;
  unsigned children = 0;
  for (pugi::xml_node child = parent.first_child(); child; child = child.next_sibling())
  {
    if (++children > kIndexThreshold)
      break;
  }
  if (children <= kIndexThreshold)
    return nullptr;
  Table& table = m_tables[parent.internal_object()];
  for (pugi::xml_node child = parent.first_child(); child; child = child.next_sibling())
  {
    if (IsElement(child))
      table[child.name()].Add(child);
  }
  return &table;
}

pugi::xml_node SettingsChildIndex::FindFirst(pugi::xml_node parent, std::string_view name)
{
  if (Table* table = TableFor(parent))
  {
    const auto it = table->find(name);
    return it == table->end() ? pugi::xml_node() : it->second.first;
  }
  for (pugi::xml_node child = parent.first_child(); child; child = child.next_sibling())
  {
    if (IsElement(child) && name == child.name())
      return child;
  }
  return {};
}

pugi::xml_node SettingsChildIndex::FindItem(pugi::xml_node parent, std::string_view name, unsigned long long index)
{
  if (Table* table = TableFor(parent))
  {
    const auto it = table->find(name);
    return it == table->end() ? pugi::xml_node() : it->second.Item(index);
  }
  for (pugi::xml_node child = parent.first_child(); child; child = child.next_sibling())
  {
    if (IsElement(child) && name == child.name() && HasIndex(child, index))
      return child;
  }
  return {};
}

unsigned long long SettingsChildIndex::Count(pugi::xml_node parent, std::string_view name)
{
  if (Table* table = TableFor(parent))
  {
    const auto it = table->find(name);
    return it == table->end() ? 0 : it->second.count;
  }
  unsigned long long count = 0;
  for (pugi::xml_node child = parent.first_child(); child; child = child.next_sibling())
  {
    if (IsElement(child) && name == child.name())
      ++count;
  }
  return count;
}

pugi::xml_node SettingsChildIndex::Append(pugi::xml_node parent, std::string_view name, const unsigned long long* index)
{
  pugi::xml_node element = parent.append_child(pugi::node_element);
  element.set_name(name.data()); // names come from QByteArray, which ends in '\0'
  if (index)
    element.append_attribute("index").set_value(*index);
  if (const auto it = m_tables.find(parent.internal_object()); it != m_tables.end())
  {
    Table& table = it->second;
    auto entry = table.find(name);
    if (entry == table.end())
      entry = table.emplace(std::string(name), NameEntry()).first;
    entry->second.Add(element);
  }
  return element;
}

void SettingsChildIndex::Remove(pugi::xml_node parent, std::string_view name)
{
  std::vector<pugi::xml_node> doomed;
  for (pugi::xml_node child = parent.first_child(); child; child = child.next_sibling())
  {
    if (IsElement(child) && name == child.name())
      doomed.push_back(child);
  }
  for (pugi::xml_node element : doomed)
    RemoveSubtree(element);
  if (const auto it = m_tables.find(parent.internal_object()); it != m_tables.end())
  {
    if (const auto entry = it->second.find(name); entry != it->second.end())
      it->second.erase(entry);
  }
}

void SettingsChildIndex::Clear(pugi::xml_node parent)
{
  while (pugi::xml_node child = parent.last_child())
    RemoveSubtree(child);
  m_tables.erase(parent.internal_object());
}

void SettingsChildIndex::Reset()
{
  m_tables.clear();
}

void SettingsChildIndex::RemoveSubtree(pugi::xml_node element)
{
  // pugixml removes a subtree recursively; taking it apart from the deepest last leaf
  // upwards keeps the stack flat.
  pugi::xml_node current = element;
  for (;;)
  {
    while (pugi::xml_node last = current.last_child())
      current = last;
    if (!m_tables.empty())
      m_tables.erase(current.internal_object());
    if (current == element)
      break;
    pugi::xml_node parent = current.parent();
    parent.remove_child(current);
    current = parent;
  }
  element.parent().remove_child(element);
}

} // namespace Storage::Private
