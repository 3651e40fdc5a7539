// libFuzzer target: the index-range parser on arbitrary text, against a part-by-part
// reading of the same grammar with the four documented patterns.
//
// Input: [0] lower bound, [1..2] upper bound (below 1024), [3] bit 0: one-based; the
// rest is the text in UTF-8.
#include <Core/Common/Utilities/RangeStringParser_p.h>

#include <QRegularExpression>
#include <QString>
#include <QStringList>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <vector>

namespace
{

using RTE::Private::RangeTextError;

void check(bool condition)
{
  if (!condition)
    __builtin_trap();
}

struct Reference
{
  RangeTextError error = RangeTextError::None;
  std::vector<bool> flags;
  std::vector<bool> singles;
};

// Sets the flags part by part, as the grammar reads; slow, but the bounds are small.
Reference referenceParse(const QString& text, unsigned minIndex, unsigned maxIndex, bool oneBased)
{
  static const QRegularExpression single(QStringLiteral("^([0-9]+)$"));
  static const QRegularExpression upTo(QStringLiteral("^(-[0-9]+)$"));
  static const QRegularExpression from(QStringLiteral("^([0-9]+-)$"));
  static const QRegularExpression between(QStringLiteral("^([0-9]+)-([0-9]+)$"));
  Reference result;
  result.flags.assign(maxIndex + 1, false);
  result.singles.assign(maxIndex + 1, false);
  QString cleaned;
  for (QChar c : text)
    if (!c.isSpace())
      cleaned.append(c == QLatin1Char(';') ? QLatin1Char(',') : c);
  const auto index = [&](const QString& digits) -> std::optional<unsigned long long>
  {
    bool ok = false;
    unsigned long long n = digits.toULongLong(&ok);
    if (!ok || (oneBased && n == 0))
      return std::nullopt;
    n -= oneBased ? 1 : 0;
    if (n < minIndex || n > maxIndex)
      return std::nullopt;
    return n;
  };
  const auto fail = [&](RangeTextError error)
  {
    Reference failed;
    failed.error = error;
    return failed;
  };
  QStringList exclusions;
  for (const QString& part : cleaned.split(QLatin1Char(','), Qt::SkipEmptyParts))
  {
    if (part.startsWith(QLatin1Char('!')))
    {
      exclusions.append(part.mid(1));
      continue;
    }
    unsigned long long lower = 0;
    unsigned long long upper = 0;
    if (const auto m = single.match(part); m.hasMatch())
    {
      const auto n = index(m.captured(1));
      if (!n)
        return fail(RangeTextError::OutOfRange);
      lower = upper = *n;
      result.singles[*n] = true;
    }
    else if (const auto m2 = upTo.match(part); m2.hasMatch())
    {
      const auto n = index(m2.captured(1).mid(1));
      if (!n)
        return fail(RangeTextError::OutOfRange);
      upper = *n;
    }
    else if (const auto m3 = from.match(part); m3.hasMatch())
    {
      const auto n = index(m3.captured(1).chopped(1));
      if (!n)
        return fail(RangeTextError::OutOfRange);
      lower = *n;
      upper = maxIndex;
    }
    else if (const auto m4 = between.match(part); m4.hasMatch())
    {
      const auto a = index(m4.captured(1));
      const auto b = index(m4.captured(2));
      if (!a || !b)
        return fail(RangeTextError::OutOfRange);
      lower = std::min(*a, *b);
      upper = std::max(*a, *b);
    }
    else
    {
      return fail(RangeTextError::Invalid);
    }
    for (unsigned long long i = lower; i <= upper; ++i)
      result.flags[i] = true;
  }
  for (const QString& part : exclusions)
  {
    if (!single.match(part).hasMatch())
      return fail(RangeTextError::Invalid);
    const auto n = index(part);
    if (!n)
      return fail(RangeTextError::OutOfRange);
    result.flags[*n] = false;
  }
  return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size)
{
  if (size < 4)
    return 0;
  const unsigned upper = (data[1] | (data[2] << 8)) % 1024;
  const unsigned lower = std::min<unsigned>(data[0], upper);
  const bool oneBased = (data[3] & 1) != 0;
  const QString text = QString::fromUtf8(reinterpret_cast<const char*>(data + 4), static_cast<qsizetype>(size - 4));

  std::vector<bool> flags{true};
  std::vector<bool> singles{true};
  const RangeTextError error = RTE::Private::parseRangeText(text, lower, upper, oneBased, flags, singles);
  const Reference expected = referenceParse(text, lower, upper, oneBased);
  check(error == expected.error);
  if (error != RangeTextError::None)
  {
    // Nothing is touched on failure.
    check(flags == std::vector<bool>{true} && singles == std::vector<bool>{true});
    return 0;
  }
  check(flags == expected.flags && singles == expected.singles);

  // The ranges are ascending, disjoint, inside the flags, and give the flags back.
  const auto ranges = RTE::Private::flagsToRanges(flags, 0, upper, singles);
  std::vector<bool> rebuilt(flags.size(), false);
  long long previousUpper = -1;
  for (const auto& range : ranges)
  {
    check(range.minimum <= range.maximum && range.maximum < flags.size());
    check(static_cast<long long>(range.minimum) > previousUpper);
    previousUpper = range.maximum;
    for (unsigned i = range.minimum; i <= range.maximum; ++i)
    {
      check(!singles[i] || range.minimum == range.maximum);
      rebuilt[i] = true;
    }
  }
  check(rebuilt == flags);
  return 0;
}
