#include "RecordingSink.h"

#include <gtest/gtest.h>

#include <stdexcept>

RecordedCall RecordingSink::find(const QString& key) const
{
  for (const RecordedCall& call : calls())
    if (call.key == key)
      return call;
  ADD_FAILURE() << "no call for " << key.toStdString();
  return {};
}

void RecordingSink::record(RecordedCall call)
{
  const bool fail = !failOnKey.isEmpty() && call.key == failOnKey;
  {
    std::lock_guard lock(m_mutex);
    m_calls.push_back(std::move(call));
  }
  if (fail)
    throw std::runtime_error("sink refused the key");
}
