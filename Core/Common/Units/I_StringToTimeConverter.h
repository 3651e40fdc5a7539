// Reads a duration from text. RTE::DefaultStringToTimeConverter reads "12.5 ms" exactly.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Units/TimeSpan.h>

#include <QStringView>

namespace RTE
{

class CORECOMMON_EXPORT I_StringToTimeConverter
{
public:
  virtual ~I_StringToTimeConverter();
  // Throws an RTE::Exception (see the implementation) for text that is no duration.
  virtual TimeSpan convert(QStringView text) const = 0;
};

} // namespace RTE
