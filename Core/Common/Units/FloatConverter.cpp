#include <Core/Common/Units/FloatConverter.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Units/ToString.h>

#include <QCoreApplication>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace RTE
{

namespace
{

enum class Failure
{
  None,
  NotANumber,
  OutOfRange,
};

// Longer texts are not numbers anyone writes; the bound keeps the copy on the stack.
constexpr qsizetype maxTextLength = 800;

template <typename T>
Failure parse(QStringView text, T& value) noexcept
{
  text = text.trimmed();
  if (text.isEmpty() || text.size() > maxTextLength)
    return Failure::NotANumber;
  char buffer[maxTextLength] = {};
  qsizetype length = 0;
  for (const QChar c : text)
  {
    if (c.unicode() > 0x7F)
      return Failure::NotANumber;
    buffer[length++] = static_cast<char>(c.unicode());
  }
  const char* begin = buffer;
  const char* const end = buffer + length;
  // from_chars takes no plus sign; a sign after it ("+-1") stays an error.
  if (*begin == '+')
  {
    ++begin;
    if (begin == end || *begin == '-')
      return Failure::NotANumber;
  }
  const std::from_chars_result result = std::from_chars(begin, end, value, std::chars_format::general);
  if (result.ec == std::errc::result_out_of_range && result.ptr == end)
  {
    // Only overflow is an error; a value too small reads as the nearest one (0 or a
    // subnormal). The wider type tells which it was; beyond even its range the sign of
    // the exponent does.
    long double wide = 0.0L;
    if (std::from_chars(begin, end, wide, std::chars_format::general).ec == std::errc())
    {
      if (std::fabs(wide) > static_cast<long double>(std::numeric_limits<T>::max()))
        return Failure::OutOfRange;
      value = static_cast<T>(wide);
      return Failure::None;
    }
    const char* exponent = std::find_if(begin, end, [](char c) { return c == 'e' || c == 'E'; });
    if (exponent + 1 < end && exponent[1] == '-')
    {
      value = *begin == '-' ? -T(0) : T(0);
      return Failure::None;
    }
    return Failure::OutOfRange;
  }
  if (result.ec != std::errc() || result.ptr != end)
    return Failure::NotANumber;
  return Failure::None;
}

template <typename T>
T parseOrRaise(QStringView text, const char* typeName)
{
  T value{};
  switch (parse(text, value))
  {
  case Failure::None:
    return value;
  case Failure::OutOfRange:
    Raise(OutOfRangeError(QCoreApplication::translate("RTE::FloatConverter", "The number '%1' is too large for a %2.")
                              .arg(text.toString(), QLatin1String(typeName))));
  case Failure::NotANumber:
    break;
  }
  Raise(InvalidArgumentError(
      QCoreApplication::translate("RTE::FloatConverter",
                                  "'%1' is not a number (expected digits with '.' as the decimal point and an "
                                  "optional exponent, such as 12.5 or -3e-7).")
          .arg(text.toString())));
}

} // namespace

QString FloatConverter::toString(double value)
{
  return RTE::toString(value);
}

QString FloatConverter::toString(float value)
{
  return RTE::toString(value);
}

double FloatConverter::toDouble(QStringView text)
{
  return parseOrRaise<double>(text, "double");
}

float FloatConverter::toFloat(QStringView text)
{
  return parseOrRaise<float>(text, "float");
}

std::optional<double> FloatConverter::tryToDouble(QStringView text) noexcept
{
  double value = 0.0;
  return parse(text, value) == Failure::None ? std::optional<double>(value) : std::nullopt;
}

std::optional<float> FloatConverter::tryToFloat(QStringView text) noexcept
{
  float value = 0.0F;
  return parse(text, value) == Failure::None ? std::optional<float>(value) : std::nullopt;
}

} // namespace RTE
