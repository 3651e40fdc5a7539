// A share in percent, held as a double: 100 is the whole. Values beyond 0 to 100 are
// allowed (a growth of 150 %), undefined and infinite ones are not.
//
//   RTE::Percentage p(12.5);
//   p.ToFraction();                                  // 0.125
//   RTE::Percentage::FromString(QStringLiteral("40 %")).ToString(3);  // "40 %"
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>

#include <compare>

namespace Storage
{
class Settings;
}

namespace RTE
{

class CORECOMMON_EXPORT Percentage
{
public:
  constexpr Percentage() = default;
  // Throws RTE::InvalidArgumentError "Invalid percentage: %1" for a value that is not finite.
  explicit Percentage(double percent);
  // fraction * 100, checked as above.
  static Percentage FromFraction(double fraction);

  constexpr double value() const { return m_percent; }
  constexpr operator double() const { return m_percent; }
  constexpr double ToFraction() const { return m_percent / 100.0; }

  // "%1 %", the number in 'g' format with the given precision.
  QString ToString(int precision = 3) const;
  // "<number> %" with exactly one blank. Throws RTE::PostconditionFailed when the text
  // is not two parts, RTE::Exception when the second is not "%", RTE::InvalidArgumentError
  // when the number is not readable.
  static Percentage FromString(const QString& text);

  // The settings form, class "Percentage" version 1; the free functions and the layout are in
  // PercentageSettings.h. Reading never throws for bad content.
  Storage::Settings& SerializeTo(Storage::Settings& node) const;
  void DeserializeFrom(const Storage::Settings& node);

  friend constexpr bool operator==(const Percentage&, const Percentage&) = default;
  friend constexpr auto operator<=>(const Percentage&, const Percentage&) = default;

private:
  double m_percent = 0.0;
};

} // namespace RTE
