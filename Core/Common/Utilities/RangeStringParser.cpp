#include "RangeStringParser_p.h"

#include <QList>
#include <QString>

#include <algorithm>
#include <charconv>
#include <optional>

namespace RTE::Private
{

namespace
{

struct Interval
{
  unsigned long long lower;
  unsigned long long upper;
};

bool isDigit(QChar c)
{
  return c >= QLatin1Char('0') && c <= QLatin1Char('9');
}

bool allDigits(QStringView text)
{
  return !text.isEmpty() && std::all_of(text.begin(), text.end(), isDigit);
}

// The decimal number of a run of ASCII digits, less one when one-based, checked against
// the bounds. Too many digits for 64 bits fail the bounds check like any large number.
std::optional<unsigned long long> boundedIndex(QStringView digits, unsigned int minIndex, unsigned int maxIndex,
                                               bool oneBased)
{
  // Leading zeros say nothing; then 20 digits hold every 64-bit number, and longer
  // texts are out of range whatever they say.
  while (digits.size() > 1 && digits.front() == QLatin1Char('0'))
    digits = digits.mid(1);
  char ascii[24];
  if (digits.size() > 20)
    return std::nullopt;
  const std::size_t length = static_cast<std::size_t>(digits.size());
  for (std::size_t i = 0; i < length; ++i)
    ascii[i] = static_cast<char>(digits[static_cast<qsizetype>(i)].unicode());
  unsigned long long value = 0;
  const auto [end, error] = std::from_chars(ascii, ascii + length, value);
  if (error != std::errc() || end != ascii + length)
    return std::nullopt;
  if (oneBased)
  {
    if (value == 0)
      return std::nullopt;
    --value;
  }
  if (value < minIndex || value > maxIndex)
    return std::nullopt;
  return value;
}

} // namespace

RangeTextError parseRangeText(QStringView text, unsigned int minIndex, unsigned int maxIndex, bool oneBased,
                              std::vector<bool>& flags, std::vector<bool>& singles)
{
  QString cleaned;
  cleaned.reserve(text.size());
  for (QChar c : text)
  {
    if (c.isSpace())
      continue;
    cleaned.append(c == QLatin1Char(';') ? QLatin1Char(',') : c);
  }

  std::vector<Interval> inclusions;
  std::vector<unsigned long long> singleIndices;
  std::vector<unsigned long long> exclusions;
  std::vector<QStringView> excluded;
  const auto index = [&](QStringView digits) { return boundedIndex(digits, minIndex, maxIndex, oneBased); };

  // Inclusions are checked in order, then the exclusions: the first bad part decides the
  // error, as if the flags were set part by part.
  for (QStringView part : QStringView(cleaned).split(QLatin1Char(','), Qt::SkipEmptyParts))
  {
    if (part.startsWith(QLatin1Char('!')))
    {
      excluded.push_back(part.mid(1));
      continue;
    }
    const qsizetype dash = part.indexOf(QLatin1Char('-'));
    if (dash < 0)
    {
      if (!allDigits(part))
        return RangeTextError::Invalid;
      const auto n = index(part);
      if (!n)
        return RangeTextError::OutOfRange;
      inclusions.push_back({*n, *n});
      singleIndices.push_back(*n);
      continue;
    }
    const QStringView left = part.first(dash);
    const QStringView right = part.mid(dash + 1);
    const bool leftOk = left.isEmpty() || allDigits(left);
    const bool rightOk = right.isEmpty() || allDigits(right);
    if (!leftOk || !rightOk || (left.isEmpty() && right.isEmpty()))
      return RangeTextError::Invalid;
    if (left.isEmpty())
    {
      // "-n": from 0, even when the lower bound is larger; only n is checked.
      const auto n = index(right);
      if (!n)
        return RangeTextError::OutOfRange;
      inclusions.push_back({0, *n});
    }
    else if (right.isEmpty())
    {
      const auto n = index(left);
      if (!n)
        return RangeTextError::OutOfRange;
      inclusions.push_back({*n, maxIndex});
    }
    else
    {
      const auto a = index(left);
      const auto b = a ? index(right) : std::nullopt;
      if (!a || !b)
        return RangeTextError::OutOfRange;
      inclusions.push_back({std::min(*a, *b), std::max(*a, *b)});
    }
  }
  for (QStringView part : excluded)
  {
    if (!allDigits(part))
      return RangeTextError::Invalid;
    const auto n = index(part);
    if (!n)
      return RangeTextError::OutOfRange;
    exclusions.push_back(*n);
  }

  const std::size_t size = static_cast<std::size_t>(maxIndex) + 1;
  std::vector<bool> result(size, false);
  std::vector<bool> resultSingles(size, false);
  std::sort(inclusions.begin(), inclusions.end(),
            [](const Interval& a, const Interval& b) { return a.lower < b.lower; });
  for (std::size_t i = 0; i < inclusions.size();)
  {
    Interval merged = inclusions[i];
    for (++i; i < inclusions.size() && inclusions[i].lower <= merged.upper + 1; ++i)
      merged.upper = std::max(merged.upper, inclusions[i].upper);
    std::fill(result.begin() + static_cast<std::ptrdiff_t>(merged.lower),
              result.begin() + static_cast<std::ptrdiff_t>(merged.upper) + 1, true);
  }
  for (unsigned long long n : singleIndices)
    resultSingles[n] = true;
  for (unsigned long long n : exclusions)
    result[n] = false;

  flags = std::move(result);
  singles = std::move(resultSingles);
  return RangeTextError::None;
}

std::vector<RangeT<unsigned int>> flagsToRanges(const std::vector<bool>& flags, unsigned int from, unsigned int to,
                                                const std::vector<bool>& singles)
{
  std::vector<RangeT<unsigned int>> ranges;
  if (from > to || flags.empty() || from >= flags.size())
    return ranges;
  // Beyond the flags everything is cleared: a run open at the last flag closes there.
  const unsigned long long last = std::min<unsigned long long>(to, flags.size() - 1);
  // A flag and a value rather than std::optional: g++ 12 at -O3 takes the optional's value
  // for uninitialised here.
  bool inRun = false;
  unsigned long long runStart = 0;
  const auto closeRun = [&](unsigned long long end)
  {
    if (inRun)
      ranges.emplace_back(static_cast<unsigned int>(runStart), static_cast<unsigned int>(end));
    inRun = false;
  };
  for (unsigned long long i = from; i <= last; ++i)
  {
    if (!flags[i])
    {
      closeRun(i - 1);
      continue;
    }
    if (i < singles.size() && singles[i])
    {
      closeRun(i - 1);
      ranges.emplace_back(static_cast<unsigned int>(i), static_cast<unsigned int>(i));
      continue;
    }
    if (!inRun)
    {
      inRun = true;
      runStart = i;
    }
  }
  closeRun(last);
  return ranges;
}

} // namespace RTE::Private
