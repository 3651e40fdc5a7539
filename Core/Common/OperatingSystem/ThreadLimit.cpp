#include <Core/Common/OperatingSystem/ThreadLimit.h>

#include <Core/Common/OperatingSystem/C_SystemInfo.h>

#include <algorithm>
#include <atomic>

namespace RTE
{

namespace
{

std::atomic<int> maxThreadCount{1};

// The single-worker cap is deliberate for this configuration; the stored limit is
// kept so that raising the cap later needs no change to callers.
constexpr int workerCap = 1;

} // namespace

void setMaxThreadCount(int count)
{
  maxThreadCount.store(std::max(count, 1));
}

int getMaxThreadCount(int requested, bool /*flag*/)
{
  return std::min({std::max(requested, 1), maxThreadCount.load(), workerCap});
}

int getMaxThreadCount(bool /*flag*/)
{
  return std::min(maxThreadCount.load(), workerCap);
}

int getProcessorCount()
{
  return static_cast<int>(C_SystemInfo::GetInstance().GetProcessorNumber());
}

} // namespace RTE
