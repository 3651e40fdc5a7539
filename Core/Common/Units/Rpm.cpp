#include <Core/Common/Units/Rpm.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>

#include <QCoreApplication>

namespace RTE
{

Rpm::Rpm(double rpm) : m_rpm(rpm)
{
  if (!(rpm >= 0.0))
    Raise(InvalidArgumentError(QCoreApplication::translate("RTE::Rpm", "Invalid RPM value")));
}

Rpm::Rpm(const Frequency& revolutions) : Rpm(revolutions.ToHertz() * 60.0) {}

Rpm::operator Frequency() const
{
  return Hertz(m_rpm / 60.0);
}

} // namespace RTE
