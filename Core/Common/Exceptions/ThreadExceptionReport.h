// The last exception text reported on each thread, for crash reports.
//
//   catch (const RTE::Exception& e) { RTE::ThreadExceptionReport::Add(e.message()); }
//   ...
//   crashLog << RTE::ThreadExceptionReport::Dump();
//
// All three functions share one process-wide mutex.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QString>

namespace RTE::ThreadExceptionReport
{

// Stores text for the calling thread, replacing its earlier text.
CORECOMMON_EXPORT void Add(const QString& text);

// Drops the calling thread's entry.
CORECOMMON_EXPORT void UnregisterThread();

// Drops every entry.
CORECOMMON_EXPORT void Clean();

// "Main thread: <text>\n" (an empty entry is made for the main thread if it has none),
// then "Thread id=<id>: <text>\n" for every other thread in ascending id order.
CORECOMMON_EXPORT QString Dump();

} // namespace RTE::ThreadExceptionReport
