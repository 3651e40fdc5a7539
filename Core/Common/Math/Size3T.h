// An extent in space (a volume of voxels, a measurement region). A plain value: exact
// equality, stream output "width x height x depth", and a settings form without a class:
// leaves "Width", "Height", "Depth" of the element type; a missing leaf reads as 0.
#pragma once

#include <Core/Common/Math/Detail/GeometryFields.h>

#include <ostream>

namespace Math
{

template <typename T>
class Size3T
{
public:
  using value_type = T;

  T width{};
  T height{};
  T depth{};

  // 0 x 0 x 0.
  constexpr Size3T() = default;
  constexpr Size3T(T widthValue, T heightValue, T depthValue) :
      width(widthValue),
      height(heightValue),
      depth(depthValue)
  {
  }

  void Set(T widthValue, T heightValue, T depthValue)
  {
    width = widthValue;
    height = heightValue;
    depth = depthValue;
  }
  // True when every field equals 0 exactly.
  bool IsNull() const { return Detail::AllZero(AsTuple()); }

  // Exact comparison of every field, also for float and double.
  friend bool operator==(const Size3T&, const Size3T&) = default;
  // "width x height x depth"
  friend std::ostream& operator<<(std::ostream& out, const Size3T& s)
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
  auto AsTuple() { return std::tie(width, height, depth); }
  auto AsTuple() const { return std::tie(width, height, depth); }

private:
  static constexpr std::array<const char*, 3> LeafNames{"Width", "Height", "Depth"};
};

} // namespace Math
