// An axis-aligned box in space and time between its top-left corner (the minimum on every axis)
// and its bottom-right corner (the maximum), bounds included.
//
//   Math::Rectangle4T<int> volume(Math::Point4T<int>(0, 0, 0, 0), Math::Size4T<int>(64, 64, 8, 100));
//   volume.Contains(Math::Point4T<int>(64, 0, 8, 100));  // true
//
// The corners are kept as given: a box whose top-left corner lies beyond its bottom-right
// corner on some axis is not valid (IsValid) and contains nothing. Stream output: the
// top-left point, "; ", the bottom-right point. Settings form without a class: child
// nodes "TopLeft" and "BottomRight", each a Point4T; a missing child reads as the origin.
#pragma once

#include <Core/Common/Math/Detail/GeometryFields.h>
#include <Core/Common/Math/Point4T.h>
#include <Core/Common/Math/Size4T.h>

#include <ostream>

namespace Math
{

template <typename T>
class Rectangle4T
{
public:
  using value_type = T;

  // Both corners at the origin.
  constexpr Rectangle4T() = default;
  constexpr Rectangle4T(const Point4T<T>& topLeft, const Point4T<T>& bottomRight) :
      m_topLeft(topLeft),
      m_bottomRight(bottomRight)
  {
  }
  // From the top-left corner and the extent: the bottom-right corner is topLeft + size.
  Rectangle4T(const Point4T<T>& topLeft, const Size4T<T>& size) :
      m_topLeft(topLeft),
      m_bottomRight(Detail::Offset(topLeft, size))
  {
  }

  void Set(const Point4T<T>& topLeft, const Point4T<T>& bottomRight)
  {
    m_topLeft = topLeft;
    m_bottomRight = bottomRight;
  }
  const Point4T<T>& GetTopLeft() const { return m_topLeft; }
  const Point4T<T>& GetBottomRight() const { return m_bottomRight; }
  // bottomRight - topLeft on each axis; meaningful for a valid box.
  Size4T<T> GetSize() const { return Detail::Extent<Size4T<T>>(m_topLeft, m_bottomRight); }
  // True when the top-left corner is at most the bottom-right corner on every axis.
  bool IsValid() const { return Detail::AllLessEqual(m_topLeft, m_bottomRight); }
  // True when both corners are the origin.
  bool IsNull() const { return m_topLeft.IsNull() && m_bottomRight.IsNull(); }

  // True when point lies between the corners on every axis, bounds included.
  bool Contains(const Point4T<T>& point) const { return Detail::IsBetween(m_topLeft, m_bottomRight, point); }
  // True when both corners of other lie in this box.
  bool Contains(const Rectangle4T& other) const { return Contains(other.m_topLeft) && Contains(other.m_bottomRight); }
  // Enlarges this box just enough to contain point.
  Rectangle4T& operator|=(const Point4T<T>& point)
  {
    Detail::Enlarge(m_topLeft, m_bottomRight, point);
    return *this;
  }
  // Enlarges this box just enough to contain other.
  Rectangle4T& operator|=(const Rectangle4T& other) { return (*this |= other.m_topLeft) |= other.m_bottomRight; }

  // Exact comparison of both corners.
  friend bool operator==(const Rectangle4T&, const Rectangle4T&) = default;
  // "(x,y,z,t); (x,y,z,t)"
  friend std::ostream& operator<<(std::ostream& out, const Rectangle4T& r)
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
  Point4T<T> m_topLeft;
  Point4T<T> m_bottomRight;
};

} // namespace Math
