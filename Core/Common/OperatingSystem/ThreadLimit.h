// The process-wide limit on worker threads that callers ask before starting parallel
// work, and the processor count.
//
//   const int workers = RTE::getMaxThreadCount(RTE::getProcessorCount(), false);
//   RTE::JobQueue queue(RTE::JobQueue::Unlimited, workers, control);
//
// This library configuration runs background work on a single worker: both
// getMaxThreadCount functions answer 1, whatever limit was set.
#pragma once

#include <Core/Common/CoreCommonExport.h>

namespace RTE
{

// Stores max(count, 1) as the limit. Thread-safe.
CORECOMMON_EXPORT void setMaxThreadCount(int count);

// min(max(requested, 1), limit, 1): always 1. The flag has no effect.
CORECOMMON_EXPORT int getMaxThreadCount(int requested, bool flag);

// min(limit, 1): always 1. The flag has no effect.
CORECOMMON_EXPORT int getMaxThreadCount(bool flag);

// The number of processors of the machine.
CORECOMMON_EXPORT int getProcessorCount();

} // namespace RTE
