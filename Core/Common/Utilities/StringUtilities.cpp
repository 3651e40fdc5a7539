#include <Core/Common/Utilities/StringUtilities.h>

#include <QSet>

#include <cerrno>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <locale.h>
#include <stdexcept>

namespace RTE
{

namespace
{

// The C locale as an object: strtod_l reads '.' whatever setlocale chose, and without
// touching the process locale, which other threads may be using.
locale_t cLocale()
{
  static const locale_t locale = newlocale(LC_ALL_MASK, "C", locale_t(nullptr));
  return locale;
}

std::string trimBlanksAndTabs(const std::string& text)
{
  const std::size_t first = text.find_first_not_of(" \t");
  if (first == std::string::npos)
    return std::string();
  return text.substr(first, text.find_last_not_of(" \t") - first + 1);
}

// The standard library's own conversion rules and exception types, with the texts host
// applications already match on.
template <typename T>
T parseNumber(const std::string& text, T (*convert)(const char*, char**, locale_t), const char* invalidText,
              const char* rangeText)
{
  const std::string trimmed = trimBlanksAndTabs(text);
  if (trimmed.empty())
    return std::numeric_limits<T>::quiet_NaN();
  char* end = nullptr;
  errno = 0;
  const T value = convert(trimmed.c_str(), &end, cLocale());
  if (end == trimmed.c_str())
    throw std::invalid_argument(invalidText);
  if (errno == ERANGE)
    throw std::out_of_range(rangeText);
  return value;
}

bool isCSpace(char c)
{
  return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\v' || c == '\f';
}

char asciiLower(char c)
{
  return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

char asciiUpper(char c)
{
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

std::string hexString(std::int64_t value, int width, const std::string& prefix)
{
  static const char digits[] = "0123456789abcdef";
  auto bits = static_cast<std::uint64_t>(value);
  std::string hex;
  do
  {
    hex.insert(hex.begin(), digits[bits & 0xF]);
    bits >>= 4;
  } while (bits != 0);
  if (width > 0 && hex.size() < static_cast<std::size_t>(width))
    hex.insert(0, static_cast<std::size_t>(width) - hex.size(), '0');
  return prefix + hex;
}

// The longest run of letters at position from.
QString letterRun(const QString& text, qsizetype from)
{
  qsizetype end = from;
  while (end < text.size() && text[end].isLetter())
    ++end;
  return text.mid(from, end - from);
}

} // namespace

double toDouble(const std::string& text)
{
  return parseNumber<double>(text, &strtod_l, "invalid stod argument", "stod argument out of range");
}

double toDouble(const QString& text)
{
  return toDouble(text.toLatin1().toStdString());
}

float toFloat(const std::string& text)
{
  return parseNumber<float>(text, &strtof_l, "invalid stof argument", "stof argument out of range");
}

float toFloat(const QString& text)
{
  return toFloat(text.toLatin1().toStdString());
}

namespace String
{

QString replaceEnvironmentVariables(const QString& text)
{
  QString result = text;
  // A name is replaced once: a value that contains its own reference must not grow the
  // text for ever.
  QSet<QString> replaced;
  for (qsizetype at = result.indexOf(QLatin1Char('$')); at >= 0; at = result.indexOf(QLatin1Char('$'), at + 1))
  {
    const QString name = letterRun(result, at + 1);
    if (name.isEmpty() || replaced.contains(name))
      continue;
    const QString value = qEnvironmentVariable(name.toLocal8Bit().constData());
    if (value.isEmpty())
      continue;
    replaced.insert(name);
    result.replace(QLatin1Char('$') + name, value);
    at += value.size() - 1;
  }
  replaced.clear();
  for (qsizetype at = result.indexOf(QLatin1Char('%')); at >= 0; at = result.indexOf(QLatin1Char('%'), at + 1))
  {
    const QString name = letterRun(result, at + 1);
    const qsizetype close = at + 1 + name.size();
    if (name.isEmpty() || close >= result.size() || result[close] != QLatin1Char('%') || replaced.contains(name))
      continue;
    const QString value = qEnvironmentVariable(name.toLocal8Bit().constData());
    if (value.isEmpty())
      continue;
    replaced.insert(name);
    result.replace(QLatin1Char('%') + name + QLatin1Char('%'), value);
    at += value.size() - 1;
  }
  return result;
}

std::string ToString(bool value)
{
  return value ? "true" : "false";
}

bool endsWithDigit(const std::string& text)
{
  return endsWithDigit(QString::fromLatin1(text.data(), static_cast<qsizetype>(text.size())));
}

bool endsWithDigit(const QString& text)
{
  const QString trimmed = text.trimmed();
  return !trimmed.isEmpty() && trimmed.back() >= QLatin1Char('0') && trimmed.back() <= QLatin1Char('9');
}

bool Contains(const std::string& text, const std::string& part, CompareMode mode)
{
  if (mode != CompareMode::CaseInsensitive)
    return text.find(part) != std::string::npos;
  std::string lowerText = text;
  std::string lowerPart = part;
  ToLower(lowerText);
  ToLower(lowerPart);
  return lowerText.find(lowerPart) != std::string::npos;
}

std::string ToHexString(char value, int width, const std::string& prefix)
{
  // Through signed char: plain char is unsigned on some platforms.
  return hexString(static_cast<signed char>(value), width, prefix);
}

std::string ToHexString(unsigned char value, int width, const std::string& prefix)
{
  return hexString(value, width, prefix);
}

void ToLower(std::string& text)
{
  for (char& c : text)
    c = asciiLower(c);
}

void ToUpper(std::string& text)
{
  for (char& c : text)
    c = asciiUpper(c);
}

std::string Trim(std::string& text, bool keepArgument)
{
  std::string trimmed = TrimRight(text, true);
  return TrimLeft(keepArgument ? trimmed : (text = trimmed), keepArgument);
}

std::string TrimLeft(std::string& text, bool keepArgument)
{
  std::size_t first = 0;
  while (first < text.size() && isCSpace(text[first]))
    ++first;
  std::string trimmed = text.substr(first);
  if (!keepArgument)
    text = trimmed;
  return trimmed;
}

std::string TrimRight(std::string& text, bool keepArgument)
{
  std::size_t end = text.size();
  while (end > 0 && isCSpace(text[end - 1]))
    --end;
  std::string trimmed = text.substr(0, end);
  if (!keepArgument)
    text = trimmed;
  return trimmed;
}

std::string TrimString(const std::string& text, const std::vector<char>& characters)
{
  std::string trimmed = text;
  TrimString(trimmed, std::string(characters.begin(), characters.end()));
  return trimmed;
}

QString TrimString(const QString& text, const std::vector<char>& characters)
{
  QString trimmed = text;
  TrimString(trimmed, std::string(characters.begin(), characters.end()));
  return trimmed;
}

void TrimString(std::string& text, const std::string& characters)
{
  const std::size_t first = text.find_first_not_of(characters);
  if (first == std::string::npos)
  {
    text.clear();
    return;
  }
  text = text.substr(first, text.find_last_not_of(characters) - first + 1);
}

void TrimString(QString& text, const std::string& characters)
{
  const QString set = QString::fromLatin1(characters.data(), static_cast<qsizetype>(characters.size()));
  qsizetype first = 0;
  qsizetype end = text.size();
  while (first < end && set.contains(text[first]))
    ++first;
  while (end > first && set.contains(text[end - 1]))
    --end;
  text = text.mid(first, end - first);
}

std::string Replace(const std::string& text, const std::string& from, const std::string& to)
{
  if (from.empty())
    return text;
  std::string result;
  result.reserve(text.size());
  std::size_t at = 0;
  for (std::size_t found = text.find(from); found != std::string::npos; found = text.find(from, at))
  {
    result.append(text, at, found - at);
    result.append(to);
    at = found + from.size();
  }
  result.append(text, at, std::string::npos);
  return result;
}

std::vector<std::string> Split(const std::string& text, const std::string& separator)
{
  std::vector<std::string> parts;
  if (text.empty())
    return parts;
  if (separator.empty())
    return {text};
  std::size_t at = 0;
  for (std::size_t found = text.find(separator); found != std::string::npos; found = text.find(separator, at))
  {
    parts.push_back(text.substr(at, found - at));
    at = found + separator.size();
  }
  parts.push_back(text.substr(at));
  return parts;
}

std::vector<std::string> split(const std::string& text, const std::string& separator)
{
  return Split(text, separator);
}

void Tokenize(const std::string& text, std::vector<std::string>& tokens, const std::string& delimiters)
{
  tokens.clear();
  std::size_t start = text.find_first_not_of(delimiters);
  while (start != std::string::npos)
  {
    const std::size_t end = text.find_first_of(delimiters, start);
    tokens.push_back(text.substr(start, end == std::string::npos ? std::string::npos : end - start));
    start = end == std::string::npos ? end : text.find_first_not_of(delimiters, end);
  }
}

void Implode(const std::vector<std::string>& parts, const std::string& glue, std::string& result)
{
  result.clear();
  for (std::size_t i = 0; i < parts.size(); ++i)
  {
    if (i != 0)
      result += glue;
    result += parts[i];
  }
}

} // namespace String

} // namespace RTE
