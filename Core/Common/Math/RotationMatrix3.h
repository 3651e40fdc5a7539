// A 3x3 rotation matrix of doubles (the orientation part of a camera calibration).
// Vectors are columns: R * v rotates v; A * B rotates by B first, then by A. Angles are
// in radians, positive counter-clockwise when looking down the axis towards the origin.
//
//   Math::RotationMatrix3 quarter = Math::RotationMatrix3::AboutZ(std::numbers::pi / 2);
//   Math::Vector3T<double> y = quarter * Math::Vector3T<double>(1, 0, 0);  // (0,1,0)
//   Math::RotationMatrix3 back = quarter.Inverted();
//
// Exact equality of the nine elements. Stream output: the rows, "((M1,M2,M3),(M4,M5,M6),
// (M7,M8,M9))". Settings form: class "C_RMatrix3D", leaves "M1" to "M9" (double), row by
// row; a node of another class gives the identity, a missing leaf keeps the identity's
// element.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Math/Point3T.h>
#include <Core/Common/Math/Vector3T.h>

#include <array>
#include <ostream>

namespace Storage
{
class Settings;
}

namespace Math
{

class CORECOMMON_EXPORT RotationMatrix3
{
public:
  // The identity.
  RotationMatrix3();
  // The nine elements row by row, taken as they are (see IsRotation).
  RotationMatrix3(double m1, double m2, double m3, double m4, double m5, double m6, double m7, double m8, double m9);
  explicit RotationMatrix3(const std::array<double, 9>& rowByRow);

  // The rotation by angle radians about the x, y or z axis.
  static RotationMatrix3 AboutX(double angle);
  static RotationMatrix3 AboutY(double angle);
  static RotationMatrix3 AboutZ(double angle);
  // The rotation by angle radians about axis (any length but 0; throws
  // RTE::InvalidArgumentError for the zero vector).
  static RotationMatrix3 AboutAxis(const Vector3T<double>& axis, double angle);

  // The element in row and column (0 to 2 each); throws RTE::OutOfRangeError beyond.
  double operator()(int row, int column) const;
  // M1..M9 row by row.
  const std::array<double, 9>& GetElements() const { return m_elements; }

  double Determinant() const;
  // Whether the rows are orthonormal and the determinant is +1, each within tolerance:
  // a proper rotation, not a mirror or a scale.
  bool IsRotation(double tolerance = 1e-9) const;
  RotationMatrix3 Transposed() const;
  // The inverse rotation: the transpose. Throws RTE::InvalidArgumentError when this is
  // no rotation within 1e-6 (the transpose would be no inverse then).
  RotationMatrix3 Inverted() const;

  // Rotation by other first, then by this.
  RotationMatrix3& operator*=(const RotationMatrix3& other);

  friend bool operator==(const RotationMatrix3&, const RotationMatrix3&) = default;

  Storage::Settings& SerializeTo(Storage::Settings& node) const;
  void DeserializeFrom(const Storage::Settings& node);

private:
  std::array<double, 9> m_elements;
};

// Rotation by b first, then by a.
CORECOMMON_EXPORT RotationMatrix3 operator*(const RotationMatrix3& a, const RotationMatrix3& b);
// The rotated vector; the rotated point (rotated about the origin).
CORECOMMON_EXPORT Vector3T<double> operator*(const RotationMatrix3& r, const Vector3T<double>& v);
CORECOMMON_EXPORT Point3T<double> operator*(const RotationMatrix3& r, const Point3T<double>& p);
// "((M1,M2,M3),(M4,M5,M6),(M7,M8,M9))"
CORECOMMON_EXPORT std::ostream& operator<<(std::ostream& out, const RotationMatrix3& r);

} // namespace Math
