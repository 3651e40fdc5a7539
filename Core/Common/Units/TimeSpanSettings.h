// A TimeSpan in a settings node: class "TimeSpan", version 1, leaf "PicoSeconds" (int64).
//
//   Storage::SerializeTo(*settings.CreateNode("Exposure"), RTE::MicroSeconds(250));
//   // <Exposure class="TimeSpan" version="1"><PicoSeconds class="int64" value="250000000"/>
//   RTE::TimeSpan exposure;
//   Storage::DeserializeFrom(*settings.GetNode("Exposure"), exposure);
//
// Reading never throws for bad content: a node of another class gives the zero span, a
// version other than 1 gives it too and is reported (Settings::Report); a missing leaf
// reads as 0.
#pragma once

#include <Core/Common/Storage/Settings.h>
#include <Core/Common/Units/TimeSpan.h>

namespace Storage
{

CORECOMMON_EXPORT Settings& SerializeTo(Settings& node, const RTE::TimeSpan& value);
CORECOMMON_EXPORT void DeserializeFrom(const Settings& node, RTE::TimeSpan& value);

} // namespace Storage
