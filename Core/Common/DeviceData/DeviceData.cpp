#include <Core/Common/DeviceData/DeviceData.h>

#include <Core/Common/DeviceData/I_AttributesSink.h>
#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>

#include <QCoreApplication>

namespace RTE
{

namespace
{

QString number(double value)
{
  return QString::number(value, 'g', 6);
}

// base followed by the decimal index, built without temporary strings.
QString key(QLatin1StringView base, const QString& index)
{
  QString result;
  result.reserve(base.size() + index.size());
  return result.append(base).append(index);
}

} // namespace

DeviceData::DeviceData(std::shared_ptr<const DeviceDataStatic> staticPart) : m_static(std::move(staticPart))
{
  if (!m_static)
    Raise(InvalidArgumentError(
        QCoreApplication::translate("RTE::DeviceData", "Device data need the description of their source")));
}

DeviceData::~DeviceData() = default;

DeviceDataStatic& DeviceData::detachStatic()
{
  auto copy = std::make_shared<DeviceDataStatic>(*m_static);
  DeviceDataStatic& result = *copy;
  m_static = std::move(copy);
  return result;
}

void DeviceData::setName(const QString& name)
{
  detachStatic().setName(name);
}

void DeviceData::setAlias(const QString& alias)
{
  detachStatic().setAlias(alias);
}

void DeviceData::setScaleX(const Zn::LinearScale& scale)
{
  detachStatic().setScaleX(scale);
}

void DeviceData::setScaleI(const Zn::LinearScale& scale)
{
  detachStatic().setScaleI(scale);
}

void DeviceData::setClass(quint32 classId)
{
  detachStatic().setClass(classId);
}

void DeviceData::setChannel(quint32 channel)
{
  detachStatic().setChannel(channel);
}

QString DeviceData::scaleToText(const Zn::LinearScale& scale)
{
  return QStringLiteral("%1\n%2\n%3\n%4")
      .arg(number(scale.getFactor()), number(scale.getOffset()), scale.getUnit(), scale.getDescription());
}

void DeviceData::write(quint64 index, I_AttributesSink& sink) const
{
  using namespace Qt::Literals::StringLiterals;
  const QString suffix = QString::number(index);
  const DeviceDataStatic& source = *m_static;
  sink.setText(key("DevDataName"_L1, suffix), source.getName());
  sink.setText(key("DevDataAlias"_L1, suffix), source.getAlias());
  sink.setText(key("DevDataScaleX"_L1, suffix), scaleToText(source.getScaleX()));
  sink.setText(key("DevDataScaleI"_L1, suffix), scaleToText(source.getScaleI()));
  sink.setText(key("DevDataClass"_L1, suffix), QString::number(source.getClass()));
  sink.setText(key("DevDataChannel"_L1, suffix), QString::number(source.getChannel()));
  if (m_reference)
    sink.setText(key("DevDataReference"_L1, suffix), number(*m_reference));
  if (m_namedValue)
    sink.setText(key("DevDataNamedValue"_L1, suffix), *m_namedValue);
  writeTraceData(key("DevDataTrace"_L1, suffix), sink);
}

} // namespace RTE
