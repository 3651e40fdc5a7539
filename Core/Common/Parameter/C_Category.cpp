#include <Core/Common/Parameter/C_Category.h>

#include "ParameterLog_p.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>

#include <QHash>

#include <algorithm>

namespace RTE::Parameter
{

namespace
{

const QLatin1Char separator('.');

QString pathPrefix(const QString& prefix)
{
  return prefix.isEmpty() ? QString() : prefix + separator;
}

bool isCategory(const C_Node& node)
{
  return node.GetTypeName() == C_Category::GetStaticTypeName();
}

// Finds children by name, the first of a name as FindChild does. Larger categories get
// a hash table for the duration of one call, so that copying or comparing two
// categories of n children costs O(n) rather than O(n^2).
class ChildLookup
{
public:
  explicit ChildLookup(const std::list<std::shared_ptr<C_Node>>* children) : m_children(children)
  {
    if (!children || children->size() <= 16)
      return;
    m_index.reserve(static_cast<qsizetype>(children->size()));
    for (const auto& child : *children)
    {
      if (!m_index.contains(child->GetName()))
        m_index.insert(child->GetName(), &child);
    }
  }

  // Empty when there is no child of that name (or no category).
  std::shared_ptr<C_Node> find(const QString& name) const
  {
    if (!m_children)
      return nullptr;
    if (!m_index.isEmpty())
    {
      const auto found = m_index.constFind(name);
      return found == m_index.constEnd() ? nullptr : **found;
    }
    for (const auto& child : *m_children)
    {
      if (child->GetName() == name)
        return child;
    }
    return nullptr;
  }

private:
  const std::list<std::shared_ptr<C_Node>>* m_children;
  QHash<QString, const std::shared_ptr<C_Node>*> m_index;
};

} // namespace

C_Category::C_Category(const QString& label, const QString& name, const QString& description) :
    C_Node(label, name, description, UndefinedAccesMode, Visible4Customer, QString(), true)
{
}

C_Category::~C_Category() = default;

bool C_Category::operator==(const C_Node& other) const
{
  const auto* category = dynamic_cast<const C_Category*>(&other);
  if (!category)
    return false;
  if (category == this)
    return true;
  if (!C_Node::operator==(other) || m_children.size() != category->m_children.size())
    return false;
  return std::equal(m_children.begin(), m_children.end(), category->m_children.begin(),
                    [](const auto& a, const auto& b) { return a == b || (a && b && *a == *b); });
}

QString C_Category::GetTypeName() const
{
  return GetStaticTypeName();
}

void C_Category::CopyValues(std::shared_ptr<C_Node> source)
{
  const auto category = CastToCategory(std::move(source));
  if (category.get() == this)
    return;
  const ChildLookup own(&m_children);
  for (const auto& sourceChild : category->m_children)
  {
    const auto counterpart = own.find(sourceChild->GetName());
    if (!counterpart)
    {
      qCDebug(lcParameter) << "CopyValues: no counterpart for" << sourceChild->GetName();
      continue;
    }
    if (counterpart->GetTypeName() != sourceChild->GetTypeName())
    {
      qCDebug(lcParameter) << "CopyValues: kinds differ for" << sourceChild->GetName();
      continue;
    }
    counterpart->CopyValues(sourceChild);
  }
}

void C_Category::EnableSignals(bool enable)
{
  C_Node::EnableSignals(enable);
  for (const auto& child : m_children)
    child->EnableSignals(enable);
}

bool C_Category::AreSignalsEnabled() const
{
  return C_Node::AreSignalsEnabled() ||
         std::any_of(m_children.begin(), m_children.end(), [](const auto& c) { return c->AreSignalsEnabled(); });
}

bool C_Category::operator!=(const C_Node& other) const
{
  return !(*this == other);
}

std::list<std::shared_ptr<C_Node>> C_Category::GetChildList() const
{
  return m_children;
}

void C_Category::SetChildList(const std::list<std::shared_ptr<C_Node>>& children)
{
  if (&children == &m_children)
    return;
  m_children = children;
}

void C_Category::ClearChildList()
{
  m_children.clear();
}

std::shared_ptr<C_Node> C_Category::GetChild(const QString& path) const
{
  if (path.isEmpty())
    RTE::Raise(RTE::VerificationFailed(tr("Path is empty")));
  QStringList parts = path.split(separator, Qt::KeepEmptyParts);
  const QString first = parts.takeFirst();
  const auto child = FindChild(first);
  if (child == m_children.end())
    RTE::RaiseWithoutLog(RTE::VerificationFailed(tr("Value with name '%1' not found").arg(first)));
  if (parts.isEmpty())
    return *child;
  return CastToCategory(*child)->GetChild(parts.join(separator));
}

bool C_Category::Contains(const QString& path) const
{
  if (path.isEmpty())
    return false;
  QStringList parts = path.split(separator, Qt::KeepEmptyParts);
  const auto child = FindChild(parts.takeFirst());
  if (child == m_children.end())
    return false;
  if (parts.isEmpty())
    return true;
  // A path running on below a value node is a caller's error, not a missing node.
  return CastToCategory(*child)->Contains(parts.join(separator));
}

bool C_Category::empty() const
{
  return m_children.empty();
}

void C_Category::AddChild(std::shared_ptr<C_Node> child)
{
  if (!child)
    RTE::Raise(RTE::InvalidArgumentError(tr("Cannot add an empty child")));
  if (FindChild(child->GetName()) != m_children.end())
    RTE::Raise(RTE::Exception(tr("Cannot add child. This category already contains a child with the name ") +
                              child->GetName()));
  m_children.push_back(std::move(child));
  C_Node::NotifyValueChanged();
}

void C_Category::RemoveChild(const QString& name)
{
  const auto child = FindChild(name);
  if (child == m_children.end())
    RTE::Raise(RTE::Exception(tr("Cannot remove child. This category does not contain a child with the name ") + name));
  m_children.erase(child);
  C_Node::NotifyValueChanged();
}

QList<QString> C_Category::missingNodesIn(std::shared_ptr<C_Category> other) const
{
  return missingNodesIn(std::move(other), QString());
}

QString C_Category::GetStaticTypeName()
{
  return QStringLiteral("Category");
}

void C_Category::NotifyValueChangedWithValue() {}

QList<QString> C_Category::allChildrenPaths(const QString& prefix) const
{
  const QString p = pathPrefix(prefix);
  QList<QString> paths;
  for (const auto& child : m_children)
  {
    const QString path = p + child->GetName();
    paths.append(path);
    if (isCategory(*child))
      paths.append(CastToCategory(child)->allChildrenPaths(path));
  }
  return paths;
}

QList<QString> C_Category::missingNodesIn(std::shared_ptr<C_Category> other, const QString& prefix) const
{
  const QString p = pathPrefix(prefix);
  QList<QString> paths;
  const ChildLookup others(other ? &other->m_children : nullptr);
  for (const auto& child : m_children)
  {
    const QString path = p + child->GetName();
    const std::shared_ptr<C_Node> counterpart = others.find(child->GetName());
    if (!counterpart || counterpart->GetTypeName() != child->GetTypeName())
    {
      paths.append(path);
      if (isCategory(*child))
        paths.append(CastToCategory(child)->allChildrenPaths(path));
    }
    else if (isCategory(*child))
    {
      paths.append(CastToCategory(child)->missingNodesIn(CastToCategory(counterpart), path));
    }
  }
  return paths;
}

C_Category::Children::const_iterator C_Category::FindChild(const QString& name) const
{
  return std::find_if(m_children.begin(), m_children.end(),
                      [&name](const auto& child) { return child->GetName() == name; });
}

std::shared_ptr<C_Category> CreateCategory(const QString& name, const QString& label, const QString& description)
{
  auto category = std::make_shared<C_Category>();
  category->SetName(name);
  category->SetLabel(label);
  category->SetDescription(description);
  category->SetAccessMode(ReadWrite);
  return category;
}

std::shared_ptr<C_Category> CastToCategory(std::shared_ptr<C_Node> node)
{
  return detail::CastNode<C_Category>(node, "Category");
}

void InsertChildrenAndFlatten(std::shared_ptr<C_Category> target, std::shared_ptr<C_Category> source)
{
  for (const auto& child : source->GetChildList())
    target->AddChild(child);
}

} // namespace RTE::Parameter
