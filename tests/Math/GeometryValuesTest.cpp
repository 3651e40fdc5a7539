#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Math/BoundingBoxT.h>
#include <Core/Common/Math/Point4T.h>
#include <Core/Common/Math/Rectangle2T.h>
#include <Core/Common/Math/Rectangle3T.h>
#include <Core/Common/Math/Rectangle4T.h>
#include <Core/Common/Math/Size2T.h>
#include <Core/Common/Math/Size3T.h>
#include <Core/Common/Math/Size4T.h>
#include <Core/Common/Storage/SettingsStringBasedDocument.h>

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <type_traits>
#include <typeinfo>

using namespace Math;

// Every combination a host may link, instantiated in full.
#define INSTANTIATE_ALL(Template, ...)                                                                                 \
  template class Math::Template<unsigned char>;                                                                        \
  template class Math::Template<unsigned short>;                                                                       \
  template class Math::Template<int>;                                                                                  \
  template class Math::Template<unsigned int>;                                                                         \
  template class Math::Template<float>;                                                                                \
  template class Math::Template<double>;
INSTANTIATE_ALL(Point2T)
INSTANTIATE_ALL(Point3T)
INSTANTIATE_ALL(Point4T)
INSTANTIATE_ALL(Vector2T)
INSTANTIATE_ALL(Vector3T)
#undef INSTANTIATE_ALL
template class Math::Vector2T<short>;
#define INSTANTIATE_FOUR(Template)                                                                                     \
  template class Math::Template<int>;                                                                                  \
  template class Math::Template<unsigned int>;                                                                         \
  template class Math::Template<float>;                                                                                \
  template class Math::Template<double>;
INSTANTIATE_FOUR(Size2T)
INSTANTIATE_FOUR(Size3T)
INSTANTIATE_FOUR(Size4T)
INSTANTIATE_FOUR(Rectangle2T)
INSTANTIATE_FOUR(Rectangle3T)
INSTANTIATE_FOUR(Rectangle4T)
#undef INSTANTIATE_FOUR
template class Math::Size2T<unsigned long long>;
template class Math::BoundingBoxT<int>;
template class Math::BoundingBoxT<float>;
template class Math::BoundingBoxT<double>;

namespace
{

using Storage::SettingsStringBasedDocument;

template <typename T>
const char* typeName()
{
  if constexpr (std::is_same_v<T, unsigned char>)
    return "uint8";
  else if constexpr (std::is_same_v<T, short>)
    return "int16";
  else if constexpr (std::is_same_v<T, unsigned short>)
    return "uint16";
  else if constexpr (std::is_same_v<T, int>)
    return "int32";
  else if constexpr (std::is_same_v<T, unsigned int>)
    return "uint32_t";
  else if constexpr (std::is_same_v<T, unsigned long long>)
    return "uint64";
  else if constexpr (std::is_same_v<T, float>)
    return "float";
  else
    return "double";
}

// Field i of a sample value: distinct per field, negative on odd fields of signed types,
// with a fraction that float and double must keep through their texts.
template <typename T>
T element(int i)
{
  T value = std::is_floating_point_v<T> ? T(i + 1) + T(0.1) : T(i + 1);
  if constexpr (std::is_signed_v<T>)
    if (i % 2 == 1)
      value = T(-value);
  return value;
}

template <typename V>
V sample(int first)
{
  V value;
  int i = first;
  std::apply([&](auto&... field) { ((field = element<std::remove_cvref_t<decltype(field)>>(i++)), ...); },
             value.AsTuple());
  return value;
}

template <typename V>
std::string printed(const V& value)
{
  std::ostringstream out;
  out << value;
  return out.str();
}

// Writes value under "v", reads it back from the document text, and checks that nothing
// was reported and that the node carries className.
template <typename V>
void expectRoundTrip(const V& value, const char* className)
{
  SCOPED_TRACE(typeid(V).name());
  SettingsStringBasedDocument written;
  const auto node = written.CreateNode("v");
  EXPECT_EQ(&value.SerializeTo(*node), node.get()) << "returns its node";
  SettingsStringBasedDocument read(written.GetContent());
  V back;
  if constexpr (requires { back.AsTuple(); })
    back = sample<V>(7); // whatever it held before must not survive
  back.DeserializeFrom(*read.GetNode("v"));
  EXPECT_EQ(back, value) << read.GetContent().toStdString();
  EXPECT_FALSE(read.HasReports());
  EXPECT_EQ(read.GetNode("v")->GetClass(), QString::fromLatin1(className));
}

template <template <typename> class V, typename... T>
void expectFieldValuesRoundTrip(const char* className, const char* firstLeaf)
{
  (
      [&]
      {
        const V<T> value = sample<V<T>>(0);
        expectRoundTrip(value, className);
        SettingsStringBasedDocument doc;
        value.SerializeTo(*doc.CreateNode("v"));
        EXPECT_EQ(doc.GetNode("v")->GetClass(QString::fromLatin1(firstLeaf)), QString::fromLatin1(typeName<T>()));
      }(),
      ...);
}

template <template <typename> class Box, template <typename> class Point, typename... T>
void expectBoxesRoundTrip(const char* className, const char* lowName, const char* pointClass)
{
  (
      [&]
      {
        const Box<T> box(sample<Point<T>>(0), sample<Point<T>>(4));
        expectRoundTrip(box, className);
        SettingsStringBasedDocument doc;
        box.SerializeTo(*doc.CreateNode("v"));
        EXPECT_EQ(doc.GetNode("v")->GetClass(QString::fromLatin1(lowName)), QString::fromLatin1(pointClass));
      }(),
      ...);
}

} // namespace

TEST(GeometryValues, EveryInstantiatedTypeRoundTripsThroughSettings)
{
  expectFieldValuesRoundTrip<Point2T, unsigned char, unsigned short, int, unsigned int, float, double>("point2D", "X");
  expectFieldValuesRoundTrip<Point3T, unsigned char, unsigned short, int, unsigned int, float, double>("point3D", "Z");
  expectFieldValuesRoundTrip<Point4T, unsigned char, unsigned short, int, unsigned int, float, double>("point4D", "T");
  expectFieldValuesRoundTrip<Vector2T, unsigned char, unsigned short, int, unsigned int, float, double, short>(
      "vector2D", "Y");
  expectFieldValuesRoundTrip<Vector3T, unsigned char, unsigned short, int, unsigned int, float, double>("vector3D",
                                                                                                        "Z");
  expectFieldValuesRoundTrip<Size2T, int, unsigned int, float, double, unsigned long long>("", "Height");
  expectFieldValuesRoundTrip<Size3T, int, unsigned int, float, double>("", "Depth");
  expectFieldValuesRoundTrip<Size4T, int, unsigned int, float, double>("", "Duration");
  expectBoxesRoundTrip<Rectangle2T, Point2T, int, unsigned int, float, double>("Rectangle", "Min", "point2D");
  expectBoxesRoundTrip<Rectangle3T, Point3T, int, unsigned int, float, double>("", "TopLeft", "point3D");
  expectBoxesRoundTrip<Rectangle4T, Point4T, int, unsigned int, float, double>("", "BottomRight", "point4D");
  expectBoxesRoundTrip<BoundingBoxT, Point3T, int, float, double>("BoundingBox", "Max", "point3D");

  // The extremes of the element types survive their texts.
  expectRoundTrip(Size2T<unsigned long long>(18446744073709551615ULL, 1), "");
  expectRoundTrip(Point2T<float>(std::nextafter(1.0f, 2.0f), -3.4028235e38f), "point2D");
  expectRoundTrip(Point2T<double>(0.1, -1e-300), "point2D");
}

TEST(GeometryValues, WritesTheDocumentedElements)
{
  SettingsStringBasedDocument doc;
  Rectangle2T<int>(Point2T<int>(10, -3), Point2T<int>(20, 5)).SerializeTo(*doc.CreateNode("roi"));
  Size2T<unsigned int>(640, 480).SerializeTo(*doc.CreateNode("size"));
  EXPECT_EQ(doc.GetNode("roi")->ToString(), QStringLiteral("<roi class=\"Rectangle\">\n"
                                                           " <Min class=\"point2D\">\n"
                                                           "  <X class=\"int32\" value=\"10\" />\n"
                                                           "  <Y class=\"int32\" value=\"-3\" />\n"
                                                           " </Min>\n"
                                                           " <Max class=\"point2D\">\n"
                                                           "  <X class=\"int32\" value=\"20\" />\n"
                                                           "  <Y class=\"int32\" value=\"5\" />\n"
                                                           " </Max>\n"
                                                           "</roi>"));
  EXPECT_EQ(doc.GetNode("size")->ToString(), QStringLiteral("<size>\n"
                                                            " <Width class=\"uint32_t\" value=\"640\" />\n"
                                                            " <Height class=\"uint32_t\" value=\"480\" />\n"
                                                            "</size>"));
}

TEST(GeometryValues, ReadsOldClassesAndResetsForeignOnes)
{
  SettingsStringBasedDocument doc(QStringLiteral(R"(<?xml version="1.0" encoding="UTF-8"?>
<root>
  <old class="Point2"><x class="double" value="1.5"/><y class="double" value="2"/></old>
  <oldUpper class="Point2"><X class="double" value="1.5"/></oldUpper>
  <foreign class="point2DF"><x class="double" value="1.5"/><y class="double" value="2"/></foreign>
  <partial class="point3D"><Y class="int32" value="4"/></partial>
  <rect class="Rectangle"><Max class="point2D"><X class="int32" value="9"/><Y class="int32" value="8"/></Max></rect>
  <notRect class="rect"><Min class="point2D"><X class="int32" value="1"/></Min></notRect>
  <box class="Box"><Min class="point3D"><X class="int32" value="1"/></Min></box>
  <size class="anything"><Width class="int32" value="3"/></size>
</root>)"));

  Point2T<double> point(7, 7);
  point.DeserializeFrom(*doc.GetNode("old"));
  EXPECT_EQ(point, Point2T<double>(1.5, 2));
  point.DeserializeFrom(*doc.GetNode("oldUpper")); // the old class has lower-case leaves only
  EXPECT_EQ(point, Point2T<double>(0, 0));
  point.Set(7, 7);
  point.DeserializeFrom(*doc.GetNode("foreign"));
  EXPECT_EQ(point, Point2T<double>(0, 0));

  Point3T<int> partial(7, 7, 7);
  partial.DeserializeFrom(*doc.GetNode("partial"));
  EXPECT_EQ(partial, Point3T<int>(0, 4, 0));

  Rectangle2T<int> rect(Point2T<int>(5, 5), Point2T<int>(6, 6));
  rect.DeserializeFrom(*doc.GetNode("rect"));
  EXPECT_EQ(rect, Rectangle2T<int>(Point2T<int>(0, 0), Point2T<int>(9, 8)));
  rect.DeserializeFrom(*doc.GetNode("notRect"));
  EXPECT_TRUE(rect.IsNull());

  BoundingBoxT<int> box(Point3T<int>(1, 1, 1), Point3T<int>(2, 2, 2));
  box.DeserializeFrom(*doc.GetNode("box"));
  EXPECT_TRUE(box.IsNull());

  Size2T<int> size(5, 5); // no class to check: the leaves are read whatever the node says
  size.DeserializeFrom(*doc.GetNode("size"));
  EXPECT_EQ(size, Size2T<int>(3, 0));
  EXPECT_FALSE(doc.HasReports());
}

TEST(GeometryValues, StreamOutput)
{
  EXPECT_EQ(printed(Point2T<int>(3, -4)), "(3,-4)");
  EXPECT_EQ(printed(Point2T<unsigned char>(200, 7)), "(200,7)"); // numbers, not characters
  EXPECT_EQ(printed(Point3T<double>(0.5, -1, 2e20)), "(0.5,-1,2e+20)");
  EXPECT_EQ(printed(Point4T<unsigned short>(1, 2, 3, 65535)), "(1,2,3,65535)");
  EXPECT_EQ(printed(Vector2T<short>(-1, 2)), "(-1,2)");
  EXPECT_EQ(printed(Vector3T<float>(0.25f, 0, 1)), "(0.25,0,1)");
  EXPECT_EQ(printed(Size2T<double>(1.5, 2)), "1.5 x 2");
  EXPECT_EQ(printed(Size3T<int>(4, 5, 6)), "4 x 5 x 6");
  EXPECT_EQ(printed(Size4T<unsigned int>(4, 5, 6, 7)), "4 x 5 x 6 x 7");
  EXPECT_EQ(printed(Rectangle2T<int>(Point2T<int>(0, 0), Point2T<int>(10, 10))), "(0,0); (10,10)");
  EXPECT_EQ(printed(Rectangle3T<int>(Point3T<int>(0, 1, 2), Point3T<int>(3, 4, 5))), "(0,1,2); (3,4,5)");
  EXPECT_EQ(printed(Rectangle4T<float>(Point4T<float>(0, 1, 2, 3), Point4T<float>(4, 5, 6, 7.5f))),
            "(0,1,2,3); (4,5,6,7.5)");
  EXPECT_EQ(printed(BoundingBoxT<double>(Point3T<double>(-1, -1, -1), Point3T<double>(1, 1, 1))),
            "(-1,-1,-1); (1,1,1)");
  std::ostringstream precise; // the stream's own settings apply
  precise.precision(10);
  precise << Point2T<double>(1.0 / 3, 2);
  EXPECT_EQ(precise.str(), "(0.3333333333,2)");
}

TEST(GeometryValues, EqualityIsExactAndNullMeansAllZero)
{
  const float one = 1.0f;
  EXPECT_NE(Point2T<float>(one, 0), Point2T<float>(std::nextafter(one, 2.0f), 0));
  EXPECT_NE(Point3T<double>(0, 0, 0.1 + 0.2), Point3T<double>(0, 0, 0.3));
  EXPECT_EQ(Point4T<int>(1, 2, 3, 4), Point4T<int>(1, 2, 3, 4));
  EXPECT_NE(Point4T<int>(1, 2, 3, 4), Point4T<int>(1, 2, 3, 5)); // the last field counts too
  EXPECT_NE(Size4T<int>(1, 2, 3, 4), Size4T<int>(1, 2, 3, 5));

  EXPECT_TRUE(Point2T<double>().IsNull());
  EXPECT_FALSE(Point2T<double>(0, 1e-300).IsNull());
  EXPECT_FALSE(Point4T<int>(0, 0, 0, 1).IsNull());
  EXPECT_FALSE(Size3T<float>(0, 0, 1).IsNull());
  EXPECT_FALSE(Rectangle2T<int>(Point2T<int>(), Point2T<int>(0, 1)).IsNull());

  Point2T<int> p;
  p.Set(5, -6);
  EXPECT_EQ(p, Point2T<int>(5, -6));
  EXPECT_EQ(Point3T<int>(1, 2, 3).ToPoint2(), Point2T<int>(1, 2));
  EXPECT_EQ(Point4T<int>(1, 2, 3, 4).ToPoint3(), Point3T<int>(1, 2, 3));
  EXPECT_EQ(Point2T<int>(Vector2T<int>(4, 5)).ToVector(), Vector2T<int>(4, 5));
  EXPECT_EQ(Point3T<int>(Vector3T<int>(4, 5, 6)).ToVector(), Vector3T<int>(4, 5, 6));
}

TEST(GeometryValues, RectanglesIncludeTheirBoundsAndGrow)
{
  Rectangle2T<int> square(Point2T<int>(0, 0), Size2T<int>(10, 10));
  EXPECT_EQ(square.GetMax(), Point2T<int>(10, 10));
  EXPECT_EQ(square.GetSize(), Size2T<int>(10, 10));
  EXPECT_TRUE(square.Contains(Point2T<int>(10, 10)));
  EXPECT_TRUE(square.Contains(Point2T<int>(0, 0)));
  EXPECT_TRUE(square.Contains(Point2T<int>(0, 10)));
  EXPECT_FALSE(square.Contains(Point2T<int>(11, 5)));
  EXPECT_FALSE(square.Contains(Point2T<int>(5, -1)));
  EXPECT_TRUE(square.Contains(Rectangle2T<int>(Point2T<int>(2, 2), Point2T<int>(10, 10))));
  EXPECT_FALSE(square.Contains(Rectangle2T<int>(Point2T<int>(2, 2), Point2T<int>(10, 11))));

  square |= Point2T<int>(-5, 3); // grows only where needed
  EXPECT_EQ(square, Rectangle2T<int>(Point2T<int>(-5, 0), Point2T<int>(10, 10)));
  square |= Rectangle2T<int>(Point2T<int>(0, 0), Point2T<int>(12, 20));
  EXPECT_EQ(square, Rectangle2T<int>(Point2T<int>(-5, 0), Point2T<int>(12, 20)));

  const Rectangle2T<double> upsideDown(Point2T<double>(1, 1), Point2T<double>(0, 2));
  EXPECT_FALSE(upsideDown.IsValid());
  EXPECT_FALSE(upsideDown.Contains(Point2T<double>(0.5, 1.5)));
  EXPECT_TRUE(square.IsValid());

  Rectangle3T<unsigned int> volume(Point3T<unsigned int>(1, 1, 1), Size3T<unsigned int>(63, 63, 7));
  EXPECT_EQ(volume.GetBottomRight(), Point3T<unsigned int>(64, 64, 8));
  EXPECT_TRUE(volume.Contains(Point3T<unsigned int>(64, 1, 8)));
  EXPECT_FALSE(volume.Contains(Point3T<unsigned int>(64, 0, 8)));
  volume |= Point3T<unsigned int>(0, 70, 2);
  EXPECT_EQ(volume, Rectangle3T<unsigned int>(Point3T<unsigned int>(0, 1, 1), Point3T<unsigned int>(64, 70, 8)));

  Rectangle4T<float> series(Point4T<float>(0, 0, 0, 0), Size4T<float>(1, 1, 1, 100));
  EXPECT_TRUE(series.Contains(Point4T<float>(1, 1, 1, 100)));
  EXPECT_FALSE(series.Contains(Point4T<float>(1, 1, 1, 100.5f)));
  EXPECT_EQ(series.GetSize(), Size4T<float>(1, 1, 1, 100));

  BoundingBoxT<double> cloud(Point3T<double>(1, 2, 3), Point3T<double>(1, 2, 3));
  for (const Point3T<double>& p : {Point3T<double>(-1, 5, 3), Point3T<double>(0, 0, 9), Point3T<double>(4, 1, 2)})
    cloud |= p;
  EXPECT_EQ(cloud, BoundingBoxT<double>(Point3T<double>(-1, 0, 2), Point3T<double>(4, 5, 9)));
  EXPECT_EQ(cloud.GetSize(), Size3T<double>(5, 5, 7));
  EXPECT_TRUE(cloud.Contains(Point3T<double>(4, 5, 9)));
  EXPECT_FALSE(cloud.Contains(Point3T<double>(4, 5, 9.000001)));
}

TEST(GeometryValues, VectorArithmetic)
{
  EXPECT_EQ(Vector2T<int>(1, 2) + Vector2T<int>(10, -20), Vector2T<int>(11, -18));
  EXPECT_EQ(Vector3T<int>(1, 2, 3) - Vector3T<int>(3, 2, 1), Vector3T<int>(-2, 0, 2));
  EXPECT_EQ(-Vector2T<short>(1, -2), Vector2T<short>(-1, 2));
  EXPECT_EQ(Vector3T<double>(1, 2, 3) * 2.0, Vector3T<double>(2, 4, 6));
  EXPECT_EQ(3 * Vector2T<int>(1, 2), Vector2T<int>(3, 6));
  EXPECT_EQ(Vector2T<int>(7, -7) / 2, Vector2T<int>(3, -3));
  EXPECT_DOUBLE_EQ(Vector2T<int>(3, 4).Length(), 5.0);
  EXPECT_DOUBLE_EQ(Vector3T<unsigned char>(200, 200, 0).Dot(Vector3T<unsigned char>(200, 1, 0)), 40200.0);
  EXPECT_DOUBLE_EQ(Vector2T<int>(1, 0).Cross(Vector2T<int>(0, 1)), 1.0);
  EXPECT_EQ(Vector3T<int>(1, 0, 0).Cross(Vector3T<int>(0, 1, 0)), Vector3T<int>(0, 0, 1));
  EXPECT_EQ(Vector3T<int>(0, 0, 1).Cross(Vector3T<int>(1, 0, 0)), Vector3T<int>(0, 1, 0));
  EXPECT_EQ(Vector2T<double>(0, -4).Normalized(), Vector2T<double>(0, -1));
  EXPECT_EQ(Vector3T<float>(0, 3, 4).Normalized(), Vector3T<float>(0, 0.6f, 0.8f));

  Point2T<int> p(1, 1);
  p += Vector2T<int>(2, 3);
  EXPECT_EQ(p, Point2T<int>(3, 4));
  EXPECT_EQ(p - Point2T<int>(1, 1), Vector2T<int>(2, 3));
  EXPECT_EQ(Point3T<double>(1, 1, 1) - Vector3T<double>(1, 2, 3), Point3T<double>(0, -1, -2));

  EXPECT_THROW((void)(Vector2T<int>(1, 2) / 0), RTE::InvalidArgumentError);
  Vector3T<unsigned int> v(1, 2, 3);
  EXPECT_THROW(v /= 0u, RTE::InvalidArgumentError);
  EXPECT_EQ(v, Vector3T<unsigned int>(1, 2, 3)) << "left as it was";
  EXPECT_THROW((void)Vector3T<double>().Normalized(), RTE::InvalidArgumentError);
  EXPECT_THROW((void)Vector2T<float>().Normalized(), RTE::InvalidArgumentError);
  const Vector2T<double> inf = Vector2T<double>(1, 2) / 0.0; // floating point divides as IEEE says
  EXPECT_TRUE(std::isinf(inf.x));
}
