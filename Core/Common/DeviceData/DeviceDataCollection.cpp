#include <Core/Common/DeviceData/DeviceDataCollection.h>

#include <Core/Common/DeviceData/I_AttributesSink.h>
#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/OperatingSystem/ActivityControl.h>
#include <Core/Common/OperatingSystem/JobQueue.h>
#include <Core/Common/OperatingSystem/ThreadLimit.h>

#include <QCoreApplication>

#include <utility>

namespace RTE
{

DeviceDataCollection::DeviceDataCollection() = default;
DeviceDataCollection::DeviceDataCollection(DeviceDataCollection&&) noexcept = default;
DeviceDataCollection& DeviceDataCollection::operator=(DeviceDataCollection&&) noexcept = default;
DeviceDataCollection::~DeviceDataCollection() = default;

void DeviceDataCollection::Append(std::unique_ptr<DeviceData> data)
{
  if (!data)
    Raise(InvalidArgumentError(QCoreApplication::translate("RTE::DeviceDataCollection",
                                                           "An empty pointer cannot be appended as device data")));
  m_elements.push_back(std::move(data));
}

void DeviceDataCollection::Append(const DeviceDataCollection& other)
{
  // Cloned into a separate list first: other may be this collection, and a clone that
  // throws must leave this collection as it was.
  std::vector<std::unique_ptr<DeviceData>> copies;
  copies.reserve(other.m_elements.size());
  for (const auto& element : other.m_elements)
    copies.push_back(element->clone());
  m_elements.reserve(m_elements.size() + copies.size());
  for (auto& copy : copies)
    m_elements.push_back(std::move(copy));
}

DeviceDataCollection DeviceDataCollection::clone() const
{
  DeviceDataCollection copy;
  copy.SetOffset(m_offset);
  copy.Append(*this);
  return copy;
}

DeviceData& DeviceDataCollection::at(std::size_t index)
{
  return const_cast<DeviceData&>(std::as_const(*this).at(index));
}

const DeviceData& DeviceDataCollection::at(std::size_t index) const
{
  if (index >= m_elements.size())
    Raise(OutOfRangeError(
        QCoreApplication::translate("RTE::DeviceDataCollection", "No device data at position %1 of a collection of %2")
            .arg(index)
            .arg(m_elements.size())));
  return *m_elements[index];
}

void DeviceDataCollection::writeElement(std::size_t position, I_AttributesSink& sink) const
{
  m_elements[position]->write(quint64(m_offset) + position, sink);
}

void DeviceDataCollection::Write(I_AttributesSink& sink) const
{
  sink.setText(QStringLiteral("DevDataSources"), QString::number(quint64(m_offset) + m_elements.size()));
  if (m_elements.size() < 2)
  {
    for (std::size_t position = 0; position < m_elements.size(); ++position)
      writeElement(position, sink);
    return;
  }
  // Each element is an independent job for the library's workers, as many as the thread
  // limit allows. The first element that fails cancels the rest, and its exception
  // reaches the caller.
  ActivityControl control;
  JobQueue queue(JobQueue::Unlimited, getMaxThreadCount(getProcessorCount(), false), control,
                 QStringLiteral("DeviceDataWriter"));
  for (std::size_t position = 0; position < m_elements.size(); ++position)
    queue.Enqueue([this, position, &sink] { writeElement(position, sink); });
  queue.WaitUntilFinished();
  queue.Rethrow();
}

} // namespace RTE
