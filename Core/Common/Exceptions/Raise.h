// The one way library code throws: record where, log, throw (RaiseWithoutLog for the
// few failures that are expected and must not be logged).
//
//   if (width <= 0)
//     RTE::Raise(RTE::InvalidArgumentError(QObject::tr("Width must be positive")));
//
// The caller's file and line are taken from std::source_location, so the call site
// is what reports show.
#pragma once

#include <Core/Common/Exceptions/Exception.h>

#include <source_location>
#include <type_traits>
#include <utility>

namespace RTE
{

// As Raise, with a fixed location instead of the call site: for the few failures whose
// reported origin is part of the library's documented behaviour.
template <typename E>
requires std::is_base_of_v<Exception, std::remove_cvref_t<E>>
[[noreturn]] void RaiseAt(E&& exception, const QString& sourceFile, unsigned int sourceLine)
{
  std::remove_cvref_t<E> raised(std::forward<E>(exception));
  raised.setLocation(sourceFile, sourceLine);
  raised.log();
  throw raised;
}

template <typename E>
requires std::is_base_of_v<Exception, std::remove_cvref_t<E>>
[[noreturn]] void Raise(E&& exception, const std::source_location& where = std::source_location::current())
{
  RaiseAt(std::forward<E>(exception), QString::fromUtf8(where.file_name()), static_cast<unsigned int>(where.line()));
}

// As Raise, but without logging: for failures that callers routinely expect and handle
// (a missing child while probing a tree), whose report would only be noise.
template <typename E>
requires std::is_base_of_v<Exception, std::remove_cvref_t<E>>
[[noreturn]] void RaiseWithoutLog(E&& exception, const std::source_location& where = std::source_location::current())
{
  std::remove_cvref_t<E> raised(std::forward<E>(exception));
  raised.setLocation(QString::fromUtf8(where.file_name()), static_cast<unsigned int>(where.line()));
  throw raised;
}

} // namespace RTE
