#include <Core/Common/Parameter/C_Tree.h>

#include "C_TreeData_p.h"
#include "ParameterLog_p.h"

#include <Core/Common/Exceptions/GeneralExceptions.h>

namespace RTE::Parameter
{

namespace
{

template <typename Pointer>
void requireNode(const Pointer& pointer, const char* what,
                 const std::source_location& where = std::source_location::current())
{
  if (!pointer)
    RTE::Raise(
        RTE::InvalidArgumentError(
            QCoreApplication::translate("RTE::Parameter::C_Tree", "C_Tree: the %1 is empty").arg(QLatin1String(what))),
        where);
}

} // namespace

C_TreeData::C_TreeData() :
    root(CreateCategory(QStringLiteral("Root"), QStringLiteral("Root"),
                        QStringLiteral("This root category is only for internal use as member of C_Tree")))
{
}

C_Tree::C_Tree() : m_data(std::make_shared<C_TreeData>()) {}

C_Tree::C_Tree(const C_Tree& other) = default;

C_Tree& C_Tree::operator=(const C_Tree& other) = default;

C_Tree::~C_Tree() = default;

bool C_Tree::Contains(const QString& path) const
{
  return m_data->root->Contains(path);
}

bool C_Tree::empty() const
{
  return m_data->root->empty();
}

std::shared_ptr<C_Node> C_Tree::Get(const QString& path) const
{
  std::lock_guard guard(m_data->lock);
  return m_data->root->GetChild(path);
}

std::shared_ptr<C_Integer> C_Tree::GetInteger(const QString& path) const
{
  return CastToInteger(Get(path));
}

std::shared_ptr<C_Double> C_Tree::GetDouble(const QString& path) const
{
  return CastToDouble(Get(path));
}

std::shared_ptr<C_Enumeration> C_Tree::GetEnumeration(const QString& path) const
{
  return CastToEnumeration(Get(path));
}

std::shared_ptr<C_Category> C_Tree::GetCategory(const QString& path) const
{
  return CastToCategory(Get(path));
}

std::shared_ptr<C_Text> C_Tree::GetText(const QString& path) const
{
  return CastToText(Get(path));
}

std::shared_ptr<C_Bool> C_Tree::GetBool(const QString& path) const
{
  return CastToBool(Get(path));
}

std::shared_ptr<C_Action> C_Tree::GetAction(const QString& path) const
{
  return CastToAction(Get(path));
}

std::shared_ptr<C_List> C_Tree::GetList(const QString& path) const
{
  return CastToList(Get(path));
}

std::shared_ptr<C_IntegerList> C_Tree::GetIntegerList(const QString& path) const
{
  return CastToIntegerList(Get(path));
}

std::shared_ptr<C_DoubleList> C_Tree::GetDoubleList(const QString& path) const
{
  return CastToDoubleList(Get(path));
}

std::shared_ptr<C_TextList> C_Tree::GetTextList(const QString& path) const
{
  return CastToTextList(Get(path));
}

void C_Tree::CopyValues(std::shared_ptr<C_Tree> source)
{
  requireNode(source, "source tree");
  copyValuesFrom(*source);
}

void C_Tree::copyValuesFrom(const C_Tree& source)
{
  std::lock_guard guard(m_data->lock);
  if (m_data->copyHandler)
    m_data->copyHandler->Copy(source, *this);
  else
    m_data->root->CopyValues(source.GetRootCategory());
  // Copied: a handler may replace itself while it runs.
  const std::function<void(StructuralDiffs&)> merge = m_data->mergeHandler;
  if (!merge)
    return;
  StructuralDiffs diffs(source, *this);
  if (!diffs.empty())
    merge(diffs);
}

void C_Tree::setCopyHandler(std::unique_ptr<CopyHandler> handler)
{
  std::lock_guard guard(m_data->lock);
  m_data->copyHandler = std::move(handler);
}

void C_Tree::setMergeHandler(std::function<void(StructuralDiffs&)> handler)
{
  std::lock_guard guard(m_data->lock);
  m_data->mergeHandler = std::move(handler);
}

std::list<std::shared_ptr<C_Node>> C_Tree::GetChildList() const
{
  std::lock_guard guard(m_data->lock);
  return m_data->root->GetChildList();
}

void C_Tree::AddChild(std::shared_ptr<C_Node> child)
{
  std::lock_guard guard(m_data->lock);
  m_data->root->AddChild(std::move(child));
}

void C_Tree::CopyToCategory(std::shared_ptr<C_Category> target)
{
  requireNode(target, "target category");
  std::lock_guard guard(m_data->lock);
  target->SetChildList(m_data->root->GetChildList());
}

void C_Tree::CopyFromCategory(std::shared_ptr<C_Category> source)
{
  requireNode(source, "source category");
  std::lock_guard guard(m_data->lock);
  m_data->root->SetChildList(source->GetChildList());
}

std::shared_ptr<C_Category> C_Tree::GetRootCategory() const
{
  return m_data->root;
}

bool C_Tree::operator==(const C_Tree& other) const
{
  std::lock_guard guard(m_data->lock);
  return *m_data->root == *other.m_data->root;
}

bool C_Tree::operator!=(const C_Tree& other) const
{
  return !(*this == other);
}

std::shared_ptr<C_Tree> CreateTree()
{
  return std::make_shared<C_Tree>();
}

std::shared_ptr<C_Tree> CreateTreeFromCategory(std::shared_ptr<C_Category> category)
{
  auto tree = CreateTree();
  tree->CopyFromCategory(std::move(category));
  return tree;
}

} // namespace RTE::Parameter
