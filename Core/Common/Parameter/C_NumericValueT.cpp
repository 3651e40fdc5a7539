#include <Core/Common/Parameter/C_NumericValueT.h>

#include "ParameterLog_p.h"

#include <algorithm>
#include <sstream>

namespace RTE::Parameter
{

template <typename T>
C_NumericValueT<T>::C_NumericValueT(unsigned int precision) : m_precision(precision)
{
}

template <typename T>
C_NumericValueT<T>::~C_NumericValueT() = default;

template <typename T>
bool C_NumericValueT<T>::operator==(const C_Node& other) const
{
  const auto* node = dynamic_cast<const C_NumericValueT<T>*>(&other);
  return node && C_Node::operator==(other) && node->m_value == m_value && node->m_range == m_range &&
         node->m_step == m_step && node->m_precision == m_precision;
}

template <typename T>
std::string C_NumericValueT<T>::dump() const
{
  std::ostringstream text;
  text << C_Node::dump() << " Value: " << m_value << " Range: " << m_range.minimum << "-" << m_range.maximum
       << " Precision: " << m_precision;
  return text.str();
}

template <typename T>
QString C_NumericValueT<T>::toString() const
{
  if constexpr (std::is_floating_point_v<T>)
    return QString::number(m_value, 'g', 6);
  else
    return QString::number(m_value);
}

template <typename T>
void C_NumericValueT<T>::CopyValues(std::shared_ptr<C_Node> source)
{
  // Other kinds are ignored on purpose: a tree copy may meet a node redefined as another type.
  if (const auto* node = dynamic_cast<const C_NumericValueT<T>*>(source.get()))
    SetValue(node->GetValue());
}

template <typename T>
bool C_NumericValueT<T>::operator!=(const C_Node& other) const
{
  return !(*this == other);
}

template <typename T>
const T& C_NumericValueT<T>::GetStep() const
{
  return m_step;
}

template <typename T>
void C_NumericValueT<T>::SetStep(const T& step)
{
  if (step == m_step)
    return;
  m_step = step;
  NotifyStepChanged();
}

template <typename T>
const T& C_NumericValueT<T>::GetValue() const
{
  return m_value;
}

template <typename T>
const RTE::RangeT<T>& C_NumericValueT<T>::GetRange() const
{
  return m_range;
}

template <typename T>
void C_NumericValueT<T>::SetRange(T a, T b)
{
  SetRange(RTE::RangeT<T>(std::min(a, b), std::max(a, b)));
}

template <typename T>
void C_NumericValueT<T>::SetRange(const RTE::RangeT<T>& range)
{
  if (range.minimum == m_range.minimum && range.maximum == m_range.maximum)
    return;
  const RTE::RangeT<T> previous = m_range;
  m_range = range;
  try
  {
    if (m_value < m_range.minimum)
      SetValue(m_range.minimum);
    else if (m_value > m_range.maximum)
      SetValue(m_range.maximum);
  }
  catch (...)
  {
    // An inverted range cannot hold the value; keep the node as it was.
    m_range = previous;
    throw;
  }
  NotifyRangeChanged();
}

template <typename T>
void C_NumericValueT<T>::SetValue(const T& value)
{
  // Written so that NaN fails both comparisons and counts as out of range.
  if (!(value >= m_range.minimum && value <= m_range.maximum))
    detail::RaiseOutOfRange(value, m_range.minimum, m_range.maximum);
  if (value == m_value)
    return;
  m_value = value;
  NotifyValueChanged();
}

template <typename T>
T C_NumericValueT<T>::FitToRange(const T& value) const
{
  if (value >= m_range.maximum)
    return m_range.maximum;
  return std::max(m_range.minimum, value);
}

template <typename T>
void C_NumericValueT<T>::SetPrecision(unsigned int precision)
{
  if (precision == m_precision)
    return;
  m_precision = precision;
  NotifyPrecisionChanged();
}

template <typename T>
const unsigned int& C_NumericValueT<T>::GetPrecision() const
{
  return m_precision;
}

template class C_NumericValueT<long long>;
template class C_NumericValueT<double>;

} // namespace RTE::Parameter
