#include <Core/Common/Units/Unit.h>

namespace RTE
{

Unit::Unit(const QString& id, const QString& label, double factor, double offset) :
    id(id),
    label(label),
    factor(factor),
    offset(offset)
{
}

Unit::Unit(const QString& id, const QString& label, double factor, double offset, double sortOrder) :
    id(id),
    label(label),
    factor(factor),
    offset(offset),
    sortOrder(sortOrder)
{
}

} // namespace RTE
