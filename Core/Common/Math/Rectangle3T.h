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

#include <Core/Common/Math/Detail/CornerBox.h>
#include <Core/Common/Math/Point3T.h>
#include <Core/Common/Math/Size3T.h>

namespace Math
{

template <typename T>
class Rectangle3T : public Detail::CornerBox<Rectangle3T<T>, Point3T<T>, Size3T<T>>
{
public:
  using Detail::CornerBox<Rectangle3T<T>, Point3T<T>, Size3T<T>>::CornerBox;
};

} // namespace Math
