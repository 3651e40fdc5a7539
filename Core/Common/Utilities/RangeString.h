// Index selections typed by users, such as "1-5, 8, !3": parsed into one flag per
// index, and runs of flags turned back into ranges.
//
//   std::vector<bool> singles;
//   const std::vector<bool> flags = RTE::ParseRangeString(QStringLiteral("1-3;5"), 0, 9, singles, false);
//   // flags 1, 2, 3 and 5 set; singles: 5
//   RTE::ConvertBoolVectorToRangeVector(flags, 0, 9, singles);   // [1, 3], [5, 5]
//
// The grammar, after white space is removed and ";" read as ",": parts separated by
// ",", each "n", "-n" (0 .. n), "n-" (n .. maxIndex) or "a-b" (either order), or "!n"
// to clear n after all other parts.
#pragma once

#include <Core/Common/CoreCommonExport.h>
#include <Core/Common/Parameter/RangeT.h>

#include <QString>

#include <vector>

namespace RTE
{

// One flag per index 0 .. maxIndex: set when the text selects the index. singles is
// reset to the same size and marks the indices given as a lone number. With oneBased
// every number is reduced by 1 first.
// Throws VerificationFailed when minIndex > maxIndex; OutOfRangeError when a number lies
// outside minIndex .. maxIndex (the start 0 of "-n" is not checked); Exception when a part
// is no range statement. Nothing is changed when it throws.
CORECOMMON_EXPORT std::vector<bool> ParseRangeString(const QString& text, unsigned int minIndex, unsigned int maxIndex,
                                                     std::vector<bool>& singles, bool oneBased);
CORECOMMON_EXPORT std::vector<bool> ParseRangeString(const QString& text, unsigned int minIndex, unsigned int maxIndex,
                                                     bool oneBased);

// The runs of set flags between from and to (inclusive) as ranges; a flag also set in
// singles closes the run before it and stands alone. Indices beyond the end of flags
// count as cleared.
CORECOMMON_EXPORT std::vector<RangeT<unsigned int>> ConvertBoolVectorToRangeVector(const std::vector<bool>& flags,
                                                                                   unsigned int from, unsigned int to,
                                                                                   const std::vector<bool>& singles);
CORECOMMON_EXPORT std::vector<RangeT<unsigned int>> ConvertBoolVectorToRangeVector(const std::vector<bool>& flags,
                                                                                   unsigned int from, unsigned int to);

} // namespace RTE
