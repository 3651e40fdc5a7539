// The common base of numbers and number lists: the untyped signals for changes of
// range, step and precision. The concrete classes add the typed ones.
//
//   QObject::connect(gain.get(), &RTE::Parameter::C_NumericValueBase::RangeChanged, [] { ... });
#pragma once

#include <Core/Common/Parameter/C_Node.h>
#include <Core/Common/Parameter/RangeT.h>

namespace RTE::Parameter
{

// The names under which ranges travel in queued signals.
using IntegerRange = RTE::RangeT<qlonglong>;
using DoubleRange = RTE::RangeT<double>;

class CORECOMMON_EXPORT C_NumericValueBase : public C_Node
{
  Q_OBJECT

public:
  ~C_NumericValueBase() override;

  // While signals are enabled: the untyped signal, then the typed one.
  virtual void NotifyRangeChanged();
  virtual void NotifyStepChanged();
  virtual void NotifyPrecisionChanged();

signals:
  void RangeChanged();
  void StepChanged();
  void PrecisionChanged();

protected:
  C_NumericValueBase();

  virtual void NotifyRangeChangedWithValue() = 0;
  virtual void NotifyStepChangedWithValue() = 0;
  virtual void NotifyPrecisionChangedWithValue() = 0;
};

} // namespace RTE::Parameter
