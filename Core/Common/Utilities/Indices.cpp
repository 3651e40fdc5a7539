#include <Core/Common/Utilities/Indices.h>

#include "RangeStringParser_p.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Storage/Settings.h>
#include <Core/Common/Storage/ValueSerialization.h>
#include <Core/Common/Utilities/RangeString.h>

#include <QObject>
#include <QStringList>

namespace RTE
{

Indices::Indices() = default;

Indices::Indices(const QString& rangeText, unsigned int maxIndex, unsigned int step) :
    m_step(step),
    m_maxIndex(maxIndex)
{
  if (step == 0)
    Raise(InvalidArgumentError(QObject::tr("Indices: the step size must not be 0")));
  std::vector<bool> singles;
  const std::vector<bool> flags = ParseRangeString(rangeText, 0, maxIndex, singles, true);
  m_ranges = ConvertBoolVectorToRangeVector(flags, 0, maxIndex, singles);
}

Indices::Indices(const IndexRange& range) : m_maxIndex(range.GetEnd())
{
  if (range.GetCount() == 0)
    return;
  m_step = range.GetIncrement();
  m_ranges.emplace_back(range.GetStart(), range.GetEnd());
}

unsigned long long Indices::size() const
{
  unsigned long long count = 0;
  for (const Range& range : m_ranges)
    count += (range.maximum - range.minimum) / m_step + 1ULL;
  return count;
}

bool Indices::isValid() const
{
  return !m_ranges.empty() && size() != 0;
}

bool Indices::isIndexRange() const
{
  return m_ranges.size() == 1;
}

IndexRange Indices::indexRange() const
{
  if (m_ranges.size() != 1)
    return IndexRange(0, 0, 1);
  return IndexRange(m_ranges.front().minimum, m_ranges.front().maximum, m_step);
}

QString Indices::toString() const
{
  QStringList parts;
  parts.reserve(static_cast<qsizetype>(m_ranges.size()));
  for (const Range& range : m_ranges)
  {
    const unsigned long long lower = range.minimum + 1ULL;
    const unsigned long long upper = range.maximum + 1ULL;
    parts.append(lower == upper ? QString::number(lower)
                                : QString::number(lower) + QLatin1Char('-') + QString::number(upper));
  }
  return parts.join(QLatin1Char(','));
}

Storage::Settings& Indices::SerializeTo(Storage::Settings& settings) const
{
  settings.SetClass(QStringLiteral("Indices"));
  settings.SetVersion(1);
  settings.Set(QStringLiteral("Ranges"), toString());
  settings.Set(QStringLiteral("MaxIndex"), m_maxIndex);
  settings.Set(QStringLiteral("StepSize"), m_step);
  return settings;
}

void Indices::DeserializeFrom(const Storage::Settings& settings)
{
  if (!Storage::IsReadableVersion1(settings, QStringLiteral("Indices")))
    return;
  const unsigned int maxIndex = settings.Get<unsigned int>(QStringLiteral("MaxIndex"), 0U);
  const unsigned int step = settings.Get<unsigned int>(QStringLiteral("StepSize"), 1U);
  const QString text = settings.Get<QString>(QStringLiteral("Ranges"), QString());
  std::vector<bool> flags;
  std::vector<bool> singles;
  // Parsed without exceptions: a settings reader reports bad content and goes on.
  if (step == 0 || Private::parseRangeText(text, 0, maxIndex, true, flags, singles) != Private::RangeTextError::None)
  {
    settings.Report(QStringLiteral("Indices: unusable ranges \"%1\" (maximum index %2, step %3)")
                        .arg(text)
                        .arg(maxIndex)
                        .arg(step));
    return;
  }
  m_ranges = Private::flagsToRanges(flags, 0, maxIndex, singles);
  m_maxIndex = maxIndex;
  m_step = step;
}

} // namespace RTE
