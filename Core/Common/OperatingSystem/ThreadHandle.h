// Identity of threads and of the process.
//
//   if (!RTE::ThreadHandle::IsMainThread())
//     qCDebug(lc) << "worker" << RTE::ThreadHandle::GetThreadId();
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <cstdint>

namespace RTE::ThreadHandle
{

// The system's numeric thread id (the kernel thread id on Linux).
using ThreadId = std::uint64_t;

// Id of the calling thread.
CORECOMMON_EXPORT ThreadId GetThreadId();

// Id of the process's main (first) thread.
CORECOMMON_EXPORT ThreadId GetMainThreadId();

// Whether the caller runs on the process's main thread.
CORECOMMON_EXPORT bool IsMainThread();

} // namespace RTE::ThreadHandle
