// Comparisons of the short texts of the tree (element and attribute names, type names).
// They run for every item of a large collection; inline loops beat calls into the C
// library for texts this short.
#pragma once

#include <string_view>

namespace Storage::Private
{

// Whether the '\0'-terminated text equals expected.
inline bool IsText(const char* text, std::string_view expected)
{
  for (const char c : expected)
  {
    if (*text++ != c)
      return false;
  }
  return *text == '\0';
}

// Whether two '\0'-terminated texts are equal.
inline bool SameText(const char* a, const char* b)
{
  for (; *a == *b; ++a, ++b)
  {
    if (*a == '\0')
      return true;
  }
  return false;
}

// Equality of short texts without a call into the C library.
inline bool SameText(std::string_view a, std::string_view b)
{
  if (a.size() != b.size())
    return false;
  for (std::size_t i = 0; i < a.size(); ++i)
  {
    if (a[i] != b[i])
      return false;
  }
  return true;
}

} // namespace Storage::Private
