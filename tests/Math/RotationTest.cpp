#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Math/Euclidean.h>
#include <Core/Common/Math/RotationMatrix3.h>
#include <Core/Common/Storage/SettingsStringBasedDocument.h>

#include <gtest/gtest.h>

#include <numbers>
#include <sstream>

using Math::Euclidean;
using Math::RotationMatrix3;
using Point = Math::Point3T<double>;
using Vector = Math::Vector3T<double>;

namespace
{

constexpr double quarter = std::numbers::pi / 2;

void expectNear(const Vector& actual, const Vector& expected)
{
  EXPECT_NEAR(actual.x, expected.x, 1e-12) << "x of " << actual;
  EXPECT_NEAR(actual.y, expected.y, 1e-12) << "y of " << actual;
  EXPECT_NEAR(actual.z, expected.z, 1e-12) << "z of " << actual;
}

void expectNear(const Point& actual, const Point& expected)
{
  expectNear(actual.ToVector(), expected.ToVector());
}

void expectNear(const RotationMatrix3& actual, const RotationMatrix3& expected)
{
  for (int i = 0; i < 9; ++i)
    EXPECT_NEAR(actual(i / 3, i % 3), expected(i / 3, i % 3), 1e-12) << "element " << i << " of " << actual;
}

const Vector ex(1, 0, 0), ey(0, 1, 0), ez(0, 0, 1);

} // namespace

TEST(Rotation, QuarterTurnsAboutEachAxis)
{
  // Right-handed: a quarter turn about x takes y to z, about y takes z to x, about z
  // takes x to y.
  expectNear(RotationMatrix3::AboutX(quarter) * ey, ez);
  expectNear(RotationMatrix3::AboutX(quarter) * ez, -ey);
  expectNear(RotationMatrix3::AboutX(quarter) * ex, ex);
  expectNear(RotationMatrix3::AboutY(quarter) * ez, ex);
  expectNear(RotationMatrix3::AboutY(quarter) * ex, -ez);
  expectNear(RotationMatrix3::AboutZ(quarter) * ex, ey);
  expectNear(RotationMatrix3::AboutZ(quarter) * ey, -ex);
  expectNear(RotationMatrix3::AboutZ(quarter) * Point(2, 0, 7), Point(0, 2, 7));

  // The same from an arbitrary axis of any length, and a third of a turn about the
  // diagonal cycles the axes.
  expectNear(RotationMatrix3::AboutAxis(Vector(0, 0, 5), quarter), RotationMatrix3::AboutZ(quarter));
  expectNear(RotationMatrix3::AboutAxis(Vector(-2, 0, 0), quarter), RotationMatrix3::AboutX(-quarter));
  const RotationMatrix3 cycle = RotationMatrix3::AboutAxis(Vector(1, 1, 1), 2 * std::numbers::pi / 3);
  expectNear(cycle * ex, ey);
  expectNear(cycle * ey, ez);
  expectNear(cycle * ez, ex);
  EXPECT_THROW((void)RotationMatrix3::AboutAxis(Vector(), 1.0), RTE::InvalidArgumentError);
}

TEST(Rotation, ComposesInvertsAndRejectsNonRotations)
{
  // b first, then a: x stays under the turn about x, then goes to y.
  const RotationMatrix3 composed = RotationMatrix3::AboutZ(quarter) * RotationMatrix3::AboutX(quarter);
  expectNear(composed * ex, ey);
  expectNear(composed * ey, ez);
  expectNear(composed * ez, ex);
  RotationMatrix3 accumulated = RotationMatrix3::AboutZ(quarter);
  accumulated *= RotationMatrix3::AboutX(quarter);
  EXPECT_EQ(accumulated, composed);

  const RotationMatrix3 tilted = RotationMatrix3::AboutAxis(Vector(0.3, -1, 2), 0.7);
  EXPECT_TRUE(tilted.IsRotation());
  EXPECT_NEAR(tilted.Determinant(), 1.0, 1e-12);
  expectNear(tilted.Inverted() * tilted, RotationMatrix3());
  expectNear(tilted * tilted.Inverted(), RotationMatrix3());
  expectNear(tilted.Inverted() * (tilted * Vector(4, -5, 6)), Vector(4, -5, 6));
  EXPECT_EQ(RotationMatrix3(1, 2, 3, 4, 5, 6, 7, 8, 9).Transposed(), RotationMatrix3(1, 4, 7, 2, 5, 8, 3, 6, 9));
  EXPECT_EQ(RotationMatrix3(1, 2, 3, 4, 5, 6, 7, 8, 9)(1, 2), 6.0);

  const RotationMatrix3 scaled(2, 0, 0, 0, 2, 0, 0, 0, 2);
  const RotationMatrix3 mirrored(1, 0, 0, 0, 1, 0, 0, 0, -1);
  const RotationMatrix3 sheared(1, 0.1, 0, 0, 1, 0, 0, 0, 1);
  for (const RotationMatrix3& wrong : {scaled, mirrored, sheared})
  {
    SCOPED_TRACE(::testing::PrintToString(wrong.GetElements()));
    EXPECT_FALSE(wrong.IsRotation());
    EXPECT_THROW((void)wrong.Inverted(), RTE::InvalidArgumentError);
  }
  EXPECT_FALSE(RotationMatrix3(1e-7, 0, 0, 0, 1, 0, 0, 0, 1).IsRotation());
  EXPECT_TRUE(RotationMatrix3(1 + 1e-8, 0, 0, 0, 1, 0, 0, 0, 1).IsRotation(1e-6));

  EXPECT_THROW((void)RotationMatrix3()(3, 0), RTE::OutOfRangeError);
  EXPECT_THROW((void)RotationMatrix3()(0, -1), RTE::OutOfRangeError);
}

TEST(Rotation, EuclideanMovesPointsNotVectorsAndRoundTrips)
{
  const Euclidean pose(Vector(1, 2, 3), RotationMatrix3::AboutZ(quarter));
  expectNear(pose * Point(1, 0, 0), Point(1, 3, 3));
  expectNear(pose * Vector(1, 0, 0), Vector(0, 1, 0));
  expectNear(pose * Point(0, 0, 0), Point(1, 2, 3));

  const Euclidean back = pose.Inverted();
  expectNear(back * Point(1, 3, 3), Point(1, 0, 0));
  for (const Point& p : {Point(0, 0, 0), Point(-7.5, 0.25, 100), Point(1e3, -1e3, 3)})
  {
    expectNear(back * (pose * p), p);
    expectNear(pose * (back * p), p);
  }
  const Euclidean identity = pose * back;
  expectNear(identity.GetTranslation(), Vector());
  expectNear(identity.GetRotation(), RotationMatrix3());

  // b first, then a, checked against applying one after the other.
  const Euclidean other(Vector(-4, 0, 0.5), RotationMatrix3::AboutX(0.3) * RotationMatrix3::AboutY(-1.1));
  const Point p(0.5, -2, 9);
  expectNear((pose * other) * p, pose * (other * p));
  expectNear((other * pose) * p, other * (pose * p));
  Euclidean accumulated = pose;
  accumulated *= other;
  EXPECT_EQ(accumulated, pose * other);

  EXPECT_THROW((void)Euclidean(Vector(), RotationMatrix3(0, 0, 0, 0, 0, 0, 0, 0, 0)).Inverted(),
               RTE::InvalidArgumentError);
  EXPECT_EQ(Euclidean(), Euclidean(Vector(), RotationMatrix3()));
}

TEST(Rotation, SettingsAndStreamForms)
{
  const RotationMatrix3 exact(0, -1, 0, 1, 0, 0, 0, 0, 1);
  const Euclidean pose(Vector(0.1, -2.5, 1e-3), exact);
  Storage::SettingsStringBasedDocument written;
  pose.SerializeTo(*written.CreateNode("pose"));
  const auto node = written.GetNode("pose");
  EXPECT_EQ(node->GetClass(), QStringLiteral("C_Euclidian"));
  EXPECT_EQ(node->GetChildrenNames(), QList<QString>({QStringLiteral("m_zT"), QStringLiteral("m_zR")}));
  EXPECT_EQ(node->GetNode("m_zR")->GetClass(), QStringLiteral("C_RMatrix3D"));
  EXPECT_EQ(node->GetNode("m_zR")->GetChildrenNames().join(','), QStringLiteral("M1,M2,M3,M4,M5,M6,M7,M8,M9"));
  EXPECT_EQ(node->GetNode("m_zR")->Get<double>("M2", 0), -1.0); // row by row
  EXPECT_EQ(node->GetNode("m_zR")->GetClass("M9"), QStringLiteral("double"));

  Storage::SettingsStringBasedDocument read(written.GetContent());
  Euclidean back(Vector(9, 9, 9), RotationMatrix3::AboutX(1));
  back.DeserializeFrom(*read.GetNode("pose"));
  EXPECT_EQ(back, pose);
  EXPECT_FALSE(read.HasReports());

  // Other classes give the identity; a missing element keeps the identity's.
  Storage::SettingsStringBasedDocument odd(QStringLiteral(R"(<?xml version="1.0" encoding="UTF-8"?>
<root>
  <euclidean class="C_Euclidean"><m_zT class="vector3D"><X class="double" value="4"/></m_zT></euclidean>
  <partial class="C_Euclidian"><m_zR class="C_RMatrix3D"><M1 class="double" value="-1"/></m_zR></partial>
  <matrix class="RMatrix"><M1 class="double" value="5"/></matrix>
</root>)"));
  back.DeserializeFrom(*odd.GetNode("euclidean"));
  EXPECT_EQ(back, Euclidean());
  back.DeserializeFrom(*odd.GetNode("partial"));
  EXPECT_EQ(back, Euclidean(Vector(), RotationMatrix3(-1, 0, 0, 0, 1, 0, 0, 0, 1)));
  RotationMatrix3 matrix = exact;
  matrix.DeserializeFrom(*odd.GetNode("matrix"));
  EXPECT_EQ(matrix, RotationMatrix3());

  std::ostringstream out;
  out << pose;
  EXPECT_EQ(out.str(), "(0.1,-2.5,0.001); ((0,-1,0),(1,0,0),(0,0,1))");
}
