// An attribute sink that records every call under a mutex, for the device data suites
// and their concurrent writes.
#pragma once

#include <Core/Common/DeviceData/I_AttributesSink.h>

#include <QString>

#include <mutex>
#include <ostream>
#include <string>
#include <vector>

inline void PrintTo(const QString& text, std::ostream* os)
{
  *os << '"' << text.toStdString() << '"';
}

struct RecordedCall
{
  QString key;
  std::string operation; // "text", "int32", "double", "float", "uint16", "uint8"
  QString text;
  std::vector<double> values; // the array, widened
  bool isImageData = false;
};

class RecordingSink : public RTE::I_AttributesSink
{
public:
  void setText(const QString& key, const QString& value) override
  {
    record(RecordedCall{key, "text", value, {}, false});
  }
  void setInt32Array(const QString& key, quint64 count, const qint32* data) override
  {
    recordArray(key, "int32", count, data, false);
  }
  void setDoubleArray(const QString& key, quint64 count, const double* data) override
  {
    recordArray(key, "double", count, data, false);
  }
  void setFloatArray(const QString& key, quint64 count, const float* data) override
  {
    recordArray(key, "float", count, data, false);
  }
  void setUInt16Array(const QString& key, quint64 count, const quint16* data, bool isImageData) override
  {
    recordArray(key, "uint16", count, data, isImageData);
  }
  void setUInt8Array(const QString& key, quint64 count, const quint8* data) override
  {
    recordArray(key, "uint8", count, data, false);
  }

  std::vector<RecordedCall> calls() const
  {
    std::lock_guard lock(m_mutex);
    return m_calls;
  }
  // The keys in the order they arrived.
  std::vector<QString> keys() const
  {
    std::vector<QString> result;
    for (const RecordedCall& call : calls())
      result.push_back(call.key);
    return result;
  }
  // The call for key; fails the test and returns an empty call when there is none.
  RecordedCall find(const QString& key) const;

  // When set, the call for this key throws after it was recorded.
  QString failOnKey;

private:
  template <typename T>
  void recordArray(const QString& key, const char* operation, quint64 count, const T* data, bool isImageData)
  {
    record(RecordedCall{key, operation, {}, std::vector<double>(data, data + count), isImageData});
  }
  void record(RecordedCall call);

  mutable std::mutex m_mutex;
  std::vector<RecordedCall> m_calls;
};
