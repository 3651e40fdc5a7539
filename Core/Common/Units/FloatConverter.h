// Floating-point values to text and back without loss, for files and protocols.
//
//   RTE::FloatConverter::toString(0.1);                       // "0.1"
//   RTE::FloatConverter::toDouble(QStringLiteral(" 2.5e-3")); // 0.0025
//   RTE::FloatConverter::tryToDouble(QStringLiteral("1,5"));  // std::nullopt
//
// Writing gives the shortest text that reads back to the same value (RTE::toString);
// reading accepts exactly what a C program would write: an optional sign, digits with
// "." as the decimal point, an optional exponent ("1e-7", "2E+3"), and "nan", "inf",
// "infinity" (any case). Blanks around the number are ignored; anything else (a comma,
// a second number, a unit, hexadecimal) is an error. The locale never matters.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>
#include <QStringView>

#include <optional>

namespace RTE
{

class CORECOMMON_EXPORT FloatConverter
{
public:
  // The shortest text that reads back to exactly this value ("nan", "inf", "-inf").
  static QString toString(double value);
  static QString toString(float value);

  // The value the text holds, correctly rounded. Throws RTE::InvalidArgumentError when
  // the text is not a number as described above, RTE::OutOfRangeError when its magnitude
  // is too large for the type (a value too small for the type reads as 0 or a subnormal).
  static double toDouble(QStringView text);
  static float toFloat(QStringView text);

  // As toDouble/toFloat, but empty instead of throwing (no log line either).
  static std::optional<double> tryToDouble(QStringView text) noexcept;
  static std::optional<float> tryToFloat(QStringView text) noexcept;
};

} // namespace RTE
