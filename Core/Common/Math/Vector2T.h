// A displacement in the plane: the difference of two Point2T, with the arithmetic of
// vectors. Integer vectors keep their element type (sums wrap as the type does).
//
//   Math::Vector2T<double> v(3, 4);
//   double length = v.Length();            // 5
//   Math::Vector2T<double> half = v / 2.0; // (1.5,2)
//
// Settings form: class "vector2D", leaves "X", "Y".
#pragma once

#include <Core/Common/Math/Detail/GeometryFields.h>

#include <cmath>
#include <concepts>
#include <ostream>

namespace Math
{

template <typename T>
class Vector2T
{
public:
  using value_type = T;

  T x{};
  T y{};

  // The zero vector.
  constexpr Vector2T() = default;
  constexpr Vector2T(T xValue, T yValue) : x(xValue), y(yValue) {}

  void Set(T xValue, T yValue)
  {
    x = xValue;
    y = yValue;
  }
  // True when every field equals 0 exactly.
  bool IsNull() const { return Detail::AllZero(AsTuple()); }

  // Euclidean length; Dot and Cross computed in double.
  double Length() const { return std::hypot(double(x), double(y)); }
  double Dot(const Vector2T& other) const { return double(x) * other.x + double(y) * other.y; }
  // The z component of the 3D cross product: positive when other lies counter-clockwise.
  double Cross(const Vector2T& other) const { return double(x) * other.y - double(y) * other.x; }
  // This vector scaled to length 1; throws RTE::InvalidArgumentError for the zero vector.
  Vector2T Normalized() const requires std::floating_point<T>
  {
    const double length = Length();
    if (length == 0.0)
      Detail::RaiseZeroLength();
    return {T(x / length), T(y / length)};
  }

  Vector2T& operator+=(const Vector2T& other) { return *this = *this + other; }
  Vector2T& operator-=(const Vector2T& other) { return *this = *this - other; }
  Vector2T& operator*=(T factor) { return *this = *this * factor; }
  Vector2T& operator/=(T divisor) { return *this = *this / divisor; }

  friend Vector2T operator+(const Vector2T& a, const Vector2T& b) { return {T(a.x + b.x), T(a.y + b.y)}; }
  friend Vector2T operator-(const Vector2T& a, const Vector2T& b) { return {T(a.x - b.x), T(a.y - b.y)}; }
  friend Vector2T operator-(const Vector2T& v) { return {T(-v.x), T(-v.y)}; }
  friend Vector2T operator*(const Vector2T& v, T factor) { return {T(v.x * factor), T(v.y * factor)}; }
  friend Vector2T operator*(T factor, const Vector2T& v) { return v * factor; }
  // Throws RTE::InvalidArgumentError when an integer vector is divided by 0.
  friend Vector2T operator/(const Vector2T& v, T divisor)
  {
    if constexpr (std::integral<T>)
      if (divisor == 0)
        Detail::RaiseDivisionByZero();
    return {T(v.x / divisor), T(v.y / divisor)};
  }

  // Exact comparison of every field, also for float and double.
  friend bool operator==(const Vector2T&, const Vector2T&) = default;
  // "(x,y)"
  friend std::ostream& operator<<(std::ostream& out, const Vector2T& v)
  {
    return Detail::PrintParenthesised(out, v.AsTuple());
  }

  Storage::Settings& SerializeTo(Storage::Settings& node) const
  {
    node.SetClass(QStringLiteral("vector2D"));
    Detail::WriteLeaves(node, LeafNames, AsTuple());
    return node;
  }
  // Another class gives the zero vector; a missing leaf reads as 0.
  void DeserializeFrom(const Storage::Settings& node)
  {
    *this = Vector2T();
    if (node.IsClass(QStringLiteral("vector2D")))
      Detail::ReadLeaves(node, LeafNames, AsTuple());
  }

  // The fields in order, for generic code.
  auto AsTuple() { return std::tie(x, y); }
  auto AsTuple() const { return std::tie(x, y); }

private:
  static constexpr std::array<const char*, 2> LeafNames{"X", "Y"};
};

} // namespace Math
