// A value that satisfied a predicate when it was made, and so always does.
//
//   using CdmCount = Zn::Constrained<std::uint32_t, Zn::NotZero>;
//   CdmCount n(3600);   // fine
//   CdmCount z(0);      // throws std::invalid_argument
#pragma once

#include <stdexcept>
#include <utility>

namespace Zn
{

struct NotZero
{
  template <typename T>
  constexpr bool operator()(const T& value) const
  {
    return value != T{};
  }
  static constexpr const char* description() { return "value must not be zero"; }
};

template <typename T, typename Predicate>
class Constrained
{
public:
  using value_type = T;

  // Throws std::invalid_argument when the predicate rejects value.
  constexpr explicit Constrained(T value) : m_value(std::move(value))
  {
    if (!Predicate{}(m_value))
      throw std::invalid_argument(Predicate::description());
  }

  constexpr const T& get() const { return m_value; }
  constexpr operator const T&() const { return m_value; }

  friend constexpr bool operator==(const Constrained&, const Constrained&) = default;
  friend constexpr auto operator<=>(const Constrained&, const Constrained&) = default;

private:
  T m_value;
};

} // namespace Zn
