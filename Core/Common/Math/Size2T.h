// An extent in the plane (image sizes, region sizes). A plain value: exact equality,
// stream output "width x height", and a settings form without a class: leaves "Width"
// and "Height" of the element type; a missing leaf reads as 0.
//
//   Math::Size2T<unsigned int> sensor(1280, 1024);
//   std::cout << sensor;  // 1280 x 1024
#pragma once

#include <Core/Common/Math/Detail/GeometryFields.h>

#include <ostream>

namespace Math
{

template <typename T>
class Size2T
{
public:
  using value_type = T;

  T width{};
  T height{};

  // 0 x 0.
  constexpr Size2T() = default;
  constexpr Size2T(T widthValue, T heightValue) : width(widthValue), height(heightValue) {}

  void Set(T widthValue, T heightValue)
  {
    width = widthValue;
    height = heightValue;
  }
  // True when every field equals 0 exactly.
  bool IsNull() const { return Detail::AllZero(AsTuple()); }

  // Exact comparison of every field, also for float and double.
  friend bool operator==(const Size2T&, const Size2T&) = default;
  // "width x height"
  friend std::ostream& operator<<(std::ostream& out, const Size2T& s)
  {
    Detail::PrintFields(out, s.AsTuple(), " x ");
    return out;
  }

  Storage::Settings& SerializeTo(Storage::Settings& node) const
  {
    Detail::WriteLeaves(node, LeafNames, AsTuple());
    return node;
  }
  void DeserializeFrom(const Storage::Settings& node) { Detail::ReadLeaves(node, LeafNames, AsTuple()); }

  // The fields in order, for generic code.
  auto AsTuple() { return std::tie(width, height); }
  auto AsTuple() const { return std::tie(width, height); }

private:
  static constexpr std::array<const char*, 2> LeafNames{"Width", "Height"};
};

} // namespace Math
