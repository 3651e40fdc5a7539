// The axis-aligned box around a set of points in space, between a minimum and a maximum
// corner, bounds included (the extent of a calibrated volume, of a point cloud).
//
//   Math::BoundingBoxT<double> box(points.front(), points.front());
//   for (const Math::Point3T<double>& p : points)
//     box |= p;
//
// The corners are kept as given: a box whose minimum lies above its maximum on some axis
// is not valid (IsValid) and contains nothing. Stream output: the minimum point, "; ",
// the maximum point. Settings form: class "BoundingBox", child nodes "Min" and "Max",
// each a Point3T; a node of another class gives the null box.
#pragma once

#include <Core/Common/Math/Detail/GeometryFields.h>
#include <Core/Common/Math/Point3T.h>
#include <Core/Common/Math/Size3T.h>

#include <ostream>

namespace Math
{

template <typename T>
class BoundingBoxT
{
public:
  using value_type = T;

  // Both corners at the origin.
  constexpr BoundingBoxT() = default;
  constexpr BoundingBoxT(const Point3T<T>& min, const Point3T<T>& max) : m_min(min), m_max(max) {}

  void Set(const Point3T<T>& min, const Point3T<T>& max)
  {
    m_min = min;
    m_max = max;
  }
  const Point3T<T>& GetMin() const { return m_min; }
  const Point3T<T>& GetMax() const { return m_max; }
  // max - min on each axis; meaningful for a valid box.
  Size3T<T> GetSize() const { return Detail::Extent<Size3T<T>>(m_min, m_max); }
  // True when the minimum corner is at most the maximum corner on every axis.
  bool IsValid() const { return Detail::AllLessEqual(m_min, m_max); }
  // True when both corners are the origin.
  bool IsNull() const { return m_min.IsNull() && m_max.IsNull(); }

  // True when point lies between the corners on every axis, bounds included.
  bool Contains(const Point3T<T>& point) const { return Detail::IsBetween(m_min, m_max, point); }
  // True when both corners of other lie in this box.
  bool Contains(const BoundingBoxT& other) const { return Contains(other.m_min) && Contains(other.m_max); }
  // Enlarges this box just enough to contain point.
  BoundingBoxT& operator|=(const Point3T<T>& point)
  {
    Detail::Enlarge(m_min, m_max, point);
    return *this;
  }
  // Enlarges this box just enough to contain other.
  BoundingBoxT& operator|=(const BoundingBoxT& other) { return (*this |= other.m_min) |= other.m_max; }

  // Exact comparison of both corners.
  friend bool operator==(const BoundingBoxT&, const BoundingBoxT&) = default;
  // "(x,y,z); (x,y,z)"
  friend std::ostream& operator<<(std::ostream& out, const BoundingBoxT& b)
  {
    return out << b.m_min << "; " << b.m_max;
  }

  Storage::Settings& SerializeTo(Storage::Settings& node) const
  {
    node.SetClass(QStringLiteral("BoundingBox"));
    m_min.SerializeTo(*node.CreateNode(QStringLiteral("Min")));
    m_max.SerializeTo(*node.CreateNode(QStringLiteral("Max")));
    return node;
  }
  void DeserializeFrom(const Storage::Settings& node)
  {
    *this = BoundingBoxT();
    if (!node.IsClass(QStringLiteral("BoundingBox")))
      return;
    Detail::ReadChild(node, QStringLiteral("Min"), m_min);
    Detail::ReadChild(node, QStringLiteral("Max"), m_max);
  }

private:
  Point3T<T> m_min;
  Point3T<T> m_max;
};

} // namespace Math
