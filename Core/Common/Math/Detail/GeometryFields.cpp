#include <Core/Common/Math/Detail/GeometryFields.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>

#include <QCoreApplication>

namespace Math::Detail
{

void RaiseDivisionByZero(const std::source_location& where)
{
  RTE::Raise(RTE::InvalidArgumentError(QCoreApplication::translate("Math", "Integer vector divided by zero")), where);
}

void RaiseZeroLength(const std::source_location& where)
{
  RTE::Raise(RTE::InvalidArgumentError(QCoreApplication::translate("Math", "The zero vector has no direction")), where);
}

void RaiseNotARotation(const std::source_location& where)
{
  RTE::Raise(RTE::InvalidArgumentError(
                 QCoreApplication::translate("Math", "The matrix is no rotation (rows not orthonormal or mirrored)")),
             where);
}

} // namespace Math::Detail
