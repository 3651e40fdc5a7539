// Plain notation with a number of significant digits, and the base of the other formats.
//
//   Common::NumericFormat format(3);
//   format.NumberToString(1234.5);    // "1235"
//   format.NumberToString(0.012345);  // "0.0123"
//   format.LegibilityScore(1e-7);     // < 0: too small to read plainly
//
// Rules of the plain notation (n significant digits):
// - e = ceil(log10|x|); k = e - 1, except for multiples of ten (fmod(x, 10) == 0), where
//   k = e. Exact powers of ten thus get the right digit count (100 with 3 digits: "100"),
//   and other multiples of ten lose a decimal (20 gives "20", 25 gives "25.0" when
//   decimals are extended). Existing displays rely on this; keep it.
// - decimals = max(n - k - 1, 0); x is rounded half away from zero to that many decimals.
// - Unless decimals are extended, trailing zeros and a trailing point are removed.
// 0 prints as "0"; NaN and infinities as "nan", "inf" and "-inf".
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>

namespace Common
{

class CORECOMMON_EXPORT NumericFormat
{
public:
  // significantDigits: digits shown (decimals for FixedNumericFormat).
  // lowestLegibleExponent, highestLegibleExponent: plain notation reads well for
  //   10^lowest <= |x| < 10^highest.
  // extendDecimals: keep trailing zeros ("2.50" instead of "2.5").
  // showPlusSign: positive values get a leading "+" (for differences and offsets).
  // zeroThreshold: values with |x| below it print as zero (hides noise such as 1e-17
  //   left by a subtraction); 0 shows every value.
  explicit NumericFormat(quint32 significantDigits = 3, qint32 lowestLegibleExponent = -3,
                         qint32 highestLegibleExponent = 5, bool extendDecimals = false, bool showPlusSign = false,
                         double zeroThreshold = 0.0);
  NumericFormat(const NumericFormat&) = default;
  NumericFormat& operator=(const NumericFormat&) = default;
  virtual ~NumericFormat();

  virtual QString NumberToString(double x) const;
  // 1.0 inside the legible range (and for 0), lower the farther |x| lies outside:
  // (|x| - L) / L below L = 10^lowest, 0 at H = 10^highest, (H - |x|) / H above it.
  virtual double LegibilityScore(double x) const;
  // The text will not show x exactly: rounding to the shown digits moves the value by
  // more than |x| * 2.220446049250313e-15 (ten machine epsilons). Never for 0.
  virtual bool WillBeRounded(double x) const;

  quint32 SignificantDigits() const { return m_significantDigits; }
  qint32 LowestLegibleExponent() const { return m_lowestLegibleExponent; }
  qint32 HighestLegibleExponent() const { return m_highestLegibleExponent; }
  bool ExtendDecimals() const { return m_extendDecimals; }
  bool ShowPlusSign() const { return m_showPlusSign; }
  double ZeroThreshold() const { return m_zeroThreshold; }

protected:
  // Tolerance of WillBeRounded relative to the value.
  static constexpr double RoundingTolerance = 2.220446049250313e-15;

  // Decimals of the plain notation for a non-zero finite x.
  int PlainDecimals(double x) const;
  // round(x * 10^decimals) / 10^decimals, or x when the scaling leaves the double range.
  static double RoundToDecimals(double x, int decimals);
  // Trailing zeros and point removed unless decimals are extended.
  QString StripZeros(QString text) const;
  // The plus sign when asked for and x > 0.
  QString WithSign(const QString& text, double x) const;
  // x, or 0 when |x| lies below the zero threshold.
  double Thresholded(double x) const;
  // "nan", "inf", "-inf", or an empty text for finite x.
  static QString NonFiniteText(double x);

  double Low() const { return m_low; }
  double High() const { return m_high; }

private:
  quint32 m_significantDigits;
  qint32 m_lowestLegibleExponent;
  qint32 m_highestLegibleExponent;
  bool m_extendDecimals;
  bool m_showPlusSign;
  double m_zeroThreshold;
  double m_low;
  double m_high;
};

} // namespace Common
