// An extent in space and time (a volume over a series of images: the fourth extent runs
// along the t axis of Point4T). A plain value: exact equality, stream output
// "width x height x depth x duration", and a settings form without a class: leaves
// "Width", "Height", "Depth", "Duration" of the element type; a missing leaf reads as 0.
#pragma once

#include <Core/Common/Math/Detail/GeometryFields.h>

#include <ostream>

namespace Math
{

template <typename T>
class Size4T
{
public:
  using value_type = T;

  T width{};
  T height{};
  T depth{};
  T duration{};

  // 0 x 0 x 0 x 0.
  constexpr Size4T() = default;
  constexpr Size4T(T widthValue, T heightValue, T depthValue, T durationValue) :
      width(widthValue),
      height(heightValue),
      depth(depthValue),
      duration(durationValue)
  {
  }

  void Set(T widthValue, T heightValue, T depthValue, T durationValue)
  {
    width = widthValue;
    height = heightValue;
    depth = depthValue;
    duration = durationValue;
  }
  // True when every field equals 0 exactly.
  bool IsNull() const { return Detail::AllZero(AsTuple()); }

  // Exact comparison of every field, also for float and double.
  friend bool operator==(const Size4T&, const Size4T&) = default;
  // "width x height x depth x duration"
  friend std::ostream& operator<<(std::ostream& out, const Size4T& s)
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
  auto AsTuple() { return std::tie(width, height, depth, duration); }
  auto AsTuple() const { return std::tie(width, height, depth, duration); }

private:
  static constexpr std::array<const char*, 4> LeafNames{"Width", "Height", "Depth", "Duration"};
};

} // namespace Math
