// File-name validation and repair, for names typed by users or built from labels.
//
//   if (!RTE::FileNameOps::IsFileNameValid(name))
//     name = RTE::FileNameOps::MakeValidFileName(name, QLatin1Char('_'), true);
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QChar>
#include <QString>

namespace RTE
{

class CORECOMMON_EXPORT FileNameOps
{
public:
  // False for an empty (trimmed) name, a leading ".", and any of : | > < ? * \ / TAB CR LF.
  // The double quote is allowed.
  static bool IsFileNameValid(const QString& name);
  // Trims, then replaces TAB, LF, CR, ", *, <, >, ?, | always; / and \ only in a pure
  // file name; ":" in a pure file name always, in a path from the third character on
  // (so "C:" survives).
  static QString MakeValidFileName(const QString& name, QChar replacement, bool isPureFileName);
};

} // namespace RTE
