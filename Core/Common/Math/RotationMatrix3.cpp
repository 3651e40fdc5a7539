#include <Core/Common/Math/RotationMatrix3.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Storage/Settings.h>

#include <QCoreApplication>

#include <algorithm>
#include <cmath>

namespace Math
{

namespace
{

constexpr std::array<double, 9> identity{1, 0, 0, 0, 1, 0, 0, 0, 1};

const QString& className()
{
  static const QString name = QStringLiteral("C_RMatrix3D");
  return name;
}

QString leafName(std::size_t index)
{
  return QStringLiteral("M%1").arg(index + 1);
}

// Rotation about a unit axis (Rodrigues' formula).
RotationMatrix3 aboutUnitAxis(double x, double y, double z, double angle)
{
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  const double t = 1.0 - c;
  return RotationMatrix3(t * x * x + c, t * x * y - s * z, t * x * z + s * y, //
                         t * x * y + s * z, t * y * y + c, t * y * z - s * x, //
                         t * x * z - s * y, t * y * z + s * x, t * z * z + c);
}

} // namespace

RotationMatrix3::RotationMatrix3() : m_elements(identity) {}

RotationMatrix3::RotationMatrix3(double m1, double m2, double m3, double m4, double m5, double m6, double m7, double m8,
                                 double m9) :
    m_elements{m1, m2, m3, m4, m5, m6, m7, m8, m9}
{
}

RotationMatrix3::RotationMatrix3(const std::array<double, 9>& rowByRow) : m_elements(rowByRow) {}

// The axis rotations are written out rather than taken from AboutAxis so that their zero
// elements are exactly zero.
RotationMatrix3 RotationMatrix3::AboutX(double angle)
{
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  return RotationMatrix3(1, 0, 0, 0, c, -s, 0, s, c);
}

RotationMatrix3 RotationMatrix3::AboutY(double angle)
{
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  return RotationMatrix3(c, 0, s, 0, 1, 0, -s, 0, c);
}

RotationMatrix3 RotationMatrix3::AboutZ(double angle)
{
  const double c = std::cos(angle);
  const double s = std::sin(angle);
  return RotationMatrix3(c, -s, 0, s, c, 0, 0, 0, 1);
}

RotationMatrix3 RotationMatrix3::AboutAxis(const Vector3T<double>& axis, double angle)
{
  const Vector3T<double> unit = axis.Normalized();
  return aboutUnitAxis(unit.x, unit.y, unit.z, angle);
}

double RotationMatrix3::operator()(int row, int column) const
{
  if (row < 0 || row > 2 || column < 0 || column > 2)
    RTE::Raise(RTE::OutOfRangeError(
        QCoreApplication::translate("Math::RotationMatrix3", "No element in row %1, column %2 of a 3x3 matrix")
            .arg(row)
            .arg(column)));
  return m_elements[static_cast<std::size_t>(row * 3 + column)];
}

double RotationMatrix3::Determinant() const
{
  const auto& m = m_elements;
  return m[0] * (m[4] * m[8] - m[5] * m[7]) - m[1] * (m[3] * m[8] - m[5] * m[6]) + m[2] * (m[3] * m[7] - m[4] * m[6]);
}

bool RotationMatrix3::IsRotation(double tolerance) const
{
  // R * R^T must be the identity; the determinant tells a rotation from a mirror.
  const RotationMatrix3 product = *this * Transposed();
  for (std::size_t i = 0; i < 9; ++i)
    if (!(std::abs(product.m_elements[i] - identity[i]) <= tolerance))
      return false;
  return std::abs(Determinant() - 1.0) <= tolerance;
}

RotationMatrix3 RotationMatrix3::Transposed() const
{
  const auto& m = m_elements;
  return RotationMatrix3(m[0], m[3], m[6], m[1], m[4], m[7], m[2], m[5], m[8]);
}

RotationMatrix3 RotationMatrix3::Inverted() const
{
  // Stored matrices carry 15 significant digits; 1e-6 leaves room for that and for
  // products of many rotations, and still rejects anything that is no rotation.
  if (!IsRotation(1e-6))
    Detail::RaiseNotARotation();
  return Transposed();
}

RotationMatrix3& RotationMatrix3::operator*=(const RotationMatrix3& other)
{
  return *this = *this * other;
}

RotationMatrix3 operator*(const RotationMatrix3& a, const RotationMatrix3& b)
{
  const auto& l = a.GetElements();
  const auto& r = b.GetElements();
  std::array<double, 9> product{};
  for (std::size_t row = 0; row < 3; ++row)
    for (std::size_t column = 0; column < 3; ++column)
      for (std::size_t k = 0; k < 3; ++k)
        product[row * 3 + column] += l[row * 3 + k] * r[k * 3 + column];
  return RotationMatrix3(product);
}

Vector3T<double> operator*(const RotationMatrix3& r, const Vector3T<double>& v)
{
  const auto& m = r.GetElements();
  return {m[0] * v.x + m[1] * v.y + m[2] * v.z, m[3] * v.x + m[4] * v.y + m[5] * v.z,
          m[6] * v.x + m[7] * v.y + m[8] * v.z};
}

Point3T<double> operator*(const RotationMatrix3& r, const Point3T<double>& p)
{
  return Point3T<double>(r * p.ToVector());
}

std::ostream& operator<<(std::ostream& out, const RotationMatrix3& r)
{
  const auto& m = r.GetElements();
  return out << "((" << m[0] << ',' << m[1] << ',' << m[2] << "),(" << m[3] << ',' << m[4] << ',' << m[5] << "),("
             << m[6] << ',' << m[7] << ',' << m[8] << "))";
}

Storage::Settings& RotationMatrix3::SerializeTo(Storage::Settings& node) const
{
  node.SetClass(className());
  for (std::size_t i = 0; i < m_elements.size(); ++i)
    node.Set(leafName(i), m_elements[i]);
  return node;
}

void RotationMatrix3::DeserializeFrom(const Storage::Settings& node)
{
  m_elements = identity;
  if (!node.IsClass(className()))
    return;
  for (std::size_t i = 0; i < m_elements.size(); ++i)
    m_elements[i] = node.Get<double>(leafName(i), identity[i]);
}

} // namespace Math
