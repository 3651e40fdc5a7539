#include <Core/Common/Utilities/HierarchyPath.h>

#include <Core/Common/Storage/Settings.h>
#include <Core/Common/Storage/ValueSerialization.h>

#include <algorithm>

namespace RTE
{

namespace
{

const QString defaultSeparator = QStringLiteral("/");

} // namespace

HierarchyPath::HierarchyPath() : m_separator(defaultSeparator) {}

HierarchyPath::HierarchyPath(const QString& path, const QString& separator) : m_separator(separator)
{
  if (path.isEmpty())
    return;
  // An empty separator cannot split: the whole text is one token.
  if (separator.isEmpty())
    m_tokens.append(path);
  else
    m_tokens = path.split(separator, Qt::KeepEmptyParts, Qt::CaseSensitive);
}

bool HierarchyPath::operator==(const HierarchyPath& other) const
{
  return m_separator == other.m_separator && m_tokens == other.m_tokens;
}

HierarchyPath& HierarchyPath::operator<<(const QString& token)
{
  m_tokens.append(token);
  return *this;
}

void HierarchyPath::AddChild(const QString& token)
{
  m_tokens.append(token);
}

QString HierarchyPath::operator[](int index) const
{
  return GetChild(index);
}

QString HierarchyPath::GetChild(int index) const
{
  if (index < 0 || index >= m_tokens.size())
    return QString();
  return m_tokens[index];
}

QString HierarchyPath::First() const
{
  return m_tokens.isEmpty() ? QString() : m_tokens.first();
}

QString HierarchyPath::Last() const
{
  return m_tokens.isEmpty() ? QString() : m_tokens.last();
}

int HierarchyPath::GetDepth() const
{
  return static_cast<int>(m_tokens.size());
}

bool HierarchyPath::IsEmpty() const
{
  return m_tokens.isEmpty();
}

HierarchyPath HierarchyPath::GetParent() const
{
  HierarchyPath parent;
  if (m_tokens.isEmpty())
  {
    parent.m_valid = 0;
    return parent;
  }
  parent.m_tokens = m_tokens.first(m_tokens.size() - 1);
  return parent;
}

bool HierarchyPath::hasParent() const
{
  return m_tokens.size() >= 2;
}

HierarchyPath HierarchyPath::GetSubPath(int start, int count) const
{
  HierarchyPath sub;
  if (start < 0 || start >= m_tokens.size() || count <= 0)
    return sub;
  sub.m_tokens = m_tokens.mid(start, std::min<qsizetype>(count, m_tokens.size() - start));
  return sub;
}

void HierarchyPath::RemoveLastChild()
{
  if (!m_tokens.isEmpty())
    m_tokens.removeLast();
}

void HierarchyPath::SetSeparator(const QString& separator)
{
  m_separator = separator;
}

bool HierarchyPath::StartsWith(const HierarchyPath& other) const
{
  if (other.m_tokens.size() > m_tokens.size())
    return false;
  if (other == *this || other.IsEmpty())
    return true;
  return std::equal(other.m_tokens.begin(), other.m_tokens.end(), m_tokens.begin());
}

bool HierarchyPath::EndsWith(const HierarchyPath& other) const
{
  if (other.m_tokens.size() > m_tokens.size())
    return false;
  if (other == *this || other.IsEmpty())
    return true;
  return std::equal(other.m_tokens.rbegin(), other.m_tokens.rend(), m_tokens.rbegin());
}

bool HierarchyPath::Contains(const HierarchyPath& other) const
{
  if (other.m_tokens.size() > m_tokens.size())
    return false;
  if (other == *this || other.IsEmpty())
    return true;
  const qsizetype first = m_tokens.indexOf(other.m_tokens.first());
  if (first < 0)
    return false;
  // Every token is looked up from the start, not from the match so far: a repeated token
  // is found at its first position only. Callers rely on this.
  for (qsizetype i = 1; i < other.m_tokens.size(); ++i)
  {
    if (m_tokens.indexOf(other.m_tokens[i]) != first + i)
      return false;
  }
  return true;
}

HierarchyPath HierarchyPath::TrimParents(const HierarchyPath& prefix) const
{
  HierarchyPath trimmed(*this);
  if (!prefix.IsEmpty() && StartsWith(prefix))
    trimmed.m_tokens.remove(0, prefix.m_tokens.size());
  return trimmed;
}

HierarchyPath HierarchyPath::TrimChilds(const HierarchyPath& suffix) const
{
  HierarchyPath trimmed(*this);
  if (!suffix.IsEmpty() && EndsWith(suffix))
    trimmed.m_tokens.resize(m_tokens.size() - suffix.m_tokens.size());
  return trimmed;
}

QString HierarchyPath::AsString() const
{
  return m_tokens.join(m_separator);
}

Storage::Settings& HierarchyPath::SerializeTo(Storage::Settings& settings) const
{
  settings.SetClass(QStringLiteral("HierarchyPath"));
  settings.Set(QStringLiteral("Separator"), m_separator);
  Storage::SerializeTo(*settings.CreateNode(QStringLiteral("Tokens")), m_tokens);
  return settings;
}

void HierarchyPath::DeserializeFrom(const Storage::Settings& settings)
{
  if (!settings.IsClass(QStringLiteral("HierarchyPath")))
    return;
  m_separator = settings.Get<QString>(QStringLiteral("Separator"), defaultSeparator);
  m_tokens.clear();
  if (settings.Contains(QStringLiteral("Tokens")))
    Storage::DeserializeFrom(*settings.GetNode(QStringLiteral("Tokens")), m_tokens);
  m_valid = 1;
}

} // namespace RTE
