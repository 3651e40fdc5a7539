// Finds the children of a settings element by name and collection index.
//
// pugixml finds a child by walking the siblings, so appending item N of a collection
// (which needs Count and a lookup of item N) and reading items back by index would take
// time quadratic in the size of the collection. Once an element has more than a few
// children, this index keeps, per element and child name, the first child, the count
// and the first child of each collection index. Elements with few children are searched
// directly: for them a walk is cheaper than a table.
//
// All changes of child lists go through this class (Append, Remove, Clear, Reset), so
// the tables stay in step with the tree. Removed elements are erased from the tables
// before pugixml may reuse their memory.
#pragma once

#include <pugixml.hpp>

#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace Storage::Private
{

class SettingsChildIndex
{
public:
  // The first child element with this name (whether or not it is a collection item).
  pugi::xml_node FindFirst(pugi::xml_node parent, std::string_view name);
  // The "class" and "value" attributes of a leaf item, when its table knows them.
  struct LeafAttributes
  {
    pugi::xml_attribute type;
    pugi::xml_attribute value;
    bool known = false; // both found; tested without a call into the XML library
  };
  // The first child element with this name whose "index" is the decimal text of index.
  // leaf, if given, receives the item's first "class" and "value" attributes when the
  // table has them at hand (items read from text as index, class, value); it is left
  // empty otherwise. Reading a large collection then needs no search per item.
  pugi::xml_node FindItem(pugi::xml_node parent, std::string_view name, unsigned long long index,
                          LeafAttributes* leaf = nullptr);
  // The lowest index from index on that an item of collection name holds; the largest
  // number when none does. Only for parents with a table.
  unsigned long long FirstTakenIndex(pugi::xml_node parent, std::string_view name, unsigned long long index);
  // Number of child elements with this name.
  unsigned long long Count(pugi::xml_node parent, std::string_view name);
  // Where the next item of collection name goes: index is Count when item 0 exists, else
  // 0; the result is the element that already has that index, if any. isCollection tells
  // whether item 0 exists. One lookup for what appending needs.
  pugi::xml_node NextItem(pugi::xml_node parent, std::string_view name, unsigned long long& index, bool& isCollection);

  // Appends a child element, with an "index" attribute when index is given. name must be
  // followed by '\0' in memory.
  pugi::xml_node Append(pugi::xml_node parent, std::string_view name, const unsigned long long* index);
  // Appends a copy of prototype, a child element of that name whose first attribute is
  // "index", and sets that attribute to index.
  pugi::xml_node AppendCopy(pugi::xml_node parent, std::string_view name, pugi::xml_node prototype,
                            unsigned long long index);
  // Enters element, a new last child of parent made outside this class, as item index
  // of collection name.
  void Adopt(pugi::xml_node parent, std::string_view name, pugi::xml_node element, unsigned long long index)
  {
    Register(parent, name, element, &index);
  }
  // Whether parent has a table: it has many children.
  bool HasTable(pugi::xml_node parent) { return ExistingTable(parent); }
  // Removes every child element with this name, with its subtree.
  void Remove(pugi::xml_node parent, std::string_view name);
  // Removes every child node, from the last to the first.
  void Clear(pugi::xml_node parent);
  // Forgets every table (the document was replaced).
  void Reset();
  // Walks a freshly read tree once: builds the tables of all elements with many
  // children and checks the nesting. False when elements nest more than maximumDepth
  // levels below root (the tables are then incomplete; reset them).
  bool IndexTree(pugi::xml_node root, std::size_t maximumDepth);

  // Elements with more children than this get a table.
  static constexpr unsigned kIndexThreshold = 24;

  // Whether the "index" text is the canonical decimal form of a number, and which.
  static bool ParseIndex(const char* text, unsigned long long& index);

private:
  struct NameEntry
  {
    struct Slot
    {
      pugi::xml_node element;
      LeafAttributes leaf;
    };

    pugi::xml_node first;
    unsigned long long count = 0;
    // dense[i] is the first item with index i; indexes beyond the dense range go to sparse.
    // Attributes are never removed, so the handles stay valid as long as their element.
    std::vector<Slot> dense;
    std::unordered_map<unsigned long long, pugi::xml_node> sparse;

    // element's own "index" is parsed.
    void Add(pugi::xml_node element);
    // itemIndex: the element's index, or null for a plain element.
    void Add(pugi::xml_node element, const unsigned long long* itemIndex, const LeafAttributes& leaf);
    pugi::xml_node Item(unsigned long long index, LeafAttributes* leaf = nullptr) const;
  };

  struct NameHash
  {
    using is_transparent = void;
    size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
  };

  using Table = std::unordered_map<std::string, NameEntry, NameHash, std::equal_to<>>;

  // Enters child, the next child of a parent whose table is being built; entry and
  // entryName remember the run of names the children came in.
  static void Enter(Table& table, pugi::xml_node child, NameEntry*& entry, const char*& entryName);
  // The table of parent, built when parent has many children; null otherwise.
  Table* TableFor(pugi::xml_node parent);
  // The table of parent if it has one; never builds one.
  Table* ExistingTable(pugi::xml_node parent);
  NameEntry* EntryFor(Table& table, std::string_view name);
  // Enters a new last child of parent into parent's table, if it has one.
  void Register(pugi::xml_node parent, std::string_view name, pugi::xml_node element, const unsigned long long* index);
  void ForgetRecent();
  // Removes element and its subtree without recursion (a file may nest very deeply),
  // erasing the tables of the removed elements.
  void RemoveSubtree(pugi::xml_node element);

  std::unordered_map<pugi::xml_node_struct*, Table> m_tables;
  // The last table and name entry used: a collection is usually read or written item
  // after item, and a hash of the name per access would cost more than the rest.
  // (Tables and entries keep their addresses when their maps grow.)
  pugi::xml_node_struct* m_recentParent = nullptr;
  Table* m_recentTable = nullptr;
  const Table* m_recentEntryTable = nullptr;
  std::string m_recentName;
  NameEntry* m_recentEntry = nullptr;
};

} // namespace Storage::Private
