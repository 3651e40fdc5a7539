#include <Core/Common/Units/CrankAngle.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>

#include <QCoreApplication>

#include <cmath>

namespace RTE
{

CrankAngle::CrankAngle(double angle, DegreesPerCycle degreesPerCycle) :
    m_degreesPerCycle(degreesPerCycle),
    m_angle(angle)
{
  checkRange(angle, degreesPerCycle);
}

CrankAngle CrankAngle::wrapped(double angle, DegreesPerCycle degreesPerCycle)
{
  const double d = degreesPerCycle;
  if (std::isfinite(angle) && (angle < -d / 2 || angle >= d / 2))
  {
    angle -= d * std::floor((angle + d / 2) / d);
    // Rounding of the subtraction may land exactly on the excluded upper end.
    if (angle >= d / 2)
      angle -= d;
    if (angle < -d / 2)
      angle = -d / 2;
  }
  return CrankAngle(angle, degreesPerCycle);
}

CrankAngle& CrankAngle::operator=(double angle)
{
  checkRange(angle, m_degreesPerCycle);
  m_angle = angle;
  return *this;
}

void CrankAngle::checkRange(double angle, DegreesPerCycle degreesPerCycle)
{
  const double half = degreesPerCycle / 2;
  if (!(angle >= -half && angle < half))
    Raise(InvalidArgumentError(
        QCoreApplication::translate("RTE::CrankAngle",
                                    "Crank angle %1\u00b0 is not in the allowed range between %2\u00b0 and %3\u00b0.")
            .arg(QString::number(angle, 'g'), QString::number(-half, 'g'), QString::number(half, 'g'))));
}

} // namespace RTE
