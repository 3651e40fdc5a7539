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

} // namespace Storage::Private
