#include <Core/Common/Units/FixedNumericFormat.h>

#include <algorithm>
#include <cmath>

namespace Common
{

namespace
{

int decimalsOf(quint32 digits)
{
  return static_cast<int>(std::min<quint32>(digits, 340));
}

} // namespace

FixedNumericFormat::FixedNumericFormat(quint32 decimals, qint32 lowestLegibleExponent, qint32 highestLegibleExponent,
                                       bool extendDecimals, bool showPlusSign, double zeroThreshold) :
    NumericFormat(decimals, lowestLegibleExponent, highestLegibleExponent, extendDecimals, showPlusSign, zeroThreshold)
{
}

FixedNumericFormat::~FixedNumericFormat() = default;

QString FixedNumericFormat::NumberToString(double x) const
{
  x = Thresholded(x);
  if (!std::isfinite(x))
    return NonFiniteText(x);
  const int decimals = decimalsOf(SignificantDigits());
  QString text = QString::number(x, 'f', decimals);
  // A negative value that rounds to zero would read "-0.00".
  if (std::all_of(text.cbegin(), text.cend(),
                  [](QChar c) { return c == QLatin1Char('-') || c == QLatin1Char('0') || c == QLatin1Char('.'); }))
    text.remove(QLatin1Char('-'));
  return WithSign(text, x);
}

bool FixedNumericFormat::WillBeRounded(double x) const
{
  if (x == 0.0 || !std::isfinite(x))
    return false;
  return std::abs(RoundToDecimals(x, decimalsOf(SignificantDigits())) - x) > std::abs(x) * RoundingTolerance;
}

} // namespace Common
