// A position in the plane (image coordinates, calibration marks). A plain value: exact
// equality, stream output "(x,y)", and a settings form.
//
//   Math::Point2T<int> p(3, -4);
//   std::cout << p;                          // (3,-4)
//   p += Math::Vector2T<int>(1, 1);          // (4,-3)
//   p.SerializeTo(*settings.CreateNode("Mark"));
//   // <Mark class="point2D"><X class="int32" value="4"/><Y class="int32" value="-3"/></Mark>
//
// Reading also takes the older class "Point2" with the leaves "x" and "y"; a node of any
// other class gives (0,0), and a missing leaf reads as 0.
#pragma once

#include <Core/Common/Math/Detail/GeometryFields.h>
#include <Core/Common/Math/Vector2T.h>

#include <ostream>

namespace Math
{

template <typename T>
class Point2T
{
public:
  using value_type = T;

  T x{};
  T y{};

  // The origin.
  constexpr Point2T() = default;
  constexpr Point2T(T xValue, T yValue) : x(xValue), y(yValue) {}
  // The point the vector leads to from the origin.
  constexpr explicit Point2T(const Vector2T<T>& v) : x(v.x), y(v.y) {}

  void Set(T xValue, T yValue)
  {
    x = xValue;
    y = yValue;
  }
  // True when every field equals 0 exactly.
  bool IsNull() const { return Detail::AllZero(AsTuple()); }
  // The vector from the origin to this point.
  Vector2T<T> ToVector() const { return {x, y}; }

  Point2T& operator+=(const Vector2T<T>& v) { return *this = *this + v; }
  Point2T& operator-=(const Vector2T<T>& v) { return *this = *this - v; }
  friend Point2T operator+(const Point2T& p, const Vector2T<T>& v) { return {T(p.x + v.x), T(p.y + v.y)}; }
  friend Point2T operator-(const Point2T& p, const Vector2T<T>& v) { return {T(p.x - v.x), T(p.y - v.y)}; }
  // The vector from b to a.
  friend Vector2T<T> operator-(const Point2T& a, const Point2T& b) { return {T(a.x - b.x), T(a.y - b.y)}; }

  // Exact comparison of every field, also for float and double.
  friend bool operator==(const Point2T&, const Point2T&) = default;
  // "(x,y)"
  friend std::ostream& operator<<(std::ostream& out, const Point2T& p)
  {
    return Detail::PrintParenthesised(out, p.AsTuple());
  }

  Storage::Settings& SerializeTo(Storage::Settings& node) const
  {
    node.SetClass(QStringLiteral("point2D"));
    Detail::WriteLeaves(node, LeafNames, AsTuple());
    return node;
  }
  void DeserializeFrom(const Storage::Settings& node)
  {
    *this = Point2T();
    if (node.IsClass(QStringLiteral("point2D")))
      Detail::ReadLeaves(node, LeafNames, AsTuple());
    else if (node.IsClass(QStringLiteral("Point2")))
      Detail::ReadLeaves(node, OldLeafNames, AsTuple());
  }

  // The fields in order, for generic code.
  auto AsTuple() { return std::tie(x, y); }
  auto AsTuple() const { return std::tie(x, y); }

private:
  static constexpr std::array<const char*, 2> LeafNames{"X", "Y"};
  static constexpr std::array<const char*, 2> OldLeafNames{"x", "y"};
};

} // namespace Math
