// A position in space. A plain value: exact equality, stream output "(x,y,z)", and a
// settings form: class "point3D", leaves "X", "Y", "Z" of the element type. A node of
// another class gives (0,0,0), a missing leaf reads as 0.
//
//   Math::Point3T<double> p(1, 2, 3);
//   Math::Point2T<double> onImage = p.ToPoint2();  // (1,2)
#pragma once

#include <Core/Common/Math/Detail/GeometryFields.h>
#include <Core/Common/Math/Point2T.h>
#include <Core/Common/Math/Vector3T.h>

#include <ostream>

namespace Math
{

template <typename T>
class Point3T
{
public:
  using value_type = T;

  T x{};
  T y{};
  T z{};

  // The origin.
  constexpr Point3T() = default;
  constexpr Point3T(T xValue, T yValue, T zValue) : x(xValue), y(yValue), z(zValue) {}
  // The point the vector leads to from the origin.
  constexpr explicit Point3T(const Vector3T<T>& v) : x(v.x), y(v.y), z(v.z) {}

  void Set(T xValue, T yValue, T zValue)
  {
    x = xValue;
    y = yValue;
    z = zValue;
  }
  // True when every field equals 0 exactly.
  bool IsNull() const { return Detail::AllZero(AsTuple()); }
  // The vector from the origin to this point.
  Vector3T<T> ToVector() const { return {x, y, z}; }
  // (x,y): z dropped.
  Point2T<T> ToPoint2() const { return {x, y}; }

  Point3T& operator+=(const Vector3T<T>& v) { return *this = *this + v; }
  Point3T& operator-=(const Vector3T<T>& v) { return *this = *this - v; }
  friend Point3T operator+(const Point3T& p, const Vector3T<T>& v)
  {
    return {T(p.x + v.x), T(p.y + v.y), T(p.z + v.z)};
  }
  friend Point3T operator-(const Point3T& p, const Vector3T<T>& v)
  {
    return {T(p.x - v.x), T(p.y - v.y), T(p.z - v.z)};
  }
  // The vector from b to a.
  friend Vector3T<T> operator-(const Point3T& a, const Point3T& b)
  {
    return {T(a.x - b.x), T(a.y - b.y), T(a.z - b.z)};
  }

  // Exact comparison of every field, also for float and double.
  friend bool operator==(const Point3T&, const Point3T&) = default;
  // "(x,y,z)"
  friend std::ostream& operator<<(std::ostream& out, const Point3T& p)
  {
    return Detail::PrintParenthesised(out, p.AsTuple());
  }

  Storage::Settings& SerializeTo(Storage::Settings& node) const
  {
    node.SetClass(QStringLiteral("point3D"));
    Detail::WriteLeaves(node, LeafNames, AsTuple());
    return node;
  }
  void DeserializeFrom(const Storage::Settings& node)
  {
    *this = Point3T();
    if (node.IsClass(QStringLiteral("point3D")))
      Detail::ReadLeaves(node, LeafNames, AsTuple());
  }

  // The fields in order, for generic code.
  auto AsTuple() { return std::tie(x, y, z); }
  auto AsTuple() const { return std::tie(x, y, z); }

private:
  static constexpr std::array<const char*, 3> LeafNames{"X", "Y", "Z"};
};

} // namespace Math
