// A number with a range, a step and a display precision; C_Integer (long long) and
// C_Double (double) are its two instances.
//
// Values outside the range are refused, never clamped: callers that want clamping use
// FitToRange first. A new range that excludes the current value moves the value to the
// nearer bound, and listeners hear of the value before they hear of the range.
#pragma once

#include <Core/Common/Parameter/C_NumericValueBase.h>

#include <QVariant>

#include <memory>

namespace RTE::Parameter
{

template <typename T>
class CORECOMMON_EXPORT C_NumericValueT : public C_NumericValueBase
{
public:
  ~C_NumericValueT() override;

  // Same instance, equal attributes, value, range, step and precision.
  bool operator==(const C_Node& other) const override;
  // "Value: v Range: min-max Precision: p" after the node line.
  std::string dump() const override;
  // Integers in decimal, doubles with six significant digits.
  QString toString() const override;
  // Sets the value of a node of the same instance (which may throw if it lies outside
  // this node's range); a source of another kind is ignored.
  void CopyValues(std::shared_ptr<C_Node> source) override;

  virtual bool operator!=(const C_Node& other) const;
  virtual QVariant toQVariant() const = 0;
  virtual const T& GetStep() const;
  // Announces a change through the step signals; the step is not validated.
  virtual void SetStep(const T& step);
  virtual const T& GetValue() const;
  virtual const RTE::RangeT<T>& GetRange() const;
  // The range from the smaller to the larger argument.
  virtual void SetRange(T a, T b);
  // Stores the range as given, clamps the value into it (announcing the value), then
  // announces the range.
  virtual void SetRange(const RTE::RangeT<T>& range);
  // Throws RTE::Exception "Value v out of range (min-max)" outside the range (NaN
  // included); announces a change.
  virtual void SetValue(const T& value);
  // The maximum if `value` is at or above it, else the larger of minimum and `value`.
  virtual T FitToRange(const T& value) const;
  virtual void SetPrecision(unsigned int precision);
  virtual const unsigned int& GetPrecision() const;

protected:
  explicit C_NumericValueT(unsigned int precision);

private:
  T m_value{};
  RTE::RangeT<T> m_range{};
  T m_step = 1;
  unsigned int m_precision;
};

extern template class C_NumericValueT<long long>;
extern template class C_NumericValueT<double>;

} // namespace RTE::Parameter
