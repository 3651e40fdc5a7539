// An axis-aligned box in space between its top-left corner (the minimum on every axis)
// and its bottom-right corner (the maximum), bounds included.
//
//   Math::Rectangle3T<int> volume(Math::Point3T<int>(0, 0, 0), Math::Size3T<int>(64, 64, 8));
//   volume.Contains(Math::Point3T<int>(64, 0, 8));  // true
//
// The corners are kept as given: a box whose top-left corner lies beyond its bottom-right
// corner on some axis is not valid (IsValid) and contains nothing. Stream output: the
// top-left point, "; ", the bottom-right point. Settings form without a class: child
// nodes "TopLeft" and "BottomRight", each a Point3T; a missing child reads as the origin.
#pragma once

#include <Core/Common/Math/Detail/GeometryFields.h>
#include <Core/Common/Math/Point3T.h>
#include <Core/Common/Math/Size3T.h>

#include <ostream>

namespace Math
{

template <typename T>
class Rectangle3T
{
public:
  using value_type = T;

  // Both corners at the origin.
  constexpr Rectangle3T() = default;
  constexpr Rectangle3T(const Point3T<T>& topLeft, const Point3T<T>& bottomRight) :
      m_topLeft(topLeft),
      m_bottomRight(bottomRight)
  {
  }
  // From the top-left corner and the extent: the bottom-right corner is topLeft + size.
  Rectangle3T(const Point3T<T>& topLeft, const Size3T<T>& size) :
      m_topLeft(topLeft),
      m_bottomRight(Detail::Offset(topLeft, size))
  {
  }

  void Set(const Point3T<T>& topLeft, const Point3T<T>& bottomRight)
  {
    m_topLeft = topLeft;
    m_bottomRight = bottomRight;
  }
  const Point3T<T>& GetTopLeft() const { return m_topLeft; }
  const Point3T<T>& GetBottomRight() const { return m_bottomRight; }
  // bottomRight - topLeft on each axis; meaningful for a valid box.
  Size3T<T> GetSize() const { return Detail::Extent<Size3T<T>>(m_topLeft, m_bottomRight); }
  // True when the top-left corner is at most the bottom-right corner on every axis.
  bool IsValid() const { return Detail::AllLessEqual(m_topLeft, m_bottomRight); }
  // True when both corners are the origin.
  bool IsNull() const { return m_topLeft.IsNull() && m_bottomRight.IsNull(); }

  // True when point lies between the corners on every axis, bounds included.
  bool Contains(const Point3T<T>& point) const { return Detail::IsBetween(m_topLeft, m_bottomRight, point); }
  // True when both corners of other lie in this box.
  bool Contains(const Rectangle3T& other) const { return Contains(other.m_topLeft) && Contains(other.m_bottomRight); }
  // Enlarges this box just enough to contain point.
  Rectangle3T& operator|=(const Point3T<T>& point)
  {
    Detail::Enlarge(m_topLeft, m_bottomRight, point);
    return *this;
  }
  // Enlarges this box just enough to contain other.
  Rectangle3T& operator|=(const Rectangle3T& other) { return (*this |= other.m_topLeft) |= other.m_bottomRight; }

  // Exact comparison of both corners.
  friend bool operator==(const Rectangle3T&, const Rectangle3T&) = default;
  // "(x,y,z); (x,y,z)"
  friend std::ostream& operator<<(std::ostream& out, const Rectangle3T& r)
  {
    return out << r.m_topLeft << "; " << r.m_bottomRight;
  }

  Storage::Settings& SerializeTo(Storage::Settings& node) const
  {
    m_topLeft.SerializeTo(*node.CreateNode(QStringLiteral("TopLeft")));
    m_bottomRight.SerializeTo(*node.CreateNode(QStringLiteral("BottomRight")));
    return node;
  }
  void DeserializeFrom(const Storage::Settings& node)
  {
    Detail::ReadChild(node, QStringLiteral("TopLeft"), m_topLeft);
    Detail::ReadChild(node, QStringLiteral("BottomRight"), m_bottomRight);
  }

private:
  Point3T<T> m_topLeft;
  Point3T<T> m_bottomRight;
};

} // namespace Math
