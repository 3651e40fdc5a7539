#include <Core/Common/Parameter/C_NumericValueListT.h>

#include "ParameterLog_p.h"

#include <algorithm>
#include <sstream>

namespace RTE::Parameter
{

template <typename T>
C_NumericValueListT<T>::C_NumericValueListT(unsigned int precision) : m_precision(precision)
{
}

template <typename T>
C_NumericValueListT<T>::~C_NumericValueListT() = default;

template <typename T>
bool C_NumericValueListT<T>::operator==(const C_Node& other) const
{
  const auto* list = dynamic_cast<const C_NumericValueListT<T>*>(&other);
  return list && C_Node::operator==(other) && list->m_values == m_values && list->m_range == m_range &&
         list->m_step == m_step && list->m_precision == m_precision;
}

template <typename T>
std::string C_NumericValueListT<T>::dump() const
{
  std::ostringstream text;
  text << C_Node::dump() << " Value: ";
  for (const T& value : m_values)
    text << value << ' ';
  text << "Range: " << m_range.minimum << "-" << m_range.maximum << " Precision: " << m_precision;
  return text.str();
}

template <typename T>
void C_NumericValueListT<T>::CopyValues(std::shared_ptr<C_Node> source)
{
  const auto* list = dynamic_cast<const C_NumericValueListT<T>*>(source.get());
  if (!list)
    detail::RaiseCannotCopy(source.get(), *this);
  if (list != this)
    m_values = list->m_values;
  // Announced even without a change: a copy is how listeners learn that a list was reloaded.
  NotifyValueChanged();
}

template <typename T>
bool C_NumericValueListT<T>::operator!=(const C_Node& other) const
{
  return !(*this == other);
}

template <typename T>
void C_NumericValueListT<T>::SetPrecision(unsigned int precision)
{
  if (precision == m_precision)
    return;
  m_precision = precision;
  NotifyPrecisionChanged();
}

template <typename T>
const unsigned int& C_NumericValueListT<T>::GetPrecision() const
{
  return m_precision;
}

template <typename T>
size_t C_NumericValueListT<T>::GetSize() const
{
  return m_values.size();
}

template <typename T>
void C_NumericValueListT<T>::SetSize(size_t size, T fill)
{
  m_values.resize(size, fill);
}

template <typename T>
const T& C_NumericValueListT<T>::GetValue(size_t index) const
{
  return m_values[index];
}

template <typename T>
void C_NumericValueListT<T>::SetValue(size_t index, const T& value)
{
  if (index >= m_values.size())
    RTE::Raise(RTE::Exception(QCoreApplication::translate("RTE::Parameter", "Index %1 out of range (%2)")
                                  .arg(QString::number(index), QString::number(m_values.size()))));
  if (!(value >= m_range.minimum && value <= m_range.maximum))
    detail::RaiseOutOfRange(value, m_range.minimum, m_range.maximum);
  if (value == m_values[index])
    return;
  m_values[index] = value;
  NotifyValueChanged();
}

template <typename T>
T& C_NumericValueListT<T>::operator[](size_t index)
{
  return m_values[index];
}

template <typename T>
const T& C_NumericValueListT<T>::operator[](size_t index) const
{
  return m_values[index];
}

template <typename T>
const RTE::RangeT<T>& C_NumericValueListT<T>::GetRange() const
{
  return m_range;
}

template <typename T>
void C_NumericValueListT<T>::SetRange(const RTE::RangeT<T>& range)
{
  if (range == m_range)
    return;
  m_range = range;
  NotifyRangeChanged();
}

template <typename T>
const T& C_NumericValueListT<T>::GetStep() const
{
  return m_step;
}

template <typename T>
void C_NumericValueListT<T>::SetStep(const T& step)
{
  if (step == m_step)
    return;
  m_step = step;
  NotifyStepChanged();
}

template <typename T>
T C_NumericValueListT<T>::FitToRange(const T& value) const
{
  if (value >= m_range.maximum)
    return m_range.maximum;
  return std::max(m_range.minimum, value);
}

template class C_NumericValueListT<long long>;
template class C_NumericValueListT<double>;

} // namespace RTE::Parameter
