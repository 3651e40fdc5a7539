// An axis-aligned region of the plane between a minimum and a maximum corner, bounds
// included (a region of interest on an image).
//
//   Math::Rectangle2T<int> roi(Math::Point2T<int>(0, 0), Math::Size2T<int>(10, 10));
//   roi.Contains(Math::Point2T<int>(10, 10));  // true: the maximum corner belongs to it
//   roi |= Math::Point2T<int>(-5, 3);          // now (-5,0); (10,10)
//
// The corners are kept as given: a rectangle whose minimum lies above its maximum on
// some axis is not valid (IsValid) and contains nothing. Stream output: the minimum
// point, "; ", the maximum point. Settings form: class "Rectangle", child nodes "Min"
// and "Max", each a Point2T; a node of another class gives the null rectangle.
#pragma once

#include <Core/Common/Math/Detail/GeometryFields.h>
#include <Core/Common/Math/Point2T.h>
#include <Core/Common/Math/Size2T.h>

#include <ostream>

namespace Math
{

template <typename T>
class Rectangle2T
{
public:
  using value_type = T;

  // Both corners at the origin.
  constexpr Rectangle2T() = default;
  constexpr Rectangle2T(const Point2T<T>& min, const Point2T<T>& max) : m_min(min), m_max(max) {}
  // From the minimum corner and the extent: the maximum corner is min + size.
  Rectangle2T(const Point2T<T>& min, const Size2T<T>& size) : m_min(min), m_max(Detail::Offset(min, size)) {}

  void Set(const Point2T<T>& min, const Point2T<T>& max)
  {
    m_min = min;
    m_max = max;
  }
  const Point2T<T>& GetMin() const { return m_min; }
  const Point2T<T>& GetMax() const { return m_max; }
  // max - min on each axis; meaningful for a valid rectangle.
  Size2T<T> GetSize() const { return Detail::Extent<Size2T<T>>(m_min, m_max); }
  // True when the minimum corner is at most the maximum corner on every axis.
  bool IsValid() const { return Detail::AllLessEqual(m_min, m_max); }
  // True when both corners are the origin.
  bool IsNull() const { return m_min.IsNull() && m_max.IsNull(); }

  // min.x <= x <= max.x and min.y <= y <= max.y.
  bool Contains(const Point2T<T>& point) const { return Detail::IsBetween(m_min, m_max, point); }
  // True when both corners of other lie in this rectangle.
  bool Contains(const Rectangle2T& other) const { return Contains(other.m_min) && Contains(other.m_max); }
  // Enlarges this rectangle just enough to contain point.
  Rectangle2T& operator|=(const Point2T<T>& point)
  {
    Detail::Enlarge(m_min, m_max, point);
    return *this;
  }
  // Enlarges this rectangle just enough to contain other.
  Rectangle2T& operator|=(const Rectangle2T& other) { return (*this |= other.m_min) |= other.m_max; }

  // Exact comparison of both corners.
  friend bool operator==(const Rectangle2T&, const Rectangle2T&) = default;
  // "(minx,miny); (maxx,maxy)"
  friend std::ostream& operator<<(std::ostream& out, const Rectangle2T& r) { return out << r.m_min << "; " << r.m_max; }

  Storage::Settings& SerializeTo(Storage::Settings& node) const
  {
    node.SetClass(QStringLiteral("Rectangle"));
    m_min.SerializeTo(*node.CreateNode(QStringLiteral("Min")));
    m_max.SerializeTo(*node.CreateNode(QStringLiteral("Max")));
    return node;
  }
  void DeserializeFrom(const Storage::Settings& node)
  {
    *this = Rectangle2T();
    if (!node.IsClass(QStringLiteral("Rectangle")))
      return;
    Detail::ReadChild(node, QStringLiteral("Min"), m_min);
    Detail::ReadChild(node, QStringLiteral("Max"), m_max);
  }

private:
  Point2T<T> m_min;
  Point2T<T> m_max;
};

} // namespace Math
