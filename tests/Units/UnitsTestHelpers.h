// Small helpers shared by the units tests.
#pragma once

#include "QStringPrinter.h"

#include <QString>

// Ids and labels are written in UTF-8 in the tests, as a user types them.
inline QString u8(const char* text)
{
  return QString::fromUtf8(text);
}

// The message of the E that `fn` throws, or "<no exception>"; any other exception
// escapes and fails the test.
template <typename E, typename Fn>
QString messageOf(Fn&& fn)
{
  try
  {
    fn();
  }
  catch (const E& e)
  {
    return e.message();
  }
  return QStringLiteral("<no exception>");
}
