#include <Core/Common/DeviceData/DeviceDataStatic.h>

namespace RTE
{

DeviceDataStatic::DeviceDataStatic(const QString& name, const QString& alias, const Zn::LinearScale& scaleX,
                                   const Zn::LinearScale& scaleI, quint32 classId, quint32 channel) :
    m_name(name),
    m_alias(alias),
    m_scaleX(scaleX),
    m_scaleI(scaleI),
    m_class(classId),
    m_channel(channel)
{
}

} // namespace RTE
