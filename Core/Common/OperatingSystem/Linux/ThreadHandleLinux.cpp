#include <Core/Common/OperatingSystem/ThreadHandle.h>

#include <sys/types.h>
#include <unistd.h>

namespace RTE::ThreadHandle
{

ThreadId GetThreadId()
{
  // Cached per thread: gettid is a system call and thread ids never change.
  thread_local const ThreadId id = static_cast<ThreadId>(::gettid());
  return id;
}

ThreadId GetMainThreadId()
{
  // On Linux the first thread's id is the process id.
  return static_cast<ThreadId>(::getpid());
}

bool IsMainThread()
{
  return GetThreadId() == GetMainThreadId();
}

} // namespace RTE::ThreadHandle
