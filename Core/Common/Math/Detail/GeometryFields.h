// Shared machinery of the geometry value templates: each value hands out its fields in
// order as a tuple of references (AsTuple), and the helpers here print, store, read and
// compare such tuples field by field. Use the value types; these helpers are public only
// because templates in public headers call them.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Storage/Settings.h>

#include <QString>

#include <algorithm>
#include <array>
#include <cstddef>
#include <ostream>
#include <source_location>
#include <tuple>
#include <type_traits>
#include <utility>

namespace Math::Detail
{

// Raise RTE::InvalidArgumentError located at the caller: an integer vector divided by
// zero, a zero-length vector normalised, a matrix that is no rotation inverted.
[[noreturn]] CORECOMMON_EXPORT void
RaiseDivisionByZero(const std::source_location& where = std::source_location::current());
[[noreturn]] CORECOMMON_EXPORT void
RaiseZeroLength(const std::source_location& where = std::source_location::current());
[[noreturn]] CORECOMMON_EXPORT void
RaiseNotARotation(const std::source_location& where = std::source_location::current());

// A number as the stream writes it; 8-bit types as numbers, not as characters.
template <typename T>
auto Printable(T value)
{
  if constexpr (sizeof(T) == 1)
    return static_cast<int>(value);
  else
    return value;
}

// Writes the values one after another with separator between them.
template <typename Tuple>
void PrintFields(std::ostream& out, const Tuple& values, const char* separator)
{
  std::apply(
      [&](const auto&... value)
      {
        const char* next = "";
        ((out << next << Printable(value), next = separator), ...);
      },
      values);
}

// "(" a "," b ... ")"
template <typename Tuple>
std::ostream& PrintParenthesised(std::ostream& out, const Tuple& values)
{
  out << '(';
  PrintFields(out, values, ",");
  return out << ')';
}

// One leaf per field, named by names in order, written with the field's own value type.
template <typename Tuple, std::size_t N>
void WriteLeaves(Storage::Settings& node, const std::array<const char*, N>& names, const Tuple& values)
{
  static_assert(std::tuple_size_v<Tuple> == N);
  [&]<std::size_t... I>(std::index_sequence<I...>)
  {
    (node.Set(QString::fromLatin1(names[I]), std::get<I>(values)), ...);
  }
  (std::make_index_sequence<N>());
}

// The fields back from the leaves of WriteLeaves; a missing leaf reads as 0.
template <typename Tuple, std::size_t N>
void ReadLeaves(const Storage::Settings& node, const std::array<const char*, N>& names, Tuple&& values)
{
  static_assert(std::tuple_size_v<std::remove_cvref_t<Tuple>> == N);
  [&]<std::size_t... I>(std::index_sequence<I...>)
  {
    ((std::get<I>(values) = node.Get<std::remove_cvref_t<std::tuple_element_t<I, std::remove_cvref_t<Tuple>>>>(
          QString::fromLatin1(names[I]), {})),
     ...);
  }
  (std::make_index_sequence<N>());
}

// value from the child node name; a missing child gives the default value.
template <typename Value>
void ReadChild(const Storage::Settings& node, const QString& name, Value& value)
{
  value = Value();
  if (node.Contains(name))
    value.DeserializeFrom(*node.GetNode(name));
}

// Whether every field of low is at most the same field of high.
template <typename Point>
bool AllLessEqual(const Point& low, const Point& high)
{
  return std::apply([&](const auto&... l)
                    { return std::apply([&](const auto&... h) { return ((l <= h) && ...); }, high.AsTuple()); },
                    low.AsTuple());
}

// Whether point lies between low and high on every axis, bounds included.
template <typename Point>
bool IsBetween(const Point& low, const Point& high, const Point& point)
{
  return AllLessEqual(low, point) && AllLessEqual(point, high);
}

// Moves low down and high up, field by field, until point lies between them.
template <typename Point>
void Enlarge(Point& low, Point& high, const Point& point)
{
  [&]<std::size_t... I>(std::index_sequence<I...>)
  {
    ((std::get<I>(low.AsTuple()) = std::min(std::get<I>(low.AsTuple()), std::get<I>(point.AsTuple()))), ...);
    ((std::get<I>(high.AsTuple()) = std::max(std::get<I>(high.AsTuple()), std::get<I>(point.AsTuple()))), ...);
  }
  (std::make_index_sequence<std::tuple_size_v<decltype(point.AsTuple())>>());
}

// The point size away from point, field by field (a corner plus an extent).
template <typename Point, typename Size>
Point Offset(const Point& point, const Size& size)
{
  Point result;
  [&]<std::size_t... I>(std::index_sequence<I...>)
  {
    ((std::get<I>(result.AsTuple()) =
          static_cast<typename Point::value_type>(std::get<I>(point.AsTuple()) + std::get<I>(size.AsTuple()))),
     ...);
  }
  (std::make_index_sequence<std::tuple_size_v<decltype(point.AsTuple())>>());
  return result;
}

// The extent from low to high, field by field.
template <typename Size, typename Point>
Size Extent(const Point& low, const Point& high)
{
  Size result;
  [&]<std::size_t... I>(std::index_sequence<I...>)
  {
    ((std::get<I>(result.AsTuple()) =
          static_cast<typename Size::value_type>(std::get<I>(high.AsTuple()) - std::get<I>(low.AsTuple()))),
     ...);
  }
  (std::make_index_sequence<std::tuple_size_v<decltype(low.AsTuple())>>());
  return result;
}

// True when every field equals 0 exactly.
template <typename Tuple>
bool AllZero(const Tuple& values)
{
  return std::apply([](const auto&... value) { return ((value == 0) && ...); }, values);
}

} // namespace Math::Detail
