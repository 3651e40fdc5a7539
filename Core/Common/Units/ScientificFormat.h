// Scientific notation: a mantissa with the significant digits and a decimal exponent.
//
//   Common::ScientificFormat format(3);
//   format.NumberToString(12345.0);  // "1.23e4"
//   format.NumberToString(0.5);      // "5e-1"
//
// The mantissa is rounded half away from zero to n - 1 decimals and stripped like the
// plain notation. A mantissa that rounds up to 10 is carried into the exponent
// (9.996 with 3 digits gives "1e1").
#pragma once

#include <Core/Common/Units/NumericFormat.h>

namespace Common
{

class CORECOMMON_EXPORT ScientificFormat : public NumericFormat
{
public:
  // As NumericFormat; the legible range is where plain notation is preferred.
  explicit ScientificFormat(quint32 significantDigits = 3, qint32 lowestLegibleExponent = -3,
                            qint32 highestLegibleExponent = 5, bool extendDecimals = false, bool showPlusSign = false,
                            double zeroThreshold = 0.0);
  ~ScientificFormat() override;

  QString NumberToString(double x) const override;
  // The counterpart of the plain score: 1.0 where plain notation reads badly (outside
  // 10^lowest <= |x| < 10^highest), 0.5 inside that range and for 0, where the plain
  // notation's 1.0 wins.
  double LegibilityScore(double x) const override;
  // Rounding the mantissa to n - 1 decimals changes it by more than the tolerance.
  bool WillBeRounded(double x) const override;

private:
  struct Parts
  {
    double mantissa; // 1 <= |mantissa| < 10 before rounding
    qint64 exponent;
  };
  static Parts Split(double x);
  int MantissaDecimals() const;
};

} // namespace Common
