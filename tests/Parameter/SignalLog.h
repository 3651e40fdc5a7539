// Records the signals of several objects in one list, so tests can check their
// relative order (separate QSignalSpy objects cannot show it).
//
//   SignalLog log;
//   log.watch(node.get(), &C_Node::ValueChanged, "ValueChanged");
//   log.watch(node.get(), qOverload<bool>(&C_Bool::ValueChanged), "Bool");
//   node->SetValue(true);
//   EXPECT_EQ(log.take(), QStringList({"ValueChanged()", "Bool(true)"}));
#pragma once

#include <Core/Common/Parameter/C_EnumerationEntry.h>
#include <Core/Common/Parameter/C_Node.h>
#include <Core/Common/Parameter/RangeT.h>

#include <QObject>
#include <QStringList>

#include <list>
#include <memory>
#include <sstream>
#include <type_traits>
#include <vector>

namespace testing_support
{

// Signal arguments as short texts: numbers and strings as they are, enumerators as
// streamed, ranges as "min-max", lists as "[a b]", enumeration entries by name.
template <typename T>
QString text(const T& v)
{
  if constexpr (std::is_same_v<T, bool>)
    return v ? QStringLiteral("true") : QStringLiteral("false");
  else if constexpr (std::is_arithmetic_v<T>)
    return QString::number(v);
  else if constexpr (std::is_enum_v<T>)
  {
    std::ostringstream s;
    s << v;
    return QString::fromStdString(s.str());
  }
  else
    return v;
}
template <typename T>
QString text(const RTE::RangeT<T>& r)
{
  return text(r.minimum) + QLatin1Char('-') + text(r.maximum);
}
inline QString text(const std::shared_ptr<RTE::Parameter::C_EnumerationEntry>& entry)
{
  return entry ? entry->GetName() : QStringLiteral("null");
}
// Vectors and lists.
template <typename T, typename A, template <typename, typename> class Sequence>
QString text(const Sequence<T, A>& values)
{
  QStringList parts;
  for (const auto& v : values)
    parts << text(v);
  return QLatin1Char('[') + parts.join(QLatin1Char(' ')) + QLatin1Char(']');
}

} // namespace testing_support

class SignalLog
{
public:
  template <typename Sender, typename Signal>
  void watch(Sender* sender, Signal signal, const QString& name)
  {
    QObject::connect(sender, signal,
                     [this, name](const auto&... args)
                     {
                       QStringList parts;
                       ((parts << testing_support::text(args)), ...);
                       m_events << name + QLatin1Char('(') + parts.join(QLatin1Char(',')) + QLatin1Char(')');
                     });
  }

  // The events so far; the log starts empty again.
  QStringList take()
  {
    QStringList events = m_events;
    m_events.clear();
    return events;
  }

private:
  QStringList m_events;
};
