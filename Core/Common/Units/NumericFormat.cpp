#include <Core/Common/Units/NumericFormat.h>

#include <algorithm>
#include <cmath>
#include <limits>

namespace Common
{

namespace
{

// No double has a meaningful digit beyond this many decimals; also keeps a huge digit
// count from asking for an absurd text.
constexpr qint64 MaxDecimals = 340;

} // namespace

NumericFormat::NumericFormat(quint32 significantDigits, qint32 lowestLegibleExponent, qint32 highestLegibleExponent,
                             bool extendDecimals, bool showPlusSign, double zeroThreshold) :
    m_significantDigits(significantDigits),
    m_lowestLegibleExponent(lowestLegibleExponent),
    m_highestLegibleExponent(highestLegibleExponent),
    m_extendDecimals(extendDecimals),
    m_showPlusSign(showPlusSign),
    m_zeroThreshold(zeroThreshold),
    m_low(std::pow(10.0, lowestLegibleExponent)),
    m_high(std::pow(10.0, highestLegibleExponent))
{
}

NumericFormat::~NumericFormat() = default;

int NumericFormat::PlainDecimals(double x) const
{
  const auto e = static_cast<qint64>(std::ceil(std::log10(std::abs(x))));
  const qint64 k = std::fmod(x, 10.0) == 0.0 ? e : e - 1;
  return static_cast<int>(std::clamp<qint64>(static_cast<qint64>(m_significantDigits) - k - 1, 0, MaxDecimals));
}

double NumericFormat::RoundToDecimals(double x, int decimals)
{
  const double scale = std::pow(10.0, decimals);
  const double scaled = x * scale;
  if (!std::isfinite(scale) || !std::isfinite(scaled))
    return x; // beyond the double range the value has no digits left to round
  return std::round(scaled) / scale;
}

QString NumericFormat::StripZeros(QString text) const
{
  if (m_extendDecimals || !text.contains(QLatin1Char('.')))
    return text;
  while (text.endsWith(QLatin1Char('0')))
    text.chop(1);
  if (text.endsWith(QLatin1Char('.')))
    text.chop(1);
  return text;
}

QString NumericFormat::WithSign(const QString& text, double x) const
{
  return m_showPlusSign && x > 0.0 ? QLatin1Char('+') + text : text;
}

double NumericFormat::Thresholded(double x) const
{
  // Also turns -0 into 0, so no "-0" is ever printed.
  return std::abs(x) < m_zeroThreshold || x == 0.0 ? 0.0 : x;
}

QString NumericFormat::NonFiniteText(double x)
{
  if (std::isnan(x))
    return QStringLiteral("nan");
  if (std::isinf(x))
    return x > 0 ? QStringLiteral("inf") : QStringLiteral("-inf");
  return QString();
}

QString NumericFormat::NumberToString(double x) const
{
  x = Thresholded(x);
  if (!std::isfinite(x))
    return NonFiniteText(x);
  if (x == 0.0)
    return QStringLiteral("0");
  const int decimals = PlainDecimals(x);
  return WithSign(StripZeros(QString::number(RoundToDecimals(x, decimals), 'f', decimals)), x);
}

double NumericFormat::LegibilityScore(double x) const
{
  const double a = std::abs(x);
  if (a == 0.0 || (a >= m_low && a < m_high))
    return 1.0;
  if (a < m_low)
    return (a - m_low) / m_low;
  if (a == m_high)
    return 0.0;
  return std::isfinite(a) ? (m_high - a) / m_high : -std::numeric_limits<double>::infinity();
}

bool NumericFormat::WillBeRounded(double x) const
{
  if (x == 0.0 || !std::isfinite(x))
    return false;
  return std::abs(RoundToDecimals(x, PlainDecimals(x)) - x) > std::abs(x) * RoundingTolerance;
}

} // namespace Common
