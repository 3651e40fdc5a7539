// A Percentage in a settings node: class "Percentage", version 1, leaf "Percent" (double,
// written with the 15 significant digits of every double leaf, so 100 / 3 comes back
// rounded to them).
//
//   Storage::SerializeTo(*settings.CreateNode("Overlap"), RTE::Percentage(12.5));
//   // <Overlap class="Percentage" version="1"><Percent class="double" value="12.5"/>
//   RTE::Percentage overlap;
//   Storage::DeserializeFrom(*settings.GetNode("Overlap"), overlap);
//
// Reading never throws for bad content: a node of another class gives 0 %, a version
// other than 1 gives it too and is reported (Settings::Report); a missing leaf reads as
// 0; a value that is not finite ("nan", "inf") gives 0 % and is reported.
#pragma once

#include <Core/Common/Storage/Settings.h>
#include <Core/Common/Units/Percentage.h>

namespace Storage
{

CORECOMMON_EXPORT Settings& SerializeTo(Settings& node, const RTE::Percentage& value);
CORECOMMON_EXPORT void DeserializeFrom(const Settings& node, RTE::Percentage& value);

} // namespace Storage
