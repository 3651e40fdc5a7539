#include <Core/Common/Units/ToString.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>

#include <QCoreApplication>

#include <fmt/format.h>

namespace RTE
{

namespace
{

// fmt writes into a stack buffer; the text is ASCII, so Latin-1 is exact.
template <typename... Args>
QString format(fmt::format_string<Args...> pattern, Args&&... args)
{
  fmt::basic_memory_buffer<char, 64> buffer;
  fmt::format_to(std::back_inserter(buffer), pattern, std::forward<Args>(args)...);
  return QString::fromLatin1(buffer.data(), static_cast<qsizetype>(buffer.size()));
}

} // namespace

QString toString(long long value)
{
  return format("{}", value);
}

QString toString(unsigned long long value)
{
  return format("{}", value);
}

QString toString(double value)
{
  return format("{}", value);
}

QString toString(float value)
{
  return format("{}", value);
}

QString toString(double value, int precision, FloatStyle style)
{
  if (precision < 0 || precision > 1000)
    Raise(InvalidArgumentError(
        QCoreApplication::translate("RTE::toString", "Invalid precision %1: expected 0 to 1000.").arg(precision)));
  switch (style)
  {
  case FloatStyle::Fixed:
    return format("{:.{}f}", value, precision);
  case FloatStyle::Scientific:
    return format("{:.{}e}", value, precision);
  case FloatStyle::General:
    break;
  }
  // 'g' with precision 0 means one digit, as in printf.
  return format("{:.{}g}", value, precision);
}

} // namespace RTE
