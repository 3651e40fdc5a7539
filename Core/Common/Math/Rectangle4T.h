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

#include <Core/Common/Math/Detail/CornerBox.h>
#include <Core/Common/Math/Point4T.h>
#include <Core/Common/Math/Size4T.h>

namespace Math
{

template <typename T>
class Rectangle4T : public Detail::CornerBox<Rectangle4T<T>, Point4T<T>, Size4T<T>>
{
public:
  using Detail::CornerBox<Rectangle4T<T>, Point4T<T>, Size4T<T>>::CornerBox;
};

} // namespace Math
