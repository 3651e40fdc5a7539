#include <Core/Common/Math/Euclidean.h>

#include <Core/Common/Storage/Settings.h>

namespace Math
{

Euclidean::Euclidean(const Vector3T<double>& translation, const RotationMatrix3& rotation) :
    m_translation(translation),
    m_rotation(rotation)
{
}

Euclidean Euclidean::Inverted() const
{
  const RotationMatrix3 back = m_rotation.Inverted();
  return Euclidean(-(back * m_translation), back);
}

Euclidean& Euclidean::operator*=(const Euclidean& other)
{
  return *this = *this * other;
}

Euclidean operator*(const Euclidean& a, const Euclidean& b)
{
  // a(b(p)) = Ra * (Rb * p + Tb) + Ta
  return Euclidean(a.GetRotation() * b.GetTranslation() + a.GetTranslation(), a.GetRotation() * b.GetRotation());
}

Point3T<double> operator*(const Euclidean& e, const Point3T<double>& p)
{
  return e.GetRotation() * p + e.GetTranslation();
}

Vector3T<double> operator*(const Euclidean& e, const Vector3T<double>& v)
{
  return e.GetRotation() * v;
}

std::ostream& operator<<(std::ostream& out, const Euclidean& e)
{
  return out << e.GetTranslation() << "; " << e.GetRotation();
}

Storage::Settings& Euclidean::SerializeTo(Storage::Settings& node) const
{
  node.SetClass(QStringLiteral("C_Euclidian"));
  m_translation.SerializeTo(*node.CreateNode(QStringLiteral("m_zT")));
  m_rotation.SerializeTo(*node.CreateNode(QStringLiteral("m_zR")));
  return node;
}

void Euclidean::DeserializeFrom(const Storage::Settings& node)
{
  *this = Euclidean();
  if (!node.IsClass(QStringLiteral("C_Euclidian")))
    return;
  Detail::ReadChild(node, QStringLiteral("m_zT"), m_translation);
  Detail::ReadChild(node, QStringLiteral("m_zR"), m_rotation);
}

} // namespace Math
