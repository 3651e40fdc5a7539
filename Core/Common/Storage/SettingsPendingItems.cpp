#include "SettingsPendingItems_p.h"

#include "SettingsChildIndex_p.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>

#include <QRandomGenerator>

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>

namespace Storage::Private
{

namespace
{

bool IsNameCharacter(char c)
{
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9') || c == '_' || c == '-' ||
         c == '.' || static_cast<unsigned char>(c) >= 0x80;
}

} // namespace

bool SettingsPendingItems::CanHoldName(std::string_view name)
{
  return !name.empty() && !(name[0] >= '0' && name[0] <= '9') && name[0] != '-' && name[0] != '.' &&
         std::all_of(name.begin(), name.end(), IsNameCharacter);
}

bool SettingsPendingItems::IsPlainText(std::string_view text)
{
  // No markup and no character the writer escapes (control characters come out as
  // references).
  return std::none_of(text.begin(), text.end(),
                      [](char c) {
                        return static_cast<unsigned char>(c) < 0x20 || c == '&' || c == '<' || c == '>' || c == '"' ||
                               c == '\'';
                      });
}

void SettingsPendingItems::Begin(pugi::xml_node parent, std::string_view name, unsigned long long index,
                                 unsigned long long takenIndex)
{
  // The marker's name is random, so no content of the document can be mistaken for it.
  QRandomGenerator* random = QRandomGenerator::global();
  const std::string target = fmt::format("pending-items-{:016x}{:016x}", random->generate64(), random->generate64());
  m_marker = parent.append_child(pugi::node_pi);
  m_marker.set_name(target.c_str());
  m_markerText = "<?" + target + "?>";
  // The writer indents a child by one tab per element from "root" down to its parent.
  unsigned depth = 0;
  for (pugi::xml_node node = parent; node && node.type() == pugi::node_element; node = node.parent())
    ++depth;
  m_prefix.assign(1, '\n').append(depth, '\t');
  m_firstOffset = m_prefix.size();
  m_prefix.append(1, '<').append(name).append(" index=\"");
  m_parent = parent;
  m_name.assign(name);
  m_blocks.clear();
  m_firstIndex = index;
  m_nextIndex = index;
  m_takenIndex = takenIndex;
}

char* SettingsPendingItems::Room(std::size_t size)
{
  if (m_blocks.empty() || m_blocks.back().capacity - m_blocks.back().size < size)
  {
    // Small collections stay small; large ones get blocks of a megabyte.
    constexpr std::size_t kFirst = 4096, kLargest = std::size_t{1} << 20;
    const std::size_t capacity =
        std::max(size, m_blocks.empty() ? kFirst : std::min(2 * m_blocks.back().capacity, kLargest));
    m_blocks.push_back(Block{std::make_unique_for_overwrite<char[]>(capacity), 0, capacity});
  }
  Block& block = m_blocks.back();
  return block.data.get() + block.size;
}

void SettingsPendingItems::Add(std::string_view className, std::string_view valueText)
{
  // <name index="i" class="c" value="v" />, after a line break and indent but the first.
  const std::string_view prefix = std::string_view(m_prefix).substr(m_nextIndex == m_firstIndex ? m_firstOffset : 0);
  constexpr std::string_view kClass = "\" class=\"", kValue = "\" value=\"", kEnd = "\" />";
  constexpr std::size_t kLongestIndex = std::numeric_limits<unsigned long long>::digits10 + 1;
  const std::size_t most =
      prefix.size() + kLongestIndex + kClass.size() + className.size() + kValue.size() + valueText.size() + kEnd.size();
  char* const start = Room(most);
  char* out = start;
  const auto put = [&out](std::string_view text)
  {
    std::memcpy(out, text.data(), text.size());
    out += text.size();
  };
  put(prefix);
  // Written in place: a copy of freshly formatted digits would stall on the stores.
  out = std::to_chars(out, out + kLongestIndex, m_nextIndex).ptr;
  put(kClass);
  put(className);
  put(kValue);
  put(valueText);
  put(kEnd);
  m_blocks.back().size += static_cast<std::size_t>(out - start);
  ++m_nextIndex;
}

void SettingsPendingItems::Flush(SettingsChildIndex& children)
{
  if (Empty())
    return;
  pugi::xml_node parent = m_parent;
  const pugi::xml_node before = m_marker.previous_sibling();
  parent.remove_child(m_marker);
  // One parse per block (blocks end between items): the strings stay in the parsed
  // buffers, no allocation per item.
  bool parsed = true;
  for (const Block& block : m_blocks)
    parsed = parsed && parent.append_buffer(block.data.get(), block.size, pugi::parse_minimal, pugi::encoding_utf8);
  unsigned long long index = m_firstIndex;
  pugi::xml_node element = before ? before.next_sibling() : parent.first_child();
  for (; element && index < m_nextIndex; element = element.next_sibling(), ++index)
    children.Adopt(parent, m_name, element, index);
  const bool complete = parsed && index == m_nextIndex && !element;
  Discard();
  // CanHold admits only texts that parse back as written.
  if (!complete)
    RTE::Raise(RTE::LogicError(QStringLiteral("Pending collection items could not be turned into elements.")));
}

void SettingsPendingItems::Discard()
{
  m_parent = pugi::xml_node();
  m_marker = pugi::xml_node();
  m_name.clear();
  m_blocks.clear();
  m_firstIndex = m_nextIndex = m_takenIndex = 0;
}

std::vector<std::string_view> SettingsPendingItems::Pieces(const QByteArray& text) const
{
  const std::string_view whole(text.constData(), static_cast<std::size_t>(text.size()));
  const std::size_t at = Empty() ? std::string_view::npos : whole.find(m_markerText);
  if (at == std::string_view::npos)
    return {whole};
  std::vector<std::string_view> pieces{whole.substr(0, at)};
  for (const Block& block : m_blocks)
    pieces.emplace_back(block.data.get(), block.size);
  pieces.push_back(whole.substr(at + m_markerText.size()));
  return pieces;
}

} // namespace Storage::Private
