// A linear conversion y = factor * x + offset with the unit and a description of y.
//
//   Zn::LinearScale mmToM(0.001, 0.0, "m", "millimetres to metres");
//   double m = mmToM.getScaled(1500.0);  // 1.5
#pragma once

#include <Zn/Utils/ZnUtilsExport.h>

#include <QString>

namespace Zn
{

class ZN_UTILS_EXPORT LinearScale
{
public:
  // The identity: factor 1, offset 0, empty unit and description.
  LinearScale() = default;
  LinearScale(double factor, double offset, const QString& unit, const QString& description);
  LinearScale(const LinearScale&) = default;
  LinearScale& operator=(const LinearScale&) = default;
  ~LinearScale() = default;

  double getFactor() const { return m_factor; }
  double getOffset() const { return m_offset; }
  const QString& getUnit() const { return m_unit; }
  const QString& getDescription() const { return m_description; }

  // factor * x + offset
  double getScaled(double x) const { return m_factor * x + m_offset; }

  // Takes over every field of other.
  void set(const LinearScale& other);

  friend bool operator==(const LinearScale&, const LinearScale&) = default;

private:
  double m_factor = 1.0;
  double m_offset = 0.0;
  QString m_unit;
  QString m_description;
};

} // namespace Zn
