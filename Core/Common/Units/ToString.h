// Numbers as text for files, logs and protocols: always "." as decimal point, never a
// group separator, whatever the locale of the process.
//
//   RTE::toString(42);                              // "42"
//   RTE::toString(0.1);                             // "0.1" (shortest text that reads back exactly)
//   RTE::toString(2.0 / 3.0, 3);                    // "0.667"
//   RTE::toString(1234.5, 2, RTE::FloatStyle::Fixed); // "1234.50"
//
// The shortest form reads back to the same value with RTE::FloatConverter (or any
// correct parser); it switches to exponent form ("1e+20", "1.5e-07") where that is shorter.
// NaN and infinities read "nan", "inf" and "-inf". For text shown to users, with a
// number of significant digits chosen by legibility, use Common::NumberFormatter instead.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>

#include <concepts>
#include <cstdint>

namespace RTE
{

// How a floating-point value with a precision is written.
enum class FloatStyle
{
  General,    // precision significant digits, exponent form for very large or small values ('g')
  Fixed,      // precision digits after the point ('f')
  Scientific, // one digit, the point, precision digits and the exponent ('e')
};

CORECOMMON_EXPORT QString toString(long long value);
CORECOMMON_EXPORT QString toString(unsigned long long value);

// Every other integer type (not bool, not characters) goes through the two above.
template <std::integral T>
requires(!std::same_as<T, bool> && !std::same_as<T, char> && !std::same_as<T, long long> &&
         !std::same_as<T, unsigned long long>) QString toString(T value)
{
  if constexpr (std::signed_integral<T>)
    return toString(static_cast<long long>(value));
  else
    return toString(static_cast<unsigned long long>(value));
}

// The shortest text that reads back to exactly this value.
CORECOMMON_EXPORT QString toString(double value);
CORECOMMON_EXPORT QString toString(float value);

// The value with a precision in the given style. Throws RTE::InvalidArgumentError for a
// negative precision or one above 1000 (no double has more meaningful digits).
CORECOMMON_EXPORT QString toString(double value, int precision, FloatStyle style = FloatStyle::General);

} // namespace RTE
