// A displacement in space: the difference of two Point3T, with the arithmetic of vectors.
// Integer vectors keep their element type (sums wrap as the type does).
//
//   Math::Vector3T<double> x(1, 0, 0), y(0, 1, 0);
//   Math::Vector3T<double> z = x.Cross(y);  // (0,0,1)
//
// Settings form: class "vector3D", leaves "X", "Y", "Z".
#pragma once

#include <Core/Common/Math/Detail/GeometryFields.h>

#include <cmath>
#include <concepts>
#include <ostream>

namespace Math
{

template <typename T>
class Vector3T
{
public:
  using value_type = T;

  T x{};
  T y{};
  T z{};

  // The zero vector.
  constexpr Vector3T() = default;
  constexpr Vector3T(T xValue, T yValue, T zValue) : x(xValue), y(yValue), z(zValue) {}

  void Set(T xValue, T yValue, T zValue)
  {
    x = xValue;
    y = yValue;
    z = zValue;
  }
  // True when every field equals 0 exactly.
  bool IsNull() const { return Detail::AllZero(AsTuple()); }

  // Euclidean length and dot product, computed in double.
  double Length() const { return std::hypot(double(x), double(y), double(z)); }
  double Dot(const Vector3T& other) const { return double(x) * other.x + double(y) * other.y + double(z) * other.z; }
  // The right-handed cross product this x other.
  Vector3T Cross(const Vector3T& other) const
  {
    return {T(y * other.z - z * other.y), T(z * other.x - x * other.z), T(x * other.y - y * other.x)};
  }
  // This vector scaled to length 1; throws RTE::InvalidArgumentError for the zero vector.
  Vector3T Normalized() const requires std::floating_point<T>
  {
    const double length = Length();
    if (length == 0.0)
      Detail::RaiseZeroLength();
    return {T(x / length), T(y / length), T(z / length)};
  }

  Vector3T& operator+=(const Vector3T& other) { return *this = *this + other; }
  Vector3T& operator-=(const Vector3T& other) { return *this = *this - other; }
  Vector3T& operator*=(T factor) { return *this = *this * factor; }
  Vector3T& operator/=(T divisor) { return *this = *this / divisor; }

  friend Vector3T operator+(const Vector3T& a, const Vector3T& b) { return {T(a.x + b.x), T(a.y + b.y), T(a.z + b.z)}; }
  friend Vector3T operator-(const Vector3T& a, const Vector3T& b) { return {T(a.x - b.x), T(a.y - b.y), T(a.z - b.z)}; }
  friend Vector3T operator-(const Vector3T& v) { return {T(-v.x), T(-v.y), T(-v.z)}; }
  friend Vector3T operator*(const Vector3T& v, T factor) { return {T(v.x * factor), T(v.y * factor), T(v.z * factor)}; }
  friend Vector3T operator*(T factor, const Vector3T& v) { return v * factor; }
  // Throws RTE::InvalidArgumentError when an integer vector is divided by 0.
  friend Vector3T operator/(const Vector3T& v, T divisor)
  {
    if constexpr (std::integral<T>)
      if (divisor == 0)
        Detail::RaiseDivisionByZero();
    return {T(v.x / divisor), T(v.y / divisor), T(v.z / divisor)};
  }

  // Exact comparison of every field, also for float and double.
  friend bool operator==(const Vector3T&, const Vector3T&) = default;
  // "(x,y,z)"
  friend std::ostream& operator<<(std::ostream& out, const Vector3T& v)
  {
    return Detail::PrintParenthesised(out, v.AsTuple());
  }

  Storage::Settings& SerializeTo(Storage::Settings& node) const
  {
    node.SetClass(QStringLiteral("vector3D"));
    Detail::WriteLeaves(node, LeafNames, AsTuple());
    return node;
  }
  // Another class gives the zero vector; a missing leaf reads as 0.
  void DeserializeFrom(const Storage::Settings& node)
  {
    *this = Vector3T();
    if (node.IsClass(QStringLiteral("vector3D")))
      Detail::ReadLeaves(node, LeafNames, AsTuple());
  }

  // The fields in order, for generic code.
  auto AsTuple() { return std::tie(x, y, z); }
  auto AsTuple() const { return std::tie(x, y, z); }

private:
  static constexpr std::array<const char*, 3> LeafNames{"X", "Y", "Z"};
};

} // namespace Math
