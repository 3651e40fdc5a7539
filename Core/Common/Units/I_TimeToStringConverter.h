// Turns a duration into text; implementations choose the unit and the number form.
// RTE::DefaultTimeToStringConverter is the exact one.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/TimeSpan.h>

#include <QString>

namespace RTE
{

class CORECOMMON_EXPORT I_TimeToStringConverter
{
public:
  virtual ~I_TimeToStringConverter();
  virtual QString convert(TimeSpan span) const = 0;
};

} // namespace RTE
