#include <Core/Common/DeviceData/DeviceDataT.h>

#include <Core/Common/DeviceData/I_AttributesSink.h>
#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>

#include <QCoreApplication>

#include <algorithm>
#include <numeric>

namespace RTE
{

template <typename T>
DeviceDataT<T>::DeviceDataT(std::shared_ptr<const DeviceDataStatic> staticPart, std::vector<T> trace) :
    DeviceData(std::move(staticPart)),
    m_trace(std::move(trace))
{
}

template <typename T>
DeviceDataT<T>::~DeviceDataT() = default;

template <typename T>
void DeviceDataT<T>::requireSamples() const
{
  if (m_trace.empty())
    Raise(InvalidRequest(
        QCoreApplication::translate("RTE::DeviceData", "The trace of \"%1\" has no samples").arg(getName())));
}

template <typename T>
double DeviceDataT<T>::getAverage() const
{
  requireSamples();
  // Summed in double: no overflow at any length, and exact for integer traces while the
  // sum stays below 2^53.
  const double sum = std::accumulate(m_trace.begin(), m_trace.end(), 0.0);
  return sum / static_cast<double>(m_trace.size());
}

template <typename T>
double DeviceDataT<T>::getMin() const
{
  requireSamples();
  return static_cast<double>(*std::min_element(m_trace.begin(), m_trace.end()));
}

template <typename T>
double DeviceDataT<T>::getMax() const
{
  requireSamples();
  return static_cast<double>(*std::max_element(m_trace.begin(), m_trace.end()));
}

template <typename T>
std::vector<double> DeviceDataT<T>::getTraceDataScaled() const
{
  const Zn::LinearScale& scale = getScaleI();
  std::vector<double> scaled(m_trace.size());
  std::transform(m_trace.begin(), m_trace.end(), scaled.begin(),
                 [&scale](T sample) { return scale.getScaled(static_cast<double>(sample)); });
  return scaled;
}

template <typename T>
std::unique_ptr<DeviceData> DeviceDataT<T>::clone() const
{
  return std::unique_ptr<DeviceData>(new DeviceDataT(*this));
}

template <typename T>
void DeviceDataT<T>::writeTraceData(const QString& key, I_AttributesSink& sink) const
{
  const quint64 count = m_trace.size();
  if constexpr (std::is_same_v<T, quint16>)
    sink.setUInt16Array(key, count, m_trace.data(), false);
  else if constexpr (std::is_same_v<T, qint32>)
    sink.setInt32Array(key, count, m_trace.data());
  else if constexpr (std::is_same_v<T, float>)
    sink.setFloatArray(key, count, m_trace.data());
  else
    sink.setDoubleArray(key, count, m_trace.data());
}

template class DeviceDataT<quint16>;
template class DeviceDataT<qint32>;
template class DeviceDataT<float>;
template class DeviceDataT<double>;

} // namespace RTE
