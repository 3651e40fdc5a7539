// What stays the same for every trace recorded from one source: its name and alias, the
// scale of the time axis (scale X), the scale of the values (scale I), a class and a
// channel number. Held through std::shared_ptr so that the traces of many images share
// one copy.
//
//   auto source = std::make_shared<RTE::DeviceDataStatic>(
//       "Pressure", "p_cyl", Zn::LinearScale(0.5, 0, "ms", ""), Zn::LinearScale(0.01, 0, "bar", "raw to bar"), 2, 1);
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <Zn/Utils/LinearScale.h>

#include <QString>
#include <QtGlobal>

namespace RTE
{

class CORECOMMON_EXPORT DeviceDataStatic
{
public:
  // Empty name and alias, identity scales, class and channel 0.
  DeviceDataStatic() = default;
  DeviceDataStatic(const QString& name, const QString& alias, const Zn::LinearScale& scaleX,
                   const Zn::LinearScale& scaleI, quint32 classId, quint32 channel);

  const QString& getName() const { return m_name; }
  void setName(const QString& name) { m_name = name; }
  const QString& getAlias() const { return m_alias; }
  void setAlias(const QString& alias) { m_alias = alias; }
  // The scale of the time axis: sample index to time.
  const Zn::LinearScale& getScaleX() const { return m_scaleX; }
  void setScaleX(const Zn::LinearScale& scale) { m_scaleX = scale; }
  // The scale of the values: raw sample to physical value.
  const Zn::LinearScale& getScaleI() const { return m_scaleI; }
  void setScaleI(const Zn::LinearScale& scale) { m_scaleI = scale; }
  quint32 getClass() const { return m_class; }
  void setClass(quint32 classId) { m_class = classId; }
  quint32 getChannel() const { return m_channel; }
  void setChannel(quint32 channel) { m_channel = channel; }

  friend bool operator==(const DeviceDataStatic&, const DeviceDataStatic&) = default;

private:
  QString m_name;
  QString m_alias;
  Zn::LinearScale m_scaleX;
  Zn::LinearScale m_scaleI;
  quint32 m_class = 0;
  quint32 m_channel = 0;
};

} // namespace RTE
