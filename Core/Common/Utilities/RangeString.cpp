#include <Core/Common/Utilities/RangeString.h>

#include "RangeStringParser_p.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>
#include <Core/Common/Exceptions/Raise.h>

#include <QObject>

namespace RTE
{

std::vector<bool> ParseRangeString(const QString& text, unsigned int minIndex, unsigned int maxIndex,
                                   std::vector<bool>& singles, bool oneBased)
{
  if (minIndex > maxIndex)
    Raise(VerificationFailed(QObject::tr("ParseRangeString: Min index must be smaller than max index.")));
  std::vector<bool> flags;
  switch (Private::parseRangeText(text, minIndex, maxIndex, oneBased, flags, singles))
  {
  case Private::RangeTextError::None:
    break;
  case Private::RangeTextError::OutOfRange:
    Raise(OutOfRangeError(QObject::tr("ParseRangeString: Range string contains invalid range statements")));
  case Private::RangeTextError::Invalid:
    Raise(Exception(QObject::tr("ParseRangeString: Range string contains invalid range statements")));
  }
  return flags;
}

std::vector<bool> ParseRangeString(const QString& text, unsigned int minIndex, unsigned int maxIndex, bool oneBased)
{
  std::vector<bool> singles;
  return ParseRangeString(text, minIndex, maxIndex, singles, oneBased);
}

std::vector<RangeT<unsigned int>> ConvertBoolVectorToRangeVector(const std::vector<bool>& flags, unsigned int from,
                                                                 unsigned int to, const std::vector<bool>& singles)
{
  return Private::flagsToRanges(flags, from, to, singles);
}

std::vector<RangeT<unsigned int>> ConvertBoolVectorToRangeVector(const std::vector<bool>& flags, unsigned int from,
                                                                 unsigned int to)
{
  return Private::flagsToRanges(flags, from, to, {});
}

} // namespace RTE
