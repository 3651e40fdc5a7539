// What two trees do not share, handed to a tree's merge handler after a value copy:
// the paths only the target has and the paths only the source has ("a.b" form).
//
//   tree.setMergeHandler([](RTE::Parameter::StructuralDiffs& diffs) {
//     for (const QString& path : diffs.sourceOnlyPaths())
//       qInfo() << "not taken over:" << path;
//   });
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QList>
#include <QString>

namespace RTE::Parameter
{

class C_Tree;

class CORECOMMON_EXPORT StructuralDiffs
{
public:
  // Compares the root categories both ways (C_Category::missingNodesIn). Neither tree's
  // lock is taken here; copyValuesFrom builds it with the target's lock held.
  StructuralDiffs(const C_Tree& from, C_Tree& to);

  const C_Tree& source() const { return *m_source; }
  // Paths the target has and the source lacks (or holds as another kind).
  const QList<QString>& targetOnlyPaths() const { return m_targetOnly; }
  C_Tree& target() const { return *m_target; }
  // Paths the source has and the target lacks (or holds as another kind).
  const QList<QString>& sourceOnlyPaths() const { return m_sourceOnly; }
  // True when both lists are empty.
  bool empty() const;

private:
  // Pointers rather than references keep the object copyable and assignable.
  const C_Tree* m_source;
  QList<QString> m_targetOnly;
  C_Tree* m_target;
  QList<QString> m_sourceOnly;
};

} // namespace RTE::Parameter
