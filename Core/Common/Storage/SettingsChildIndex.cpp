#include "SettingsChildIndex_p.h"

#include "PugiHandles_p.h"
#include "SettingsText_p.h"

#include <fmt/format.h>

#include <charconv>
#include <cstring>
#include <limits>

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
  // Digits only, no leading zero, no overflow: runs for every child when a table is built.
  if (!text || !*text || (text[0] == '0' && text[1] != '\0'))
    return false;
  unsigned long long value = 0;
  for (; *text; ++text)
  {
    const unsigned digit = static_cast<unsigned char>(*text) - static_cast<unsigned>('0');
    if (digit > 9 || __builtin_mul_overflow(value, 10u, &value) || __builtin_add_overflow(value, digit, &value))
      return false;
  }
  index = value;
  return true;
}

void SettingsChildIndex::NameEntry::Add(pugi::xml_node element)
{
  // Written items carry "index" first; any other order is searched for.
  pugi::xml_attribute attribute = element.first_attribute();
  if (IsNull(attribute))
    return Add(element, nullptr, LeafAttributes());
  if (!IsText(attribute.name(), "index"))
  {
    unsigned long long index = 0;
    const bool isItem = ParseIndex(element.attribute("index").value(), index);
    return Add(element, isItem ? &index : nullptr, LeafAttributes());
  }
  // Index, class, value: the leaf's attributes are known from this one walk.
  unsigned long long index = 0;
  const bool isItem = ParseIndex(attribute.value(), index);
  const pugi::xml_attribute type = attribute.next_attribute();
  const pugi::xml_attribute value = type.next_attribute();
  const bool known = IsText(type.name(), "class") && IsText(value.name(), "value");
  // The common case, the next item in order, is placed directly.
  if (isItem && index == dense.size() && count != 0 && sparse.empty())
  {
    ++count;
    dense.push_back(Slot{element, LeafAttributes{type, value, known}});
    return;
  }
  Add(element, isItem ? &index : nullptr, known ? LeafAttributes{type, value, true} : LeafAttributes());
}

void SettingsChildIndex::NameEntry::Add(pugi::xml_node element, const unsigned long long* itemIndex,
                                        const LeafAttributes& leaf)
{
  if (count++ == 0)
    first = element;
  if (!itemIndex || Item(*itemIndex))
    return; // the first element of an index wins
  const unsigned long long index = *itemIndex;
  if (index < dense.size())
    dense[index] = Slot{element, leaf};
  else if (index == dense.size())
    dense.push_back(Slot{element, leaf});
  else
    sparse.emplace(index, element);
}

pugi::xml_node SettingsChildIndex::NameEntry::Item(unsigned long long index, LeafAttributes* leaf) const
{
  if (index < dense.size() && !IsNull(dense[index].element))
  {
    if (leaf)
      *leaf = dense[index].leaf;
    return dense[index].element;
  }
  if (sparse.empty())
    return {};
  const auto it = sparse.find(index);
  return it == sparse.end() ? pugi::xml_node() : it->second;
}

void SettingsChildIndex::ForgetRecent()
{
  m_recentParent = nullptr;
  m_recentTable = nullptr;
  m_recentEntryTable = nullptr;
  m_recentEntry = nullptr;
}

SettingsChildIndex::Table* SettingsChildIndex::ExistingTable(pugi::xml_node parent)
{
  if (Object(parent) == m_recentParent)
    return m_recentTable;
  const auto it = m_tables.find(parent.internal_object());
  if (it == m_tables.end())
    return nullptr;
  m_recentParent = parent.internal_object();
  m_recentTable = &it->second;
  return m_recentTable;
}

SettingsChildIndex::NameEntry* SettingsChildIndex::EntryFor(Table& table, std::string_view name)
{
  if (&table == m_recentEntryTable && SameText(name, m_recentName))
    return m_recentEntry;
  const auto it = table.find(name);
  if (it == table.end())
    return nullptr;
  m_recentEntryTable = &table;
  m_recentName.assign(name);
  m_recentEntry = &it->second;
  return m_recentEntry;
}

SettingsChildIndex::Table* SettingsChildIndex::TableFor(pugi::xml_node parent)
{
  if (Table* table = ExistingTable(parent))
    return table;
  std::size_t children = 0;
  pugi::xml_node child = parent.first_child();
  for (; !IsNull(child) && children <= kIndexThreshold; child = child.next_sibling())
    ++children;
  if (children <= kIndexThreshold)
    return nullptr;
  Table& table = m_tables[Object(parent)];
  NameEntry* entry = nullptr;
  const char* entryName = "";
  for (child = parent.first_child(); !IsNull(child); child = child.next_sibling())
    Enter(table, child, entry, entryName);
  return &table;
}

void SettingsChildIndex::Enter(Table& table, pugi::xml_node child, NameEntry*& entry, const char*& entryName)
{
  if (!IsElement(child))
    return;
  // Collections are runs of one name: look the name up only when it changes.
  if (!entry || !SameText(entryName, child.name()))
  {
    entryName = child.name();
    entry = &table[std::string(entryName)];
  }
  entry->Add(child);
}

bool SettingsChildIndex::IndexTree(pugi::xml_node root, std::size_t maximumDepth)
{
  // Depth first without recursion, one level per element on the way down; the tables
  // are filled on the way, so a large collection is walked once, not twice.
  struct Level
  {
    pugi::xml_node parent;
    std::size_t children = 0;
    Table* table = nullptr;
    NameEntry* entry = nullptr;
    const char* entryName = "";
  };
  std::vector<Level> path{Level{root}};
  pugi::xml_node node = root.first_child();
  while (true)
  {
    if (IsNull(node))
    {
      const pugi::xml_node finished = path.back().parent;
      path.pop_back();
      if (path.empty())
        return true;
      node = finished.next_sibling();
      continue;
    }
    if (path.size() > maximumDepth)
      return false;
    Level& level = path.back();
    if (++level.children > kIndexThreshold)
    {
      if (!level.table)
      {
        level.table = &m_tables[Object(level.parent)];
        for (pugi::xml_node earlier = level.parent.first_child(); Object(earlier) != Object(node);
             earlier = earlier.next_sibling())
          Enter(*level.table, earlier, level.entry, level.entryName);
      }
      Enter(*level.table, node, level.entry, level.entryName);
    }
    if (const pugi::xml_node child = node.first_child(); !IsNull(child))
    {
      path.push_back(Level{node});
      node = child;
    }
    else
      node = node.next_sibling();
  }
}

pugi::xml_node SettingsChildIndex::FindFirst(pugi::xml_node parent, std::string_view name)
{
  if (Table* table = TableFor(parent))
  {
    const NameEntry* entry = EntryFor(*table, name);
    return entry ? entry->first : pugi::xml_node();
  }
  for (pugi::xml_node child = parent.first_child(); child; child = child.next_sibling())
  {
    if (IsElement(child) && name == child.name())
      return child;
  }
  return {};
}

pugi::xml_node SettingsChildIndex::FindItem(pugi::xml_node parent, std::string_view name, unsigned long long index,
                                            LeafAttributes* leaf)
{
  if (Table* table = TableFor(parent))
  {
    const NameEntry* entry = EntryFor(*table, name);
    return entry ? entry->Item(index, leaf) : pugi::xml_node();
  }
  for (pugi::xml_node child = parent.first_child(); child; child = child.next_sibling())
  {
    if (IsElement(child) && name == child.name() && HasIndex(child, index))
      return child;
  }
  return {};
}

pugi::xml_node SettingsChildIndex::NextItem(pugi::xml_node parent, std::string_view name, unsigned long long& index,
                                            bool& isCollection)
{
  if (Table* table = TableFor(parent))
  {
    const NameEntry* entry = EntryFor(*table, name);
    isCollection = entry && entry->Item(0);
    index = isCollection ? entry->count : 0;
    return isCollection ? entry->Item(index) : pugi::xml_node();
  }
  isCollection = FindItem(parent, name, 0);
  index = isCollection ? Count(parent, name) : 0;
  return isCollection ? FindItem(parent, name, index) : pugi::xml_node();
}

unsigned long long SettingsChildIndex::FirstTakenIndex(pugi::xml_node parent, std::string_view name,
                                                       unsigned long long index)
{
  constexpr unsigned long long kNone = std::numeric_limits<unsigned long long>::max();
  unsigned long long taken = kNone;
  Table* table = TableFor(parent);
  const NameEntry* entry = table ? EntryFor(*table, name) : nullptr;
  if (!entry)
    return taken;
  for (unsigned long long i = index; i < entry->dense.size() && taken == kNone; ++i)
  {
    if (!IsNull(entry->dense[i].element))
      taken = i;
  }
  for (const auto& [sparseIndex, element] : entry->sparse)
  {
    if (sparseIndex >= index)
      taken = std::min(taken, sparseIndex);
  }
  return taken;
}

unsigned long long SettingsChildIndex::Count(pugi::xml_node parent, std::string_view name)
{
  if (Table* table = TableFor(parent))
  {
    const NameEntry* entry = EntryFor(*table, name);
    return entry ? entry->count : 0;
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
  Register(parent, name, element, index);
  return element;
}

pugi::xml_node SettingsChildIndex::AppendCopy(pugi::xml_node parent, std::string_view name, pugi::xml_node prototype,
                                              unsigned long long index)
{
  pugi::xml_node element = parent.append_copy(prototype);
  const fmt::format_int text(index);
  element.first_attribute().set_value(text.data(), text.size());
  Register(parent, name, element, &index);
  return element;
}

void SettingsChildIndex::Register(pugi::xml_node parent, std::string_view name, pugi::xml_node element,
                                  const unsigned long long* index)
{
  if (Table* table = ExistingTable(parent))
  {
    NameEntry* entry = EntryFor(*table, name);
    if (!entry)
      entry = &table->emplace(std::string(name), NameEntry()).first->second;
    entry->Add(element, index, LeafAttributes());
  }
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
  ForgetRecent();
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
  ForgetRecent();
  m_tables.erase(parent.internal_object());
}

void SettingsChildIndex::Reset()
{
  ForgetRecent();
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
    if (!m_tables.empty() && m_tables.erase(current.internal_object()) != 0)
      ForgetRecent();
    if (current == element)
      break;
    pugi::xml_node parent = current.parent();
    parent.remove_child(current);
    current = parent;
  }
  element.parent().remove_child(element);
}

} // namespace Storage::Private
