#include <Core/Common/Units/DegreesPerCycle.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>

#include <QCoreApplication>

namespace RTE
{

DegreesPerCycle::DegreesPerCycle(double degrees) : m_degrees(degrees)
{
  if (degrees != 360.0 && degrees != 720.0)
    Raise(InvalidArgumentError(QCoreApplication::translate("RTE::DegreesPerCycle", "Value is not 360 or 720: %1")
                                   .arg(QString::number(degrees, 'g'))));
}

} // namespace RTE
