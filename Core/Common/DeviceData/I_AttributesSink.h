// An output of named attributes: the receiver of DeviceDataCollection::Write (an image
// file writer, a record in memory). Keys are texts such as "DevDataName3"; every key is
// set once per write.
//
// Concurrency: DeviceDataCollection::Write may call one sink from several threads at
// once, always for distinct keys. An implementation guards whatever it shares between
// keys (a map, a file) itself.
//
// Arrays are handed over as a count and a pointer that stays valid only during the call:
// a sink that keeps the values copies them. A count of 0 may come with a null pointer.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>
#include <QtGlobal>

namespace RTE
{

class CORECOMMON_EXPORT I_AttributesSink
{
public:
  virtual ~I_AttributesSink();

  virtual void setText(const QString& key, const QString& value) = 0;
  virtual void setInt32Array(const QString& key, quint64 count, const qint32* data) = 0;
  virtual void setDoubleArray(const QString& key, quint64 count, const double* data) = 0;
  virtual void setFloatArray(const QString& key, quint64 count, const float* data) = 0;
  // isImageData: true when the values are the pixels of an image, which a sink may keep
  // in its image layout or pass through the image compressors; false for any other
  // array. Device data traces are never image data and always pass false.
  virtual void setUInt16Array(const QString& key, quint64 count, const quint16* data, bool isImageData) = 0;
  virtual void setUInt8Array(const QString& key, quint64 count, const quint8* data) = 0;
};

} // namespace RTE
