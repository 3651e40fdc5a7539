// What a call throws, for tests that check the message or the exception itself.
#pragma once

#include <QString>

#include <optional>

// The message of the E that call throws, or "<no exception>"; other exceptions escape
// and fail the test.
template <typename E, typename F>
QString MessageOf(F&& call)
{
  try
  {
    call();
  }
  catch (const E& e)
  {
    return e.message();
  }
  return QStringLiteral("<no exception>");
}

// A copy of the E that call throws, or nothing; other exceptions escape and fail the test.
template <typename E, typename F>
std::optional<E> Caught(F&& call)
{
  try
  {
    call();
  }
  catch (const E& e)
  {
    return e;
  }
  return std::nullopt;
}
