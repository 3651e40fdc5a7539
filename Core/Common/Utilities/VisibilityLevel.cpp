#include <Core/Common/Utilities/VisibilityLevel.h>

#include <algorithm>
#include <atomic>

namespace Service
{

namespace
{

std::atomic<int> currentLevel{0};

} // namespace

void SetVisibilityLevel(int level)
{
  currentLevel.store(std::clamp(level, 0, 2), std::memory_order_relaxed);
}

int GetVisibilityLevel()
{
  return currentLevel.load(std::memory_order_relaxed);
}

bool IsVisibilityLevel(int level)
{
  const int current = GetVisibilityLevel();
  if (level <= 0)
    return true;
  if (level == 1)
    return current != 0;
  return current == 2;
}

} // namespace Service
