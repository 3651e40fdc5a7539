#include <Core/Common/Units/NumberFormatter.h>

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>
#include <Core/Common/Units/ScientificFormat.h>

#include <QCoreApplication>

#include <algorithm>

namespace Common
{

NumberFormatter::NumberFormatter() : NumberFormatter(3) {}

NumberFormatter::NumberFormatter(quint32 significantDigits, qint32 lowestLegibleExponent, qint32 highestLegibleExponent,
                                 bool extendDecimals) :
    m_formats{std::make_shared<NumericFormat>(significantDigits, lowestLegibleExponent, highestLegibleExponent,
                                              extendDecimals),
              std::make_shared<ScientificFormat>(significantDigits, lowestLegibleExponent, highestLegibleExponent,
                                                 extendDecimals)}
{
}

NumberFormatter::NumberFormatter(std::vector<std::shared_ptr<const NumericFormat>> formats) :
    m_formats(std::move(formats))
{
  if (m_formats.empty() || std::any_of(m_formats.cbegin(), m_formats.cend(), [](const auto& f) { return !f; }))
    RTE::Raise(RTE::InvalidArgumentError(
        QCoreApplication::translate("Common::NumberFormatter", "A number formatter needs at least one format.")));
}

const NumberFormatter& NumberFormatter::Default()
{
  static const NumberFormatter formatter;
  return formatter;
}

const NumericFormat& NumberFormatter::SelectFormat(double x) const
{
  const NumericFormat* best = m_formats.front().get();
  double bestScore = best->LegibilityScore(x);
  for (auto it = std::next(m_formats.cbegin()); it != m_formats.cend(); ++it)
  {
    const double score = (*it)->LegibilityScore(x);
    if (score > bestScore)
    {
      best = it->get();
      bestScore = score;
    }
  }
  return *best;
}

QString NumberFormatter::ToString(double x) const
{
  return SelectFormat(x).NumberToString(x);
}

bool NumberFormatter::WillBeRounded(double x) const
{
  return SelectFormat(x).WillBeRounded(x);
}

} // namespace Common
