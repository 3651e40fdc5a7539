#include <Core/Common/Units/ScientificFormat.h>

#include <algorithm>
#include <cmath>

namespace Common
{

namespace
{

// x * 10^k without overflowing the power when x is near the ends of the double range.
double scaleByPowerOfTen(double x, qint64 k)
{
  if (k > 300 || k < -300)
  {
    const qint64 half = k / 2;
    return x * std::pow(10.0, static_cast<double>(half)) * std::pow(10.0, static_cast<double>(k - half));
  }
  return x * std::pow(10.0, static_cast<double>(k));
}

} // namespace

ScientificFormat::ScientificFormat(quint32 significantDigits, qint32 lowestLegibleExponent,
                                   qint32 highestLegibleExponent, bool extendDecimals, bool showPlusSign,
                                   double zeroThreshold) :
    NumericFormat(significantDigits, lowestLegibleExponent, highestLegibleExponent, extendDecimals, showPlusSign,
                  zeroThreshold)
{
}

ScientificFormat::~ScientificFormat() = default;

ScientificFormat::Parts ScientificFormat::Split(double x)
{
  const auto e = static_cast<qint64>(std::ceil(std::log10(std::abs(x))));
  const double scaled = scaleByPowerOfTen(x, 1 - e);
  if (std::abs(scaled) >= 10.0)
    return {scaleByPowerOfTen(x, -e), e};
  return {scaled, e - 1};
}

int ScientificFormat::MantissaDecimals() const
{
  return static_cast<int>(std::clamp<qint64>(static_cast<qint64>(SignificantDigits()) - 1, 0, 340));
}

QString ScientificFormat::NumberToString(double x) const
{
  x = Thresholded(x);
  if (!std::isfinite(x))
    return NonFiniteText(x);
  if (x == 0.0)
    return QStringLiteral("0");
  auto [mantissa, exponent] = Split(x);
  const int decimals = MantissaDecimals();
  mantissa = RoundToDecimals(mantissa, decimals);
  if (std::abs(mantissa) >= 10.0)
  {
    mantissa = RoundToDecimals(mantissa / 10.0, decimals);
    ++exponent;
  }
  return WithSign(StripZeros(QString::number(mantissa, 'f', decimals)) + QStringLiteral("e%1").arg(exponent), x);
}

double ScientificFormat::LegibilityScore(double x) const
{
  const double a = std::abs(x);
  if (a == 0.0 || (a >= Low() && a < High()))
    return 0.5;
  return 1.0;
}

bool ScientificFormat::WillBeRounded(double x) const
{
  if (x == 0.0 || !std::isfinite(x))
    return false;
  const double mantissa = Split(x).mantissa;
  return std::abs(RoundToDecimals(mantissa, MantissaDecimals()) - mantissa) > std::abs(mantissa) * RoundingTolerance;
}

} // namespace Common
