// Demo step: a collection of two device data traces written to a sink that prints every
// attribute it receives.
#include "Command.h"

#include <Core/Common/DeviceData/DeviceDataCollection.h>
#include <Core/Common/DeviceData/DeviceDataT.h>
#include <Core/Common/DeviceData/I_AttributesSink.h>

namespace
{

// Prints each call on one line: the operation, the key, and the value or the array.
class PrintingSink : public RTE::I_AttributesSink
{
public:
  explicit PrintingSink(QTextStream& out) : m_out(out) {}

  void setText(const QString& key, const QString& value) override
  {
    m_out << "  setText        " << key << " = \"" << QString(value).replace('\n', QStringLiteral("\\n")) << "\"\n";
  }
  void setInt32Array(const QString& key, quint64 count, const qint32* data) override
  {
    printArray("setInt32Array ", key, count, data);
  }
  void setDoubleArray(const QString& key, quint64 count, const double* data) override
  {
    printArray("setDoubleArray", key, count, data);
  }
  void setFloatArray(const QString& key, quint64 count, const float* data) override
  {
    printArray("setFloatArray ", key, count, data);
  }
  void setUInt16Array(const QString& key, quint64 count, const quint16* data, bool isImageData) override
  {
    printArray("setUInt16Array", key, count, data, isImageData ? " image data" : " not image data");
  }
  void setUInt8Array(const QString& key, quint64 count, const quint8* data) override
  {
    printArray("setUInt8Array ", key, count, data);
  }

private:
  template <typename T>
  void printArray(const char* operation, const QString& key, quint64 count, const T* data, const char* note = "")
  {
    m_out << "  " << operation << " " << key << " = " << count << " values [";
    for (quint64 i = 0; i < count; ++i)
      m_out << (i ? ", " : "") << data[i];
    m_out << "]" << note << "\n";
  }

  QTextStream& m_out;
};

void demoDeviceData(QTextStream& out)
{
  const auto pressure = std::make_shared<RTE::DeviceDataStatic>(
      QStringLiteral("Cylinder pressure"), QStringLiteral("p_cyl"),
      Zn::LinearScale(0.5, 0, QStringLiteral("ms"), QString()),
      Zn::LinearScale(0.01, -1, QStringLiteral("bar"), QStringLiteral("counts to bar")), 2, 1);
  const auto temperature = std::make_shared<RTE::DeviceDataStatic>(
      QStringLiteral("Coolant"), QStringLiteral("T_cool"), Zn::LinearScale(10, 0, QStringLiteral("ms"), QString()),
      Zn::LinearScale(), 5, 4);

  auto raw = std::make_unique<RTE::DeviceDataT<quint16>>(pressure, std::vector<quint16>{120, 480, 2650, 900, 130});
  raw->setReference(1.013);
  auto coolant = std::make_unique<RTE::DeviceDataT<float>>(temperature, std::vector<float>{88.5f, 88.75f, 89.0f});
  coolant->setNamedValue(QStringLiteral("warm engine"));

  out << "Device data travel with an image: a trace plus the description of its source. The\n"
         "pressure trace holds raw counts; through its value scale (0.01 bar per count, -1 bar)\n"
      << "its peak of " << raw->getMax() << " counts is " << raw->getScaleI().getScaled(raw->getMax())
      << " bar, its mean " << raw->getAverage() << " counts.\n\n";

  RTE::DeviceDataCollection collection;
  collection.SetOffset(2); // this image's device data are numbered from 2
  collection.Append(std::move(raw));
  collection.Append(std::move(coolant));
  out << "A collection of both with offset 2, written to a sink that prints what it receives:\n";
  PrintingSink sink(out);
  collection.Write(sink);
  out << "\nDevDataSources is offset + size; scales are factor, offset, unit and description on\n"
         "four lines; the reference and the named value come only where they are set.\n";
}

const rte::DemoStepRegistration step{{85, QStringLiteral("Device data"), &demoDeviceData}};

} // namespace
