// A value made distinct by a tag type, so that an exposure index cannot be passed
// where a mark index is expected.
//
//   struct ExposureTag {};
//   using ExposureIndex = Zn::NamedParm<std::uint64_t, ExposureTag>;
//   ExposureIndex i{42};
//   std::uint64_t raw = i.get();
#pragma once

#include <compare>
#include <utility>

namespace Zn
{

template <typename T, typename Tag>
class NamedParm
{
public:
  using value_type = T;
  using tag_type = Tag;

  constexpr NamedParm() = default;
  constexpr explicit NamedParm(T value) : m_value(std::move(value)) {}

  constexpr T& get() { return m_value; }
  constexpr const T& get() const { return m_value; }

  friend constexpr bool operator==(const NamedParm&, const NamedParm&) = default;
  friend constexpr auto operator<=>(const NamedParm&, const NamedParm&) = default;

private:
  T m_value{};
};

} // namespace Zn
