// Logging category and shared failure helpers of the parameter model; not installed.
#pragma once

#include <Core/Common/Exceptions/Exception.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Parameter/C_Node.h>

#include <QCoreApplication>
#include <QLocale>
#include <QLoggingCategory>

#include <memory>
#include <source_location>

Q_DECLARE_LOGGING_CATEGORY(lcParameter)

namespace RTE::Parameter::detail
{

// The checked cast behind every CastTo... function: shares ownership, or raises
// "Cannot cast <type name> to <class word>.".
template <typename Target>
std::shared_ptr<Target> CastNode(const std::shared_ptr<C_Node>& node, const char* classWord,
                                 const std::source_location& where = std::source_location::current())
{
  auto cast = std::dynamic_pointer_cast<Target>(node);
  if (!cast)
  {
    const QString typeName = node ? node->GetTypeName() : QStringLiteral("null");
    RTE::Raise(RTE::Exception(QCoreApplication::translate("RTE::Parameter", "Cannot cast %1 to %2.")
                                  .arg(typeName, QLatin1String(classWord))),
               where);
  }
  return cast;
}

// Numbers in messages: integers in decimal, doubles in the shortest form that reads back
// to the same value.
inline QString NumberText(long long value)
{
  return QString::number(value);
}
inline QString NumberText(double value)
{
  return QString::number(value, 'g', QLocale::FloatingPointShortest);
}

// "Value <v> out of range (<min>-<max>)", shared by scalars and lists.
template <typename T>
[[noreturn]] void RaiseOutOfRange(const T& value, const T& minimum, const T& maximum,
                                  const std::source_location& where = std::source_location::current())
{
  const QString range = QStringLiteral("%1-%2").arg(NumberText(minimum), NumberText(maximum));
  RTE::Raise(
      RTE::Exception(
          QCoreApplication::translate("RTE::Parameter", "Value %1 out of range (%2)").arg(NumberText(value), range)),
      where);
}

// "CopyValues: Cannot copy '<source dump>' to '<own dump>'" for nodes that refuse another kind.
[[noreturn]] void RaiseCannotCopy(const C_Node* source, const C_Node& target,
                                  const std::source_location& where = std::source_location::current());

// Registers a meta type under an extra name; the alias is only added where the name
// differs from the type's own (qRegisterMetaType checks that itself).
template <typename T>
void RegisterMetaType(const char* name)
{
  qRegisterMetaType<T>(name);
}

} // namespace RTE::Parameter::detail
