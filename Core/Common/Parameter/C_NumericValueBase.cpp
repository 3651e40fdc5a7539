#include <Core/Common/Parameter/C_NumericValueBase.h>

namespace RTE::Parameter
{

C_NumericValueBase::C_NumericValueBase() :
    C_Node(QString(), QString(), QString(), UndefinedAccesMode, Visible4Customer, QString(), true)
{
}

C_NumericValueBase::~C_NumericValueBase() = default;

void C_NumericValueBase::NotifyRangeChanged()
{
  if (!AreSignalsEnabled())
    return;
  emit RangeChanged();
  NotifyRangeChangedWithValue();
}

void C_NumericValueBase::NotifyStepChanged()
{
  if (!AreSignalsEnabled())
    return;
  emit StepChanged();
  NotifyStepChangedWithValue();
}

void C_NumericValueBase::NotifyPrecisionChanged()
{
  if (!AreSignalsEnabled())
    return;
  emit PrecisionChanged();
  NotifyPrecisionChangedWithValue();
}

} // namespace RTE::Parameter
