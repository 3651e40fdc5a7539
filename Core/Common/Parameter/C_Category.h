// The node that holds other nodes: a tree of categories with value nodes at its leaves
// describes a whole parameter set. Nested nodes are addressed by their names joined
// with "." ("Camera.Exposure.Time").
//
//   auto camera = RTE::Parameter::CreateCategory("Camera", "Camera", "Acquisition settings");
//   camera->AddChild(RTE::Parameter::CreateBool("Enabled", true));
//   auto enabled = RTE::Parameter::CastToBool(camera->GetChild("Enabled"));
//
// Children are shared: the same node may sit in several categories.
#pragma once

#include <Core/Common/Parameter/C_Node.h>

#include <QList>

#include <list>
#include <memory>

namespace RTE::Parameter
{

class CORECOMMON_EXPORT C_Category : public C_Node
{
  Q_OBJECT

public:
  // Access mode UndefinedAccesMode, visible to customers, no editor, signals enabled.
  explicit C_Category(const QString& label = QString(), const QString& name = QString(),
                      const QString& description = QString());
  ~C_Category() override;

  // Another category with equal attributes and pairwise equal children in the same order.
  bool operator==(const C_Node& other) const override;
  QString GetTypeName() const override;
  // For each source child, copies into the own child of the same name and kind; the
  // rest is skipped. Throws RTE::Exception if the source is not a category.
  void CopyValues(std::shared_ptr<C_Node> source) override;
  // Sets the own flag and that of every node below.
  void EnableSignals(bool enable) override;
  // True if the own flag or that of any node below is set.
  bool AreSignalsEnabled() const override;

  virtual bool operator!=(const C_Node& other) const;
  // A copy of the list; the nodes are shared.
  virtual std::list<std::shared_ptr<C_Node>> GetChildList() const;
  // Replaces the list as given: no check of names, no notification.
  virtual void SetChildList(const std::list<std::shared_ptr<C_Node>>& children);
  // Removes all children; no notification.
  virtual void ClearChildList();
  // The node at the "."-separated path. Throws RTE::VerificationFailed "Path is empty" or
  // "Value with name '<part>' not found" naming the missing part, and RTE::Exception when
  // the path continues below a node that is not a category.
  virtual std::shared_ptr<C_Node> GetChild(const QString& path) const;
  // Whether the path names a node; false for an empty path or a missing name. Still
  // throws RTE::Exception when the path continues below a node that is not a category.
  virtual bool Contains(const QString& path) const;
  virtual bool empty() const;
  // Appends and emits ValueChanged(); throws RTE::Exception if the name is taken and
  // RTE::InvalidArgumentError for an empty pointer.
  virtual void AddChild(std::shared_ptr<C_Node> child);
  // Unlinks the child with that plain name and emits ValueChanged(); throws
  // RTE::Exception if there is none.
  virtual void RemoveChild(const QString& name);

  // Every path below this category that `other` lacks or holds as another kind, in
  // this category's order (depth first). Nodes only `other` has are not reported.
  QList<QString> missingNodesIn(std::shared_ptr<C_Category> other) const;

  // "Category".
  static QString GetStaticTypeName();

protected:
  // A category has no typed value signal.
  void NotifyValueChangedWithValue() override;

private:
  using Children = std::list<std::shared_ptr<C_Node>>;

  QList<QString> allChildrenPaths(const QString& prefix) const;
  QList<QString> missingNodesIn(std::shared_ptr<C_Category> other, const QString& prefix) const;
  Children::const_iterator FindChild(const QString& name) const;

  Children m_children;
};

// An empty ReadWrite category; the setters run in the order name, label, description,
// access mode.
CORECOMMON_EXPORT std::shared_ptr<C_Category> CreateCategory(const QString& name, const QString& label,
                                                             const QString& description);

// Shares ownership as a category; throws RTE::Exception "Cannot cast <type> to Category.".
CORECOMMON_EXPORT std::shared_ptr<C_Category> CastToCategory(std::shared_ptr<C_Node> node);

// Adds every child of `source` to `target` (the source itself is not added). A name that
// `target` already holds throws, with the children before it already added.
CORECOMMON_EXPORT void InsertChildrenAndFlatten(std::shared_ptr<C_Category> target, std::shared_ptr<C_Category> source);

} // namespace RTE::Parameter
