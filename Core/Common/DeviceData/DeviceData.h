// One recorded device signal of an image: the shared description of its source
// (DeviceDataStatic), an optional reference value, an optional named value, and a trace
// of samples held by the typed subclass DeviceDataT<T>.
//
// write(index, sink) hands everything to an attribute sink, one key per field, each key
// being a base name followed by the decimal index:
//
//   "DevDataName<i>", "DevDataAlias<i>", "DevDataScaleX<i>", "DevDataScaleI<i>",
//   "DevDataClass<i>", "DevDataChannel<i>"              texts, always, in this order
//   "DevDataReference<i>"                               text, when a reference is set
//   "DevDataNamedValue<i>"                              text, when a named value is set
//   "DevDataTrace<i>"                                   the trace, as an array, last
//
// A scale is written as "factor\noffset\nunit\ndescription" with factor and offset in
// 'g' format with 6 significant digits; the reference value in the same format.
//
// The setters of the source fields (setName ... setChannel) change this trace only: the
// shared description is copied first, so other traces of the same source keep theirs.
#pragma once

#include <Core/Common/DeviceData/DeviceDataStatic.h>

#include <QString>
#include <QtGlobal>

#include <memory>
#include <optional>

namespace RTE
{

class I_AttributesSink;

class CORECOMMON_EXPORT DeviceData
{
public:
  virtual ~DeviceData();
  DeviceData& operator=(const DeviceData&) = delete;

  // A deep copy of the same element type.
  virtual std::unique_ptr<DeviceData> clone() const = 0;

  // The shared description of the source.
  const std::shared_ptr<const DeviceDataStatic>& getStatic() const { return m_static; }

  const QString& getName() const { return m_static->getName(); }
  void setName(const QString& name);
  const QString& getAlias() const { return m_static->getAlias(); }
  void setAlias(const QString& alias);
  const Zn::LinearScale& getScaleX() const { return m_static->getScaleX(); }
  void setScaleX(const Zn::LinearScale& scale);
  const Zn::LinearScale& getScaleI() const { return m_static->getScaleI(); }
  void setScaleI(const Zn::LinearScale& scale);
  quint32 getClass() const { return m_static->getClass(); }
  void setClass(quint32 classId);
  quint32 getChannel() const { return m_static->getChannel(); }
  void setChannel(quint32 channel);

  // A value the trace is measured against (a zero level, a set point).
  void setReference(double reference) { m_reference = reference; }
  bool hasReference() const { return m_reference.has_value(); }
  const std::optional<double>& getReference() const { return m_reference; }
  void clearReference() { m_reference.reset(); }
  // A text that names the state the trace was recorded in.
  void setNamedValue(const QString& namedValue) { m_namedValue = namedValue; }
  bool hasNamedValue() const { return m_namedValue.has_value(); }
  const std::optional<QString>& getNamedValue() const { return m_namedValue; }
  void clearNamedValue() { m_namedValue.reset(); }

  // Writes every field under its key with this index (see above). Exceptions of the
  // sink pass through.
  void write(quint64 index, I_AttributesSink& sink) const;

  // A scale as written under "DevDataScaleX" and "DevDataScaleI".
  static QString scaleToText(const Zn::LinearScale& scale);

protected:
  // Throws RTE::InvalidArgumentError for an empty pointer.
  explicit DeviceData(std::shared_ptr<const DeviceDataStatic> staticPart);
  DeviceData(const DeviceData&) = default;

private:
  // The trace under key through the array operation of its element type.
  virtual void writeTraceData(const QString& key, I_AttributesSink& sink) const = 0;
  // A private copy of the description to change.
  DeviceDataStatic& detachStatic();

  std::shared_ptr<const DeviceDataStatic> m_static;
  std::optional<double> m_reference;
  std::optional<QString> m_namedValue;
};

} // namespace RTE
