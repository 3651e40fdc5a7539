// The range-string parser without exceptions: it tells what went wrong as a value, so
// the public functions (RangeString.h) raise and the fuzz target can run it on its own.
#pragma once

#include <Core/Common/Parameter/RangeT.h>

#include <QStringView>

#include <vector>

namespace RTE::Private
{

enum class RangeTextError
{
  None,
  // A number below the lower or above the upper bound (also one too long for any integer).
  OutOfRange,
  // A part that is no range statement.
  Invalid,
};

// Parses text into flags and singles of maxIndex + 1 entries each (see ParseRangeString).
// Requires minIndex <= maxIndex. On an error, flags and singles are left unchanged.
// Every flag is written at most once per merged run of inclusions, so thousands of
// overlapping parts cost no more than one pass over the flags.
RangeTextError parseRangeText(QStringView text, unsigned int minIndex, unsigned int maxIndex, bool oneBased,
                              std::vector<bool>& flags, std::vector<bool>& singles);

// Runs of set flags in from .. to (see ConvertBoolVectorToRangeVector); indices beyond
// the end of flags count as cleared, those beyond singles as no single.
std::vector<RangeT<unsigned int>> flagsToRanges(const std::vector<bool>& flags, unsigned int from, unsigned int to,
                                                const std::vector<bool>& singles);

} // namespace RTE::Private
