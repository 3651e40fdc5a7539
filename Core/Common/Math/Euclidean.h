// A rigid motion of space: a rotation followed by a translation, p -> R * p + T (the
// pose of a camera in a calibration). Vectors are rotated only; points are rotated and
// moved.
//
//   Math::Euclidean cameraToWorld(Math::Vector3T<double>(0, 0, 500), Math::RotationMatrix3::AboutX(0.1));
//   Math::Point3T<double> world = cameraToWorld * Math::Point3T<double>(1, 2, 3);
//   Math::Point3T<double> again = cameraToWorld.Inverted() * world;  // (1,2,3) up to rounding
//
// Exact equality. Stream output: the translation, "; ", the rotation. Settings form:
// class "C_Euclidian" (so spelled in stored files), child nodes "m_zT" (the translation,
// a Vector3T) and "m_zR" (the rotation, a RotationMatrix3); a node of another class
// gives the identity, a missing child its identity part.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Math/Point3T.h>
#include <Core/Common/Math/RotationMatrix3.h>
#include <Core/Common/Math/Vector3T.h>

#include <ostream>

namespace Storage
{
class Settings;
}

namespace Math
{

class CORECOMMON_EXPORT Euclidean
{
public:
  // The identity: no translation, no rotation.
  Euclidean() = default;
  Euclidean(const Vector3T<double>& translation, const RotationMatrix3& rotation);

  const Vector3T<double>& GetTranslation() const { return m_translation; }
  void SetTranslation(const Vector3T<double>& translation) { m_translation = translation; }
  const RotationMatrix3& GetRotation() const { return m_rotation; }
  void SetRotation(const RotationMatrix3& rotation) { m_rotation = rotation; }

  // The motion that undoes this one: p -> R^T * (p - T). Throws RTE::InvalidArgumentError
  // when the rotation part is no rotation (see RotationMatrix3::Inverted).
  Euclidean Inverted() const;
  // Motion by other first, then by this.
  Euclidean& operator*=(const Euclidean& other);

  friend bool operator==(const Euclidean&, const Euclidean&) = default;

  Storage::Settings& SerializeTo(Storage::Settings& node) const;
  void DeserializeFrom(const Storage::Settings& node);

private:
  Vector3T<double> m_translation;
  RotationMatrix3 m_rotation;
};

// Motion by b first, then by a.
CORECOMMON_EXPORT Euclidean operator*(const Euclidean& a, const Euclidean& b);
// R * p + T for a point; R * v for a vector (a direction does not move).
CORECOMMON_EXPORT Point3T<double> operator*(const Euclidean& e, const Point3T<double>& p);
CORECOMMON_EXPORT Vector3T<double> operator*(const Euclidean& e, const Vector3T<double>& v);
// "(Tx,Ty,Tz); ((M1,M2,M3),(M4,M5,M6),(M7,M8,M9))"
CORECOMMON_EXPORT std::ostream& operator<<(std::ostream& out, const Euclidean& e);

} // namespace Math
