// Durations; base second.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/Units.h>

namespace RTE
{

class CORECOMMON_EXPORT TimeUnits : public Units
{
public:
  // "Time"
  static const QString TypeIdentifier;

  // Unit ids
  static const QString Second;
  static const QString Millisecond;
  static const QString Microsecond;
  static const QString Nanosecond;
  static const QString Picosecond;
  static const QString Minute;
  static const QString Hour;

  TimeUnits();
  TimeUnits(const TimeUnits&);
  TimeUnits& operator=(const TimeUnits&);
  ~TimeUnits() override;

  [[nodiscard]] std::unique_ptr<Units> Clone() const override;
  QString GetTypeIdentifier() const override;
};

} // namespace RTE
