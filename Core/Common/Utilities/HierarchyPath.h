// A path through a hierarchy: an ordered list of name tokens and the separator used to
// print and parse it.
//
//   RTE::HierarchyPath path(QStringLiteral("camera/lens/focus"), QStringLiteral("/"));
//   path.StartsWith(RTE::HierarchyPath(QStringLiteral("camera"), QStringLiteral("/"))); // true
//   path.TrimParents(RTE::HierarchyPath(QStringLiteral("camera"), QStringLiteral("/"))).AsString(); // "lens/focus"
//
// Tokens are compared case-sensitively. Persisted as class "HierarchyPath".
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QList>
#include <QString>

namespace Storage
{
class Settings;
}

namespace RTE
{

class CORECOMMON_EXPORT HierarchyPath
{
public:
  using iterator = QList<QString>::iterator;
  using const_iterator = QList<QString>::const_iterator;

  // An empty path with separator "/".
  HierarchyPath();
  // path split at every occurrence of separator, empty parts kept: "/a/b" gives "", "a",
  // "b"; an empty text gives no tokens, an empty separator one token.
  HierarchyPath(const QString& path, const QString& separator);

  // Compares separator and tokens; the validity flag is ignored.
  bool operator==(const HierarchyPath& other) const;
  bool operator!=(const HierarchyPath& other) const { return !(*this == other); }

  // Appends a token.
  HierarchyPath& operator<<(const QString& token);
  void AddChild(const QString& token);

  // The token at index; empty text when index is negative or not below the depth.
  QString operator[](int index) const;
  QString GetChild(int index) const;
  // Empty text for an empty path.
  QString First() const;
  QString Last() const;

  int GetDepth() const;
  bool IsEmpty() const;

  // All tokens but the last, with separator "/" whatever this path's separator is. The
  // parent of an empty path is empty and not valid (IsValid false).
  HierarchyPath GetParent() const;
  // True when the depth is at least 2.
  bool hasParent() const;
  // Separator "/", the tokens start .. start + count - 1 clipped at the depth; empty when
  // start is not below the depth (or negative).
  HierarchyPath GetSubPath(int start, int count) const;
  // Removes the last token, if any.
  void RemoveLastChild();
  void SetSeparator(const QString& separator);
  QString GetSeparator() const { return m_separator; }
  // False only for the parent of an empty path.
  bool IsValid() const { return m_valid != 0; }

  // other is empty, equal, or its tokens are this path's first (last) tokens.
  bool StartsWith(const HierarchyPath& other) const;
  bool EndsWith(const HierarchyPath& other) const;
  // other's tokens occur consecutively, located by the first occurrence of each token:
  // a/b/a/c does not contain a/c, because the first "a" is not followed by "c".
  bool Contains(const HierarchyPath& other) const;

  // A copy without the prefix's tokens at the front when StartsWith(prefix) and prefix is
  // not empty; else an unchanged copy.
  HierarchyPath TrimParents(const HierarchyPath& prefix) const;
  // A copy without the suffix's tokens at the back when EndsWith(suffix) and suffix is
  // not empty; else an unchanged copy.
  HierarchyPath TrimChilds(const HierarchyPath& suffix) const;

  // The tokens joined with the separator.
  QString AsString() const;

  iterator begin() { return m_tokens.begin(); }
  iterator end() { return m_tokens.end(); }
  const_iterator begin() const { return m_tokens.begin(); }
  const_iterator end() const { return m_tokens.end(); }

  // Class "HierarchyPath": leaf "Separator" and node "Tokens" (a text list, class "list",
  // version 1, one item "item" per token).
  Storage::Settings& SerializeTo(Storage::Settings& settings) const;
  // Reads only a node of class "HierarchyPath" (a missing "Separator" reads as "/"); a
  // node of another class leaves the path unchanged.
  void DeserializeFrom(const Storage::Settings& settings);

private:
  int m_valid = 1;
  QString m_separator;
  QList<QString> m_tokens;
};

} // namespace RTE
