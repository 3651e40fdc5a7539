#include "RecordingSink.h"

#include <Core/Common/DeviceData/DeviceDataCollection.h>
#include <Core/Common/DeviceData/DeviceDataT.h>
#include <Core/Common/Exceptions/GeneralExceptions.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <stdexcept>
#include <thread>

using RTE::DeviceDataCollection;
using RTE::DeviceDataStatic;
using RTE::DeviceDataT;

namespace
{

const std::vector<QString> keyBases{"DevDataName",  "DevDataAlias",   "DevDataScaleX", "DevDataScaleI",
                                    "DevDataClass", "DevDataChannel", "DevDataTrace"};

// count traces of every element type in turn, element i holding the value i.
DeviceDataCollection makeCollection(int count, quint32 offset)
{
  const auto source = std::make_shared<DeviceDataStatic>(QStringLiteral("Analog"), QStringLiteral("a"),
                                                         Zn::LinearScale(), Zn::LinearScale(), 1, 0);
  DeviceDataCollection collection;
  collection.SetOffset(offset);
  for (int i = 0; i < count; ++i)
  {
    switch (i % 4)
    {
    case 0:
      collection.Append(std::make_unique<DeviceDataT<quint16>>(source, std::vector<quint16>{quint16(i)}));
      break;
    case 1:
      collection.Append(std::make_unique<DeviceDataT<qint32>>(source, std::vector<qint32>{i}));
      break;
    case 2:
      collection.Append(std::make_unique<DeviceDataT<float>>(source, std::vector<float>{float(i)}));
      break;
    default:
      collection.Append(std::make_unique<DeviceDataT<double>>(source, std::vector<double>{double(i)}));
    }
  }
  return collection;
}

// "DevDataName12" -> ("DevDataName", 12)
std::pair<QString, quint64> splitKey(const QString& key)
{
  qsizetype digits = key.size();
  while (digits > 0 && key[digits - 1].isDigit())
    --digits;
  return {key.left(digits), key.mid(digits).toULongLong()};
}

// Every key of elements first .. first + count - 1 exactly once and nothing else, the
// keys of each element in their documented order, the trace of each holding its
// position in its collection.
void expectEveryKeyOnce(const std::vector<RecordedCall>& calls, quint64 first, int count)
{
  std::map<QString, int> seen;
  std::map<quint64, std::vector<QString>> perElement;
  for (const RecordedCall& call : calls)
  {
    ++seen[call.key];
    const auto [base, index] = splitKey(call.key);
    perElement[index].push_back(base);
    if (base == "DevDataTrace")
    {
      EXPECT_EQ(call.values, std::vector<double>{double(index - first)}) << call.key.toStdString();
    }
  }
  for (const auto& [key, times] : seen)
    EXPECT_EQ(times, 1) << key.toStdString();
  ASSERT_EQ(perElement.size(), std::size_t(count));
  EXPECT_EQ(perElement.begin()->first, first);
  for (const auto& [index, bases] : perElement)
    EXPECT_EQ(bases, keyBases) << "element " << index;
}

} // namespace

TEST(DeviceDataCollection, WritesSourcesCountThenElementsFromTheOffset)
{
  const DeviceDataCollection three = makeCollection(3, 2);
  RecordingSink sink;
  three.Write(sink);
  const std::vector<RecordedCall> calls = sink.calls();
  ASSERT_FALSE(calls.empty());
  EXPECT_EQ(calls.front().key, "DevDataSources");
  EXPECT_EQ(calls.front().text, "5");
  EXPECT_EQ(calls.size(), 1 + 3 * keyBases.size());
  expectEveryKeyOnce({calls.begin() + 1, calls.end()}, 2, 3);

  RecordingSink empty;
  DeviceDataCollection none;
  none.SetOffset(4294967295u); // offset + size needs more than 32 bits
  none.Append(makeCollection(1, 0));
  none.Write(empty);
  EXPECT_EQ(empty.find("DevDataSources").text, "4294967296");
  EXPECT_EQ(empty.find("DevDataName4294967295").text, "Analog");
}

TEST(DeviceDataCollection, AppendsAndClonesDeepCopies)
{
  DeviceDataCollection first = makeCollection(2, 5);
  first.Append(first); // itself: the two elements once more
  ASSERT_EQ(first.size(), 4u);
  EXPECT_NE(&first.at(0), &first.at(2));
  EXPECT_EQ(dynamic_cast<const DeviceDataT<qint32>&>(first.at(3)).getTraceData(), std::vector<qint32>{1});

  const DeviceDataCollection copy = first.clone();
  EXPECT_EQ(copy.GetOffset(), 5u);
  first.at(0).setName(QStringLiteral("Changed"));
  dynamic_cast<DeviceDataT<quint16>&>(first.at(0)).setTraceData({99});
  EXPECT_EQ(copy.at(0).getName(), "Analog");
  EXPECT_EQ(dynamic_cast<const DeviceDataT<quint16>&>(copy.at(0)).getTraceData(), std::vector<quint16>{0});

  DeviceDataCollection other;
  other.Append(copy);
  EXPECT_EQ(other.GetOffset(), 0u) << "the offset is not taken over";
  EXPECT_EQ(other.size(), 4u);
  int visited = 0;
  for (const auto& element : other)
    visited += element->getClass();
  EXPECT_EQ(visited, 4);

  EXPECT_THROW(other.Append(std::unique_ptr<RTE::DeviceData>()), RTE::InvalidArgumentError);
  EXPECT_THROW((void)other.at(4), RTE::OutOfRangeError);
  EXPECT_EQ(other.size(), 4u);
  DeviceDataCollection moved = std::move(other);
  EXPECT_EQ(moved.size(), 4u);
}

TEST(DeviceDataCollection, ConcurrentWritesReachALockingSinkOncePerKey)
{
  // Collections with disjoint index ranges written at once into one sink, as worker
  // threads of one Write would: each key once, each element's keys in order.
  constexpr int perCollection = 40;
  std::vector<DeviceDataCollection> collections;
  for (int c = 0; c < 4; ++c)
    collections.push_back(makeCollection(perCollection, quint32(c * perCollection)));
  RecordingSink sink;
  std::vector<std::thread> threads;
  for (const DeviceDataCollection& collection : collections)
    threads.emplace_back([&collection, &sink] { collection.Write(sink); });
  for (std::thread& thread : threads)
    thread.join();

  std::vector<RecordedCall> calls = sink.calls();
  EXPECT_EQ(std::erase_if(calls, [](const RecordedCall& call) { return call.key == "DevDataSources"; }), 4u);
  ASSERT_EQ(calls.size(), 4 * perCollection * keyBases.size());
  std::vector<std::vector<RecordedCall>> perCollectionCalls(4);
  for (const RecordedCall& call : calls)
    perCollectionCalls.at(splitKey(call.key).second / perCollection).push_back(call);
  for (int c = 0; c < 4; ++c)
    expectEveryKeyOnce(perCollectionCalls[std::size_t(c)], quint64(c * perCollection), perCollection);
}

TEST(DeviceDataCollection, SinkFailurePassesThrough)
{
  const DeviceDataCollection three = makeCollection(3, 0);
  RecordingSink sink;
  sink.failOnKey = QStringLiteral("DevDataScaleI1");
  EXPECT_THROW(three.Write(sink), std::runtime_error);
  const std::vector<QString> keys = sink.keys();
  EXPECT_EQ(keys.back(), "DevDataScaleI1");
  EXPECT_EQ(std::count(keys.begin(), keys.end(), QStringLiteral("DevDataScaleI1")), 1);
}
