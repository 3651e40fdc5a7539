// Fixed notation: always the same number of decimals, trailing zeros kept.
//
//   Common::FixedNumericFormat format(2);
//   format.NumberToString(3.14159);  // "3.14"
//   format.NumberToString(2.0);      // "2.00"
#pragma once

#include <Core/Common/Units/NumericFormat.h>

namespace Common
{

class CORECOMMON_EXPORT FixedNumericFormat : public NumericFormat
{
public:
  // The digit count is the number of decimals; the other arguments as for NumericFormat
  // (extendDecimals has no effect: nothing is stripped).
  explicit FixedNumericFormat(quint32 decimals = 3, qint32 lowestLegibleExponent = -3,
                              qint32 highestLegibleExponent = 5, bool extendDecimals = true, bool showPlusSign = false,
                              double zeroThreshold = 0.0);
  ~FixedNumericFormat() override;

  QString NumberToString(double x) const override;
  // Rounding to the fixed number of decimals changes x.
  bool WillBeRounded(double x) const override;
};

} // namespace Common
