// A Frequency in a settings node: class "Frequency", version 1, leaf "PeriodPicoSeconds"
// (uint64), the period exactly as held, so the zero and the infinite frequency survive.
//
//   Storage::SerializeTo(*settings.CreateNode("Trigger"), RTE::Hertz(10));
//   // <Trigger class="Frequency" version="1"><PeriodPicoSeconds class="uint64" .../>
//   RTE::Frequency trigger;
//   Storage::DeserializeFrom(*settings.GetNode("Trigger"), trigger);
//
// Reading never throws for bad content: a node of another class gives the default (zero)
// frequency, a version other than 1 gives it too and is reported (Settings::Report). A
// missing leaf also gives the zero frequency, not the period 0: that would be the
// infinite frequency, on which ToHertz() throws.
#pragma once

#include <Core/Common/Storage/Settings.h>
#include <Core/Common/Units/Frequency.h>

namespace Storage
{

CORECOMMON_EXPORT Settings& SerializeTo(Settings& node, const RTE::Frequency& value);
CORECOMMON_EXPORT void DeserializeFrom(const Settings& node, RTE::Frequency& value);

} // namespace Storage
