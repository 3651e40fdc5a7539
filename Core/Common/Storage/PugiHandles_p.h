// pugixml's node and attribute handles hold one pointer, but testing or comparing them
// is a call into the library. On the paths that run for every item of a collection the
// pointer is read directly.
#pragma once

#include <pugixml.hpp>

#include <bit>
#include <type_traits>

namespace Storage::Private
{

static_assert(std::is_trivially_copyable_v<pugi::xml_node> && sizeof(pugi::xml_node) == sizeof(void*));
static_assert(std::is_trivially_copyable_v<pugi::xml_attribute> && sizeof(pugi::xml_attribute) == sizeof(void*));

// The same as node.internal_object().
inline pugi::xml_node_struct* Object(pugi::xml_node node)
{
  return std::bit_cast<pugi::xml_node_struct*>(node);
}

inline bool IsNull(pugi::xml_node node)
{
  return Object(node) == nullptr;
}

inline bool IsNull(pugi::xml_attribute attribute)
{
  return std::bit_cast<pugi::xml_attribute_struct*>(attribute) == nullptr;
}

} // namespace Storage::Private
