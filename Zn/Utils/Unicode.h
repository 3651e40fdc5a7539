// Characters that unit labels need and that are awkward to type in source code.
//
//   QString label = QStringLiteral("m/s%1").arg(Zn::Unicode::square());  // "m/s²"
#pragma once

#include <QChar>

namespace Zn::Unicode
{

// SUPERSCRIPT TWO, U+00B2
constexpr QChar square()
{
  return QChar(0x00B2);
}

// SUPERSCRIPT THREE, U+00B3
constexpr QChar cube()
{
  return QChar(0x00B3);
}

// SUPERSCRIPT FOUR, U+2074
constexpr QChar superscriptFour()
{
  return QChar(0x2074);
}

// MICRO SIGN, U+00B5
constexpr QChar micro()
{
  return QChar(0x00B5);
}

// DEGREE SIGN, U+00B0
constexpr QChar degree()
{
  return QChar(0x00B0);
}

} // namespace Zn::Unicode
