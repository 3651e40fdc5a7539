// An interval whose lower and upper ends are each optional; a missing end is unbounded.
// Both present ends belong to the interval (closed interval).
//
//   Zn::Interval<int> atLeastTen{10, std::nullopt};
//   atLeastTen.contains(12);  // true
#pragma once

#include <optional>
#include <utility>

namespace Zn
{

template <typename T>
class Interval
{
public:
  constexpr Interval() = default;
  constexpr Interval(std::optional<T> lower, std::optional<T> upper) :
      m_lower(std::move(lower)),
      m_upper(std::move(upper))
  {
  }

  constexpr const std::optional<T>& lower() const { return m_lower; }
  constexpr const std::optional<T>& upper() const { return m_upper; }
  constexpr bool hasLower() const { return m_lower.has_value(); }
  constexpr bool hasUpper() const { return m_upper.has_value(); }

  // lower <= value <= upper, each comparison only where the end is present.
  constexpr bool contains(const T& value) const
  {
    return (!m_lower || !(value < *m_lower)) && (!m_upper || !(*m_upper < value));
  }

  friend constexpr bool operator==(const Interval&, const Interval&) = default;

private:
  std::optional<T> m_lower;
  std::optional<T> m_upper;
};

} // namespace Zn
