// Lengths; base metre.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT LengthUnits : public Units
{
public:
  // "Length"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString Meter;
  static const QString Millimeter;
  static const QString Micrometer;
  static const QString Centimeter;
  static const QString Inch;
  static const QString Foot;
  // Image lengths, declared for other parts of the system; not units of this set.
  static const QString Pixel;
  static const QString Voxel;
  static const QString Point;

  LengthUnits();
  LengthUnits(const LengthUnits&);
  LengthUnits& operator=(const LengthUnits&);
  ~LengthUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
