// Items appended to the end of a large collection, held as their XML text until anything
// else looks at the tree.
//
// Creating an element per item costs far more than its text: a node, three attributes
// and two allocated strings. A document that is written item after item and then saved
// (the usual life of a large collection) needs only the text. So items that need no
// escaping are rendered straight into one buffer; a processing instruction with a random
// name marks their place as the last child of the parent. Saving writes the tree and puts
// the items' text in place of the marker; any other access first turns the text into
// elements with one parse (Flush). The text is exactly what the writer would have printed
// for the elements, so the two ways give the same file.
#pragma once

#include "PugiHandles_p.h"
#include "SettingsText_p.h"

#include <QByteArray>

#include <pugixml.hpp>

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace Storage::Private
{

class SettingsChildIndex;

class SettingsPendingItems
{
public:
  bool Empty() const { return IsNull(m_parent); }
  // Whether the pending items are name children of parent.
  bool IsFor(pugi::xml_node parent, std::string_view name) const
  {
    return Object(m_parent) == Object(parent) && SameText(name, m_name);
  }
  // Whether the next index is still free: no element holds it.
  bool NextIsFree() const { return m_nextIndex < m_takenIndex; }
  // The index the next pending item gets.
  unsigned long long NextIndex() const { return m_nextIndex; }

  // Whether items of this name can be held as text: a plain XML name, which the text
  // gives back as itself.
  static bool CanHoldName(std::string_view name);
  // Whether a class or value text is printed by the writer as it stands.
  static bool IsPlainText(std::string_view text);

  // Starts pending items of collection name under parent, the first with index;
  // takenIndex is the lowest index from there on that an element already holds.
  void Begin(pugi::xml_node parent, std::string_view name, unsigned long long index, unsigned long long takenIndex);
  // Adds the next item; CanHold must have accepted its texts.
  void Add(std::string_view className, std::string_view valueText);
  // Makes the items elements, entered in children's tables, and removes the marker.
  void Flush(SettingsChildIndex& children);
  // Forgets the items (their tree is gone or replaced).
  void Discard();

  // A document text the writer produced, in pieces: the items' text takes the place of
  // the marker. The pieces refer to text and to this object.
  std::vector<std::string_view> Pieces(const QByteArray& text) const;

private:
  // The text grows in blocks, never moved: a growing string would copy it over and over.
  struct Block
  {
    std::unique_ptr<char[]> data;
    std::size_t size = 0;
    std::size_t capacity = 0;
  };
  // Room for up to size more bytes at the end of the text; the caller adds what it
  // used to the last block's size.
  char* Room(std::size_t size);

  pugi::xml_node m_parent;
  pugi::xml_node m_marker;
  std::string m_name;
  std::string m_markerText; // "<?name?>" as the writer prints the marker
  std::string m_prefix;     // line break, tabs, "<name index=\"": the first item starts after the tabs
  std::vector<Block> m_blocks;
  unsigned long long m_firstIndex = 0;
  unsigned long long m_nextIndex = 0;
  unsigned long long m_takenIndex = 0;
  std::size_t m_firstOffset = 0; // where the first item's text starts in m_prefix
};

} // namespace Storage::Private
