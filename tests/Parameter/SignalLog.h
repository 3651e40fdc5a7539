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
#include <vector>

namespace testing_support
{

inline QString text(bool v)
{
  return v ? QStringLiteral("true") : QStringLiteral("false");
}
inline QString text(long v)
{
  return QString::number(v);
}
inline QString text(long long v)
{
  return QString::number(v);
}
inline QString text(unsigned int v)
{
  return QString::number(v);
}
inline QString text(double v)
{
  return QString::number(v);
}
inline QString text(const QString& v)
{
  return v;
}
template <typename T>
QString text(const RTE::RangeT<T>& r)
{
  return text(r.minimum) + QLatin1Char('-') + text(r.maximum);
}
template <typename T>
QString text(const std::vector<T>& values)
{
  QStringList parts;
  for (const auto& v : values)
    parts << text(v);
  return QLatin1Char('[') + parts.join(QLatin1Char(' ')) + QLatin1Char(']');
}
inline QString text(RTE::Parameter::E_AccessMode mode)
{
  std::ostringstream s;
  s << mode;
  return QString::fromStdString(s.str());
}
inline QString text(RTE::Parameter::E_VisibilityLevel level)
{
  std::ostringstream s;
  s << level;
  return QString::fromStdString(s.str());
}
inline QString text(const std::shared_ptr<RTE::Parameter::C_EnumerationEntry>& entry)
{
  return entry ? entry->GetName() : QStringLiteral("null");
}
inline QString text(const std::list<std::shared_ptr<RTE::Parameter::C_EnumerationEntry>>& entries)
{
  QStringList names;
  for (const auto& e : entries)
    names << text(e);
  return QLatin1Char('[') + names.join(QLatin1Char(' ')) + QLatin1Char(']');
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
