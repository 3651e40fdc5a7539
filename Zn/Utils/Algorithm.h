// Small range algorithms shared by the libraries.
#pragma once

#include <algorithm>
#include <iterator>

namespace Zn
{

// Whether the elements of range are in ascending order (equal neighbours allowed).
template <typename Range>
bool isSorted(const Range& range)
{
  return std::is_sorted(std::begin(range), std::end(range));
}

} // namespace Zn
