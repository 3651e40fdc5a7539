#include "RecordingSink.h"

#include <Core/Common/DeviceData/DeviceDataT.h>
#include <Core/Common/Exceptions/GeneralExceptions.h>

#include <gtest/gtest.h>

#include <limits>

using RTE::DeviceData;
using RTE::DeviceDataStatic;
using RTE::DeviceDataT;

namespace
{

std::shared_ptr<DeviceDataStatic> pressureSource()
{
  return std::make_shared<DeviceDataStatic>(
      QStringLiteral("Pressure"), QStringLiteral("p_cyl"), Zn::LinearScale(0.5, 0, QStringLiteral("ms"), QString()),
      Zn::LinearScale(0.01, -1.25, QStringLiteral("bar"), QStringLiteral("raw to bar")), 7, 3);
}

} // namespace

TEST(DeviceData, WritesItsFieldsInOrderUnderIndexedKeys)
{
  DeviceDataT<quint16> data(pressureSource(), {100, 200, 65535});
  RecordingSink plain;
  data.write(3, plain);
  EXPECT_EQ(plain.keys(), (std::vector<QString>{"DevDataName3", "DevDataAlias3", "DevDataScaleX3", "DevDataScaleI3",
                                                "DevDataClass3", "DevDataChannel3", "DevDataTrace3"}));
  EXPECT_EQ(plain.find("DevDataName3").text, "Pressure");
  EXPECT_EQ(plain.find("DevDataAlias3").text, "p_cyl");
  EXPECT_EQ(plain.find("DevDataScaleX3").text, "0.5\n0\nms\n"); // four lines, the last one empty
  EXPECT_EQ(plain.find("DevDataScaleI3").text, "0.01\n-1.25\nbar\nraw to bar");
  EXPECT_EQ(plain.find("DevDataClass3").text, "7");
  EXPECT_EQ(plain.find("DevDataChannel3").text, "3");
  const RecordedCall trace = plain.find("DevDataTrace3");
  EXPECT_EQ(trace.operation, "uint16");
  EXPECT_EQ(trace.values, (std::vector<double>{100, 200, 65535}));
  EXPECT_FALSE(trace.isImageData);
  for (const RecordedCall& call : plain.calls())
    EXPECT_TRUE(call.operation == "text" || call.key == "DevDataTrace3") << call.key.toStdString();

  data.setReference(1234567.0);
  data.setNamedValue(QStringLiteral("idle"));
  RecordingSink full;
  data.write(12345678901ULL, full); // indices beyond 32 bits stay whole
  const std::vector<QString> keys = full.keys();
  ASSERT_EQ(keys.size(), 9u);
  EXPECT_EQ(keys[6], "DevDataReference12345678901");
  EXPECT_EQ(keys[7], "DevDataNamedValue12345678901");
  EXPECT_EQ(keys[8], "DevDataTrace12345678901");
  EXPECT_EQ(full.find("DevDataReference12345678901").text, "1.23457e+06"); // 'g', 6 digits
  EXPECT_EQ(full.find("DevDataNamedValue12345678901").text, "idle");

  data.clearReference();
  EXPECT_FALSE(data.hasReference());
  RecordingSink onlyNamed;
  data.write(0, onlyNamed);
  EXPECT_EQ(onlyNamed.keys()[6], "DevDataNamedValue0");
}

TEST(DeviceData, EachElementTypeGoesToItsArrayOperation)
{
  const auto source = pressureSource();
  RecordingSink sink;
  DeviceDataT<qint32>(source, {-5, std::numeric_limits<qint32>::min()}).write(0, sink);
  DeviceDataT<float>(source, {0.25f, -1e30f}).write(1, sink);
  DeviceDataT<double>(source, {1e300, -0.5}).write(2, sink);
  DeviceDataT<quint16>(source).write(3, sink);
  EXPECT_EQ(sink.find("DevDataTrace0").operation, "int32");
  EXPECT_EQ(sink.find("DevDataTrace0").values, (std::vector<double>{-5, -2147483648.0}));
  EXPECT_EQ(sink.find("DevDataTrace1").operation, "float");
  EXPECT_EQ(sink.find("DevDataTrace1").values, (std::vector<double>{0.25, double(-1e30f)}));
  EXPECT_EQ(sink.find("DevDataTrace2").operation, "double");
  EXPECT_EQ(sink.find("DevDataTrace2").values, (std::vector<double>{1e300, -0.5}));
  EXPECT_EQ(sink.find("DevDataTrace3").operation, "uint16");
  EXPECT_TRUE(sink.find("DevDataTrace3").values.empty());
}

TEST(DeviceData, StatisticsAndScaledTrace)
{
  DeviceDataT<quint16> raw(pressureSource(), {10, 65535, 0, 5});
  EXPECT_DOUBLE_EQ(raw.getAverage(), 65550.0 / 4);
  EXPECT_EQ(raw.getMin(), 0.0);
  EXPECT_EQ(raw.getMax(), 65535.0);
  const std::vector<double> scaled = raw.getTraceDataScaled(); // 0.01 * x - 1.25
  ASSERT_EQ(scaled.size(), 4u);
  EXPECT_DOUBLE_EQ(scaled[0], -1.15);
  EXPECT_DOUBLE_EQ(scaled[1], 654.1);
  EXPECT_DOUBLE_EQ(scaled[2], -1.25);
  EXPECT_EQ(raw.size(), 4u);
  EXPECT_EQ(*(raw.end() - 1), 5);

  const qint32 big = std::numeric_limits<qint32>::max();
  DeviceDataT<qint32> large(pressureSource(), {big, big, big, -big}); // no overflow on the way
  EXPECT_DOUBLE_EQ(large.getAverage(), double(big) / 2);
  EXPECT_EQ(large.getMin(), -double(big));

  DeviceDataT<double> none(pressureSource());
  EXPECT_TRUE(none.empty());
  EXPECT_THROW((void)none.getAverage(), RTE::InvalidRequest);
  EXPECT_THROW((void)none.getMin(), RTE::InvalidRequest);
  EXPECT_THROW((void)none.getMax(), RTE::InvalidRequest);
  EXPECT_TRUE(none.getTraceDataScaled().empty());
  none.setTraceData({2.5});
  EXPECT_EQ(none.getMax(), 2.5);

  EXPECT_THROW(DeviceDataT<float>(nullptr, {1.0f}), RTE::InvalidArgumentError);
}

TEST(DeviceData, SettersAndClonesLeaveOtherTracesAlone)
{
  const auto source = pressureSource();
  DeviceDataT<float> first(source, {1, 2});
  DeviceDataT<float> second(source, {3});
  EXPECT_EQ(first.getStatic(), second.getStatic()); // one shared description

  first.setName(QStringLiteral("Temperature"));
  first.setChannel(9);
  first.setScaleI(Zn::LinearScale(2, 1, QStringLiteral("K"), QString()));
  EXPECT_EQ(first.getName(), "Temperature");
  EXPECT_EQ(first.getChannel(), 9u);
  EXPECT_EQ(first.getScaleI().getUnit(), "K");
  EXPECT_EQ(first.getAlias(), "p_cyl"); // the rest carried over
  EXPECT_EQ(second.getName(), "Pressure");
  EXPECT_EQ(second.getChannel(), 3u);
  EXPECT_EQ(source->getName(), "Pressure");

  first.setReference(0.5);
  first.setNamedValue(QStringLiteral("hot"));
  std::unique_ptr<DeviceData> copy = first.clone();
  auto* typed = dynamic_cast<DeviceDataT<float>*>(copy.get());
  ASSERT_NE(typed, nullptr);
  EXPECT_EQ(typed->getTraceData(), (std::vector<float>{1, 2}));
  EXPECT_EQ(typed->getReference(), 0.5);
  EXPECT_EQ(typed->getNamedValue(), QStringLiteral("hot"));
  typed->setTraceData({7});
  typed->setAlias(QStringLiteral("T"));
  typed->clearNamedValue();
  EXPECT_EQ(first.getTraceData(), (std::vector<float>{1, 2}));
  EXPECT_EQ(first.getAlias(), "p_cyl");
  EXPECT_TRUE(first.hasNamedValue());
}
