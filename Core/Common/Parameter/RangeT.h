// A closed interval given by its two bounds, as numeric parameters carry it.
//
//   RTE::RangeDouble exposure{0.001, 10.0};
//   if (exposure.minimum <= v && v <= exposure.maximum) ...
//
// The bounds are stored as given; whoever needs minimum <= maximum orders them first.
#pragma once

#include <QtGlobal>

namespace RTE
{

template <typename T>
struct RangeT
{
  T minimum{};
  T maximum{};

  constexpr RangeT() = default;
  constexpr RangeT(T lower, T upper) : minimum(lower), maximum(upper) {}

  friend constexpr bool operator==(const RangeT&, const RangeT&) = default;
};

using RangeInt64 = RangeT<qlonglong>;
using RangeDouble = RangeT<double>;

} // namespace RTE
