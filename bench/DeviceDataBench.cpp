// Device data written to an attribute sink that copies every array it receives, against
// memcpy of the same bytes: 64 traces of 100,000 16-bit samples, the device data of one
// image of a large recording. The texts, keys and sink calls around the copies are what
// the collection adds.
#include <Core/Common/DeviceData/DeviceDataCollection.h>
#include <Core/Common/DeviceData/DeviceDataT.h>
#include <Core/Common/DeviceData/I_AttributesSink.h>

#include <benchmark/benchmark.h>

#include <cstring>
#include <map>
#include <mutex>
#include <vector>

namespace
{

constexpr int traceCount = 64;
constexpr std::size_t sampleCount = 100'000;

// Keeps a copy of every attribute. Storage is found under a lock and then filled outside
// it, so concurrent calls for distinct keys copy in parallel; a key's buffer is reused
// from one write to the next, so the copy is measured and not the allocation.
class CopyingSink : public RTE::I_AttributesSink
{
public:
  void setText(const QString& key, const QString& value) override
  {
    std::lock_guard lock(m_mutex);
    m_texts[key] = value;
  }
  void setInt32Array(const QString& key, quint64 count, const qint32* data) override { copy(key, count, data); }
  void setDoubleArray(const QString& key, quint64 count, const double* data) override { copy(key, count, data); }
  void setFloatArray(const QString& key, quint64 count, const float* data) override { copy(key, count, data); }
  void setUInt16Array(const QString& key, quint64 count, const quint16* data, bool) override { copy(key, count, data); }
  void setUInt8Array(const QString& key, quint64 count, const quint8* data) override { copy(key, count, data); }

  std::size_t bytes(const QString& key) const { return m_arrays.at(key).size(); }

private:
  template <typename T>
  void copy(const QString& key, quint64 count, const T* data)
  {
    std::vector<char>* target = nullptr;
    {
      std::lock_guard lock(m_mutex);
      target = &m_arrays[key]; // std::map: the reference stays valid while others insert
    }
    target->resize(count * sizeof(T));
    if (count != 0)
      std::memcpy(target->data(), data, count * sizeof(T));
  }

  std::mutex m_mutex;
  std::map<QString, QString> m_texts;
  std::map<QString, std::vector<char>> m_arrays;
};

std::vector<std::vector<quint16>> makeTraces(std::size_t samples)
{
  std::vector<std::vector<quint16>> traces(traceCount, std::vector<quint16>(samples));
  quint32 state = 12345;
  for (auto& trace : traces)
    for (quint16& sample : trace)
      sample = quint16((state = state * 1664525u + 1013904223u) >> 16);
  return traces;
}

void BM_DeviceDataToCopyingSink(benchmark::State& state)
{
  const auto source = std::make_shared<RTE::DeviceDataStatic>(
      QStringLiteral("Analog"), QStringLiteral("ai"), Zn::LinearScale(1e-5, 0, QStringLiteral("s"), QString()),
      Zn::LinearScale(0.000305, -10, QStringLiteral("V"), QStringLiteral("counts to volts")), 1, 0);
  RTE::DeviceDataCollection collection;
  const auto samples = std::size_t(state.range(0));
  for (auto& trace : makeTraces(samples))
    collection.Append(std::make_unique<RTE::DeviceDataT<quint16>>(source, std::move(trace)));
  CopyingSink sink;
  collection.Write(sink); // buffers sized once
  for (auto _ : state)
  {
    collection.Write(sink);
    benchmark::ClobberMemory();
  }
  if (sink.bytes(QStringLiteral("DevDataTrace63")) != samples * sizeof(quint16))
    state.SkipWithError("the sink did not receive the traces");
  state.SetBytesProcessed(std::int64_t(state.iterations()) * traceCount * std::int64_t(samples) * 2);
}
// 100,000 samples: the case to compare with memcpy; 1 sample: what the keys, texts and
// calls cost by themselves.
BENCHMARK(BM_DeviceDataToCopyingSink)->Arg(sampleCount)->Arg(1)->Unit(benchmark::kMicrosecond)->UseRealTime();

// The reference: the same bytes from the same kind of buffers into buffers of their own.
void BM_MemcpyReference(benchmark::State& state)
{
  const std::vector<std::vector<quint16>> traces = makeTraces(sampleCount);
  std::vector<std::vector<quint16>> copies(traceCount, std::vector<quint16>(sampleCount));
  for (auto _ : state)
  {
    for (int i = 0; i < traceCount; ++i)
      std::memcpy(copies[std::size_t(i)].data(), traces[std::size_t(i)].data(), sampleCount * sizeof(quint16));
    benchmark::ClobberMemory();
  }
  state.SetBytesProcessed(std::int64_t(state.iterations()) * traceCount * sampleCount * sizeof(quint16));
}
BENCHMARK(BM_MemcpyReference)->Unit(benchmark::kMicrosecond)->UseRealTime();

} // namespace
