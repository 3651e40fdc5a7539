// Device data with a trace of one element type: unsigned 16-bit (raw converter counts),
// signed 32-bit, float or double. The trace reaches an attribute sink under
// "DevDataTrace<i>" through the array operation of its type (setUInt16Array, not as
// image data; setInt32Array; setFloatArray; setDoubleArray).
//
//   RTE::DeviceDataT<quint16> pressure(source, std::vector<quint16>(samples, samples + count));
//   double peak = pressure.getScaleI().getScaled(pressure.getMax());
//   std::vector<double> bar = pressure.getTraceDataScaled();
#pragma once

#include <Core/Common/DeviceData/DeviceData.h>

#include <QtGlobal>

#include <memory>
#include <type_traits>
#include <vector>

namespace RTE
{

template <typename T>
class CORECOMMON_EXPORT DeviceDataT : public DeviceData
{
  static_assert(std::is_same_v<T, quint16> || std::is_same_v<T, qint32> || std::is_same_v<T, float> ||
                    std::is_same_v<T, double>,
                "device data traces hold quint16, qint32, float or double");

public:
  using value_type = T;
  using const_iterator = typename std::vector<T>::const_iterator;

  // Throws RTE::InvalidArgumentError for an empty staticPart.
  DeviceDataT(std::shared_ptr<const DeviceDataStatic> staticPart, std::vector<T> trace = {});
  ~DeviceDataT() override;

  void setTraceData(std::vector<T> trace) { m_trace = std::move(trace); }
  const std::vector<T>& getTraceData() const { return m_trace; }
  std::size_t size() const { return m_trace.size(); }
  bool empty() const { return m_trace.empty(); }
  const_iterator begin() const { return m_trace.begin(); }
  const_iterator end() const { return m_trace.end(); }

  // The mean, the smallest and the largest raw sample. Throw RTE::InvalidRequest for an
  // empty trace, which has none of them.
  double getAverage() const;
  double getMin() const;
  double getMax() const;
  // Every sample through scale I (factor * sample + offset).
  std::vector<double> getTraceDataScaled() const;

  std::unique_ptr<DeviceData> clone() const override;

private:
  DeviceDataT(const DeviceDataT&) = default;
  void writeTraceData(const QString& key, I_AttributesSink& sink) const override;
  void requireSamples() const;

  std::vector<T> m_trace;
};

extern template class DeviceDataT<quint16>;
extern template class DeviceDataT<qint32>;
extern template class DeviceDataT<float>;
extern template class DeviceDataT<double>;

} // namespace RTE
