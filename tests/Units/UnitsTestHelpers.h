// Small helpers shared by the units tests.
#pragma once

#include "QStringPrinter.h"
#include "Thrown.h"

#include <QString>

// Ids and labels are written in UTF-8 in the tests, as a user types them.
inline QString u8(const char* text)
{
  return QString::fromUtf8(text);
}
