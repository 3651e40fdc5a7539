// Small helpers shared by the parameter tests.
#pragma once

#include <Core/Common/Exceptions/Exception.h>

#include <QString>

// "<exception type>: <message>" of what `fn` throws, or "no exception".
template <typename Fn>
QString messageOf(Fn&& fn)
{
  try
  {
    fn();
  }
  catch (const RTE::Exception& e)
  {
    return e.typeName() + QStringLiteral(": ") + e.message();
  }
  return QStringLiteral("no exception");
}
