// Prints numbers in whichever notation reads best for each value.
//
//   Common::NumberFormatter::Default().ToString(1234.5);   // "1235"
//   Common::NumberFormatter::Default().ToString(1.5e-7);   // "1.5e-7"
//   Common::NumberFormatter fourDigits(4);
//   fourDigits.ToString(3.14159);                          // "3.142"
//
// Rule: every candidate format scores the value (NumericFormat::LegibilityScore); the
// highest score wins and ties go to the earlier candidate. The usual candidates are the
// plain notation and then the scientific one with the same digits and legible range, so
// a value prints plainly when 10^lowest <= |x| < 10^highest (and for 0), and in scientific
// notation otherwise.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/NumericFormat.h>

#include <QString>

#include <memory>
#include <vector>

namespace Common
{

class CORECOMMON_EXPORT NumberFormatter
{
public:
  // Plain, then scientific: 3 significant digits, plainly legible from 1e-3 to below 1e5.
  NumberFormatter();
  // Plain, then scientific, with these settings.
  explicit NumberFormatter(quint32 significantDigits, qint32 lowestLegibleExponent = -3,
                           qint32 highestLegibleExponent = 5, bool extendDecimals = false);
  // Any candidates, tried in this order. Throws RTE::InvalidArgumentError when the list is
  // empty or holds a null format.
  explicit NumberFormatter(std::vector<std::shared_ptr<const NumericFormat>> formats);

  // The formatter with the default settings, shared by the whole process.
  static const NumberFormatter& Default();

  // The candidate that reads x best.
  const NumericFormat& SelectFormat(double x) const;
  QString ToString(double x) const;
  // The text of ToString(x) does not show x exactly.
  bool WillBeRounded(double x) const;

  const std::vector<std::shared_ptr<const NumericFormat>>& Formats() const { return m_formats; }

private:
  std::vector<std::shared_ptr<const NumericFormat>> m_formats;
};

} // namespace Common
