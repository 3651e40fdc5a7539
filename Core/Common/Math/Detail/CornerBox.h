// The body shared by the boxes given by their top-left and bottom-right corners
// (Rectangle3T, Rectangle4T): Derived is the box itself, Point and Size its corner and
// extent types. Use the boxes; this base is public only because they are templates.
#pragma once

#include <Core/Common/Math/Detail/GeometryFields.h>

#include <ostream>

namespace Math::Detail
{

template <typename Derived, typename Point, typename Size>
class CornerBox
{
public:
  using value_type = typename Point::value_type;

  // Both corners at the origin.
  constexpr CornerBox() = default;
  constexpr CornerBox(const Point& topLeft, const Point& bottomRight) : m_topLeft(topLeft), m_bottomRight(bottomRight)
  {
  }
  // From the top-left corner and the extent: the bottom-right corner is topLeft + size.
  CornerBox(const Point& topLeft, const Size& size) : m_topLeft(topLeft), m_bottomRight(Offset(topLeft, size)) {}

  void Set(const Point& topLeft, const Point& bottomRight)
  {
    m_topLeft = topLeft;
    m_bottomRight = bottomRight;
  }
  const Point& GetTopLeft() const { return m_topLeft; }
  const Point& GetBottomRight() const { return m_bottomRight; }
  // bottomRight - topLeft on each axis; meaningful for a valid box.
  Size GetSize() const { return Extent<Size>(m_topLeft, m_bottomRight); }
  // True when the top-left corner is at most the bottom-right corner on every axis.
  bool IsValid() const { return AllLessEqual(m_topLeft, m_bottomRight); }
  // True when both corners are the origin.
  bool IsNull() const { return m_topLeft.IsNull() && m_bottomRight.IsNull(); }

  // True when point lies between the corners on every axis, bounds included.
  bool Contains(const Point& point) const { return IsBetween(m_topLeft, m_bottomRight, point); }
  // True when both corners of other lie in this box.
  bool Contains(const Derived& other) const { return Contains(other.GetTopLeft()) && Contains(other.GetBottomRight()); }
  // Enlarges this box just enough to contain point.
  Derived& operator|=(const Point& point)
  {
    Enlarge(m_topLeft, m_bottomRight, point);
    return static_cast<Derived&>(*this);
  }
  // Enlarges this box just enough to contain other.
  Derived& operator|=(const Derived& other) { return (*this |= other.GetTopLeft()) |= other.GetBottomRight(); }

  // Exact comparison of both corners.
  friend bool operator==(const Derived& a, const Derived& b)
  {
    return a.GetTopLeft() == b.GetTopLeft() && a.GetBottomRight() == b.GetBottomRight();
  }
  // The top-left point, "; ", the bottom-right point: "(x,y,z); (x,y,z)".
  friend std::ostream& operator<<(std::ostream& out, const Derived& r)
  {
    return out << r.GetTopLeft() << "; " << r.GetBottomRight();
  }

  Storage::Settings& SerializeTo(Storage::Settings& node) const
  {
    m_topLeft.SerializeTo(*node.CreateNode(QStringLiteral("TopLeft")));
    m_bottomRight.SerializeTo(*node.CreateNode(QStringLiteral("BottomRight")));
    return node;
  }
  void DeserializeFrom(const Storage::Settings& node)
  {
    ReadChild(node, QStringLiteral("TopLeft"), m_topLeft);
    ReadChild(node, QStringLiteral("BottomRight"), m_bottomRight);
  }

private:
  Point m_topLeft;
  Point m_bottomRight;
};

} // namespace Math::Detail
