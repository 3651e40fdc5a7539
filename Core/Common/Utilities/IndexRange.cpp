#include <Core/Common/Utilities/IndexRange.h>

#include <Core/Common/Storage/Settings.h>

#include <algorithm>
#include <limits>

namespace RTE
{

IndexRange::IndexRange(unsigned int start, unsigned int end, unsigned int increment) :
    m_start(start),
    m_end(end),
    m_increment(increment)
{
}

unsigned int IndexRange::GetCount() const
{
  if (m_start > m_end || m_increment == 0)
    return 0;
  const unsigned long long count = (m_end - m_start) / m_increment + 1ULL;
  return static_cast<unsigned int>(std::min<unsigned long long>(count, std::numeric_limits<unsigned int>::max()));
}

unsigned int IndexRange::Map(unsigned int i) const
{
  return m_start + i * m_increment;
}

Storage::Settings& IndexRange::SerializeTo(Storage::Settings& settings) const
{
  settings.SetClass(QStringLiteral("IndexRange"));
  settings.Set(QStringLiteral("Start"), m_start);
  settings.Set(QStringLiteral("End"), m_end);
  settings.Set(QStringLiteral("Increment"), m_increment);
  return settings;
}

void IndexRange::DeserializeFrom(const Storage::Settings& settings)
{
  if (!settings.IsClass(QStringLiteral("IndexRange")))
    return;
  m_start = settings.Get<unsigned int>(QStringLiteral("Start"), 0U);
  m_end = settings.Get<unsigned int>(QStringLiteral("End"), 0U);
  m_increment = settings.Get<unsigned int>(QStringLiteral("Increment"), 0U);
}

} // namespace RTE
