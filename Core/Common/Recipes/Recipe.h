// The metadata of one recipe, as kept in "toc.xml" and in the recipe's "meta.xml".
#pragma once

#include <QDateTime>
#include <QString>
#include <QUuid>

namespace RTE
{

struct Recipe
{
  QUuid id;               // "Id"; a null id is invalid
  QString label;          // "Label"
  QString comment;        // "Comment"
  bool archived = false;  // "Archived"; archived recipes cannot be changed
  QDateTime archivedTime; // "ArchivedTime", UTC; null while active
  QUuid successor;        // "Successor"; null if none
  QString folderName;     // "FolderName"; empty: the folder is named after the id

  bool operator==(const Recipe&) const = default;
};

} // namespace RTE
