// A parameter tree: one root category behind a recursive lock, with path access, typed
// lookups and copying of values between trees. C_Tree is a handle: copies of a C_Tree
// share one tree.
//
//   auto tree = RTE::Parameter::CreateTree();
//   tree->AddChild(RTE::Parameter::CreateDouble("ExposureTime", 10.0));
//   double t = tree->GetDouble("ExposureTime")->GetValue();
//   tree->setMergeHandler([](RTE::Parameter::StructuralDiffs& diffs) { ... });
//   tree->copyValuesFrom(*loaded); // values by name and kind; the structure stays
//
// The lock is held by Get (and the typed getters), GetChildList, AddChild,
// CopyToCategory, CopyFromCategory, copyValuesFrom and operator==. Contains, empty and
// GetRootCategory do not take it; work on the root category itself is outside the lock.
#pragma once

#include <Core/Common/Parameter/C_Action.h>
#include <Core/Common/Parameter/C_Bool.h>
#include <Core/Common/Parameter/C_Category.h>
#include <Core/Common/Parameter/C_Double.h>
#include <Core/Common/Parameter/C_DoubleList.h>
#include <Core/Common/Parameter/C_Enumeration.h>
#include <Core/Common/Parameter/C_Integer.h>
#include <Core/Common/Parameter/C_IntegerList.h>
#include <Core/Common/Parameter/C_List.h>
#include <Core/Common/Parameter/C_Text.h>
#include <Core/Common/Parameter/C_TextList.h>
#include <Core/Common/Parameter/CopyHandler.h>
#include <Core/Common/Parameter/StructuralDiffs.h>

#include <functional>
#include <list>
#include <memory>

namespace RTE::Parameter
{

class C_TreeData;

class CORECOMMON_EXPORT C_Tree
{
public:
  // A new tree with an empty root category.
  C_Tree();
  // Copies share the tree: a change through one is seen through the other.
  C_Tree(const C_Tree& other);
  C_Tree& operator=(const C_Tree& other);
  virtual ~C_Tree();

  // The root's Contains (no lock).
  virtual bool Contains(const QString& path) const;
  // The root's empty (no lock).
  virtual bool empty() const;
  // The root's GetChild: throws RTE::VerificationFailed for an empty or unknown path.
  virtual std::shared_ptr<C_Node> Get(const QString& path) const;
  // Get(path) through the matching CastTo...: a node of another kind throws
  // RTE::Exception "Cannot cast <type> to <kind>.".
  virtual std::shared_ptr<C_Integer> GetInteger(const QString& path) const;
  virtual std::shared_ptr<C_Double> GetDouble(const QString& path) const;
  virtual std::shared_ptr<C_Enumeration> GetEnumeration(const QString& path) const;
  virtual std::shared_ptr<C_Category> GetCategory(const QString& path) const;
  virtual std::shared_ptr<C_Text> GetText(const QString& path) const;
  virtual std::shared_ptr<C_Bool> GetBool(const QString& path) const;
  virtual std::shared_ptr<C_Action> GetAction(const QString& path) const;
  virtual std::shared_ptr<C_List> GetList(const QString& path) const;
  virtual std::shared_ptr<C_IntegerList> GetIntegerList(const QString& path) const;
  virtual std::shared_ptr<C_DoubleList> GetDoubleList(const QString& path) const;
  virtual std::shared_ptr<C_TextList> GetTextList(const QString& path) const;
  // copyValuesFrom(*source); throws RTE::InvalidArgumentError for an empty pointer.
  virtual void CopyValues(std::shared_ptr<C_Tree> source);
  // Under this tree's lock: the copy handler if set, else the root's CopyValues; then,
  // if a merge handler is set and the structures differ, the merge handler.
  virtual void copyValuesFrom(const C_Tree& source);
  virtual void setCopyHandler(std::unique_ptr<CopyHandler> handler);
  virtual void setMergeHandler(std::function<void(StructuralDiffs&)> handler);
  // The root's children (shared, not copied).
  virtual std::list<std::shared_ptr<C_Node>> GetChildList() const;
  // The root's AddChild: throws RTE::Exception for a name already present.
  virtual void AddChild(std::shared_ptr<C_Node> child);
  // Gives `target` the root's children (the same node objects).
  virtual void CopyToCategory(std::shared_ptr<C_Category> target);
  // Gives the root the children of `source` (the same node objects, shared afterwards).
  virtual void CopyFromCategory(std::shared_ptr<C_Category> source);
  // The root category itself; using it bypasses the lock.
  virtual std::shared_ptr<C_Category> GetRootCategory() const;
  // Root categories compared with the category equality.
  virtual bool operator==(const C_Tree& other) const;
  virtual bool operator!=(const C_Tree& other) const;

private:
  std::shared_ptr<C_TreeData> m_data;
};

// A new tree with fresh data.
CORECOMMON_EXPORT std::shared_ptr<C_Tree> CreateTree();
// A new tree whose root receives the category's children (the same node objects).
CORECOMMON_EXPORT std::shared_ptr<C_Tree> CreateTreeFromCategory(std::shared_ptr<C_Category> category);

} // namespace RTE::Parameter
