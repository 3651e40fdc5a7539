#include <Zn/Utils/LinearScale.h>

namespace Zn
{

LinearScale::LinearScale(double factor, double offset, const QString& unit, const QString& description) :
    m_factor(factor),
    m_offset(offset),
    m_unit(unit),
    m_description(description)
{
}

void LinearScale::set(const LinearScale& other)
{
  *this = other;
}

} // namespace Zn
