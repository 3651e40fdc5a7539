// A position in space and time (t: the fourth axis, usually time or image index). A
// plain value: exact equality, stream output "(x,y,z,t)", and a settings form: class
// "point4D", leaves "X", "Y", "Z", "T" of the element type. A node of another class
// gives (0,0,0,0), a missing leaf reads as 0.
#pragma once

#include <Core/Common/Math/Detail/GeometryFields.h>
#include <Core/Common/Math/Point3T.h>

#include <ostream>

namespace Math
{

template <typename T>
class Point4T
{
public:
  using value_type = T;

  T x{};
  T y{};
  T z{};
  T t{};

  // The origin.
  constexpr Point4T() = default;
  constexpr Point4T(T xValue, T yValue, T zValue, T tValue) : x(xValue), y(yValue), z(zValue), t(tValue) {}

  void Set(T xValue, T yValue, T zValue, T tValue)
  {
    x = xValue;
    y = yValue;
    z = zValue;
    t = tValue;
  }
  // True when every field equals 0 exactly.
  bool IsNull() const { return Detail::AllZero(AsTuple()); }
  // (x,y,z): t dropped.
  Point3T<T> ToPoint3() const { return {x, y, z}; }

  // Exact comparison of every field, also for float and double.
  friend bool operator==(const Point4T&, const Point4T&) = default;
  // "(x,y,z,t)"
  friend std::ostream& operator<<(std::ostream& out, const Point4T& p)
  {
    return Detail::PrintParenthesised(out, p.AsTuple());
  }

  Storage::Settings& SerializeTo(Storage::Settings& node) const
  {
    node.SetClass(QStringLiteral("point4D"));
    Detail::WriteLeaves(node, LeafNames, AsTuple());
    return node;
  }
  void DeserializeFrom(const Storage::Settings& node)
  {
    *this = Point4T();
    if (node.IsClass(QStringLiteral("point4D")))
      Detail::ReadLeaves(node, LeafNames, AsTuple());
  }

  // The fields in order, for generic code.
  auto AsTuple() { return std::tie(x, y, z, t); }
  auto AsTuple() const { return std::tie(x, y, z, t); }

private:
  static constexpr std::array<const char*, 4> LeafNames{"X", "Y", "Z", "T"};
};

} // namespace Math
