// A list of numbers sharing one range, step and precision; C_IntegerList (long long)
// and C_DoubleList (double) are its two instances.
//
//   auto gains = RTE::Parameter::CreateDoubleList("Gains", 4, "Gains", "", RTE::Parameter::ReadWrite,
//                                                 1.0, 0.0, 16.0, RTE::Parameter::C_DoubleList::EditorTreeView, 2);
//   gains->SetValue(2, 4.0); // ValueChanged(), then ValueChanged(values)
//
// Resizing is silent and does not check the fill value; a new range leaves existing
// elements as they are.
#pragma once

#include <Core/Common/Parameter/C_NumericValueBase.h>

#include <memory>
#include <vector>

namespace RTE::Parameter
{

template <typename T>
class CORECOMMON_EXPORT C_NumericValueListT : public C_NumericValueBase
{
public:
  ~C_NumericValueListT() override;

  // Same instance, equal attributes, values, range, step and precision.
  bool operator==(const C_Node& other) const override;
  // "Value: v1 v2 ... Range: min-max Precision: p" after the node line.
  std::string dump() const override;
  // Copies the whole list from a list of the same instance and announces it even if
  // nothing changed; throws RTE::Exception "CopyValues: Cannot copy ..." for another kind.
  void CopyValues(std::shared_ptr<C_Node> source) override;

  virtual bool operator!=(const C_Node& other) const;
  virtual void SetPrecision(unsigned int precision);
  virtual const unsigned int& GetPrecision() const;

  size_t GetSize() const;
  // Shrinks, or grows with `fill`; silent and unchecked against the range.
  void SetSize(size_t size, T fill);
  // Undefined for an index at or beyond the size, as for std::vector.
  const T& GetValue(size_t index) const;
  // Throws RTE::Exception "Index i out of range (size)" or the value-out-of-range
  // message; announces a change.
  void SetValue(size_t index, const T& value);
  // Direct element access; changes made through it are not announced.
  T& operator[](size_t index);
  const T& operator[](size_t index) const;
  const RTE::RangeT<T>& GetRange() const;
  // Announces a new range; existing elements are not clamped.
  void SetRange(const RTE::RangeT<T>& range);
  const T& GetStep() const;
  void SetStep(const T& step);
  // The maximum if `value` is at or above it, else the larger of minimum and `value`.
  T FitToRange(const T& value) const;

protected:
  explicit C_NumericValueListT(unsigned int precision);

  const std::vector<T>& Values() const { return m_values; }

private:
  std::vector<T> m_values;
  RTE::RangeT<T> m_range{};
  T m_step = 1;
  unsigned int m_precision;
};

extern template class C_NumericValueListT<long long>;
extern template class C_NumericValueListT<double>;

} // namespace RTE::Parameter
