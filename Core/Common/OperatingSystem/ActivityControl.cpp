#include <Core/Common/OperatingSystem/ActivityControl.h>

namespace RTE
{

ActivityControl::~ActivityControl() = default;

void ActivityControl::cancel()
{
  // The flag first: a listener woken by the signal must already see it set.
  m_canceled.store(true, std::memory_order_release);
  emit canceled();
}

bool ActivityControl::isCanceled() const
{
  return m_canceled.load(std::memory_order_acquire);
}

void ActivityControl::reset()
{
  m_canceled.store(false, std::memory_order_release);
}

} // namespace RTE
