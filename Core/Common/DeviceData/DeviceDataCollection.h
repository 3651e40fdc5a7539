// The device data of one image, in order, and their output to an attribute sink.
//
//   RTE::DeviceDataCollection data;
//   data.SetOffset(2);  // elements are numbered from 2: DevDataName2, DevDataName3, ...
//   data.Append(std::make_unique<RTE::DeviceDataT<quint16>>(source, samples));
//   data.Write(sink);   // "DevDataSources" = "3", then every element
//
// Write sets "DevDataSources" to offset + size first, then writes element i with the
// index offset + i through DeviceData::write. Collections of two or more elements are
// written by the workers of a job queue, as many as RTE::getMaxThreadCount allows, while
// the caller waits: elements may be written from several threads at once, so the sink
// must accept calls from other threads, concurrent for distinct keys (see
// I_AttributesSink); the keys of one element always come in the order DeviceData::write
// gives them, and every key comes exactly once.
#pragma once

#include <Core/Common/DeviceData/DeviceData.h>

#include <QtGlobal>

#include <memory>
#include <vector>

namespace RTE
{

class I_AttributesSink;

class CORECOMMON_EXPORT DeviceDataCollection
{
public:
  using iterator = std::vector<std::unique_ptr<DeviceData>>::iterator;
  using const_iterator = std::vector<std::unique_ptr<DeviceData>>::const_iterator;

  // Empty, offset 0.
  DeviceDataCollection();
  DeviceDataCollection(DeviceDataCollection&&) noexcept;
  DeviceDataCollection& operator=(DeviceDataCollection&&) noexcept;
  // Copies go through clone: every element is deep-copied.
  DeviceDataCollection(const DeviceDataCollection&) = delete;
  DeviceDataCollection& operator=(const DeviceDataCollection&) = delete;
  ~DeviceDataCollection();

  // The index of the first element in the attribute keys.
  void SetOffset(quint32 offset) { m_offset = offset; }
  quint32 GetOffset() const { return m_offset; }

  // Takes data over; throws RTE::InvalidArgumentError for an empty pointer.
  void Append(std::unique_ptr<DeviceData> data);
  // Appends copies of the elements of other (which may be this collection); its offset
  // is not taken over.
  void Append(const DeviceDataCollection& other);
  // A deep copy, offset included.
  DeviceDataCollection clone() const;

  iterator begin() { return m_elements.begin(); }
  iterator end() { return m_elements.end(); }
  const_iterator begin() const { return m_elements.begin(); }
  const_iterator end() const { return m_elements.end(); }
  std::size_t size() const { return m_elements.size(); }
  bool empty() const { return m_elements.empty(); }
  // Element index (from 0, not from the offset); throws RTE::OutOfRangeError beyond the end.
  DeviceData& at(std::size_t index);
  const DeviceData& at(std::size_t index) const;

  // Writes "DevDataSources" and every element (see above). Exceptions of the sink pass
  // through; what was written before stays written.
  void Write(I_AttributesSink& sink) const;

private:
  void writeElement(std::size_t position, I_AttributesSink& sink) const;

  std::vector<std::unique_ptr<DeviceData>> m_elements;
  quint32 m_offset = 0;
};

} // namespace RTE
