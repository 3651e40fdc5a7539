// A list of sub-nodes made on demand by an entry maker, for settings that repeat (one
// entry per camera, per region of interest, ...).
//
//   auto regions = RTE::Parameter::CreateList("Regions", "Regions", "", [] { return makeRegion(); },
//                                             RTE::Parameter::C_List::EditorTreeView);
//   regions->Append(makeRegion()); // ValueChanged() of the list
//
// The list has no typed value signal; NotifyEvent tells the list's listeners and every
// entry's listeners at once.
#pragma once

#include <Core/Common/Parameter/C_Node.h>

#include <functional>
#include <memory>
#include <vector>

namespace RTE::Parameter
{

class CORECOMMON_EXPORT C_List : public C_Node
{
  Q_OBJECT

public:
  using EntryMaker = std::function<std::shared_ptr<C_Node>()>;

  static const QString EditorLineEdit; // "LineEdit"
  static const QString EditorTreeView; // "TreeView"
  static const QString EditorListView; // "ListView"

  // `maker` makes a fresh default entry; CopyValues needs it.
  explicit C_List(EntryMaker maker);
  ~C_List() override;

  // Equal attributes and pairwise equal entries.
  bool operator==(const C_Node& other) const override;
  // "[dump1 dump2 ...]" after the node line.
  std::string dump() const override;
  QString GetTypeName() const override;
  // Rebuilds the entries with the maker, each filled from the source's entry of the same
  // position. Throws RTE::VerificationFailed "Allocator for list entry is NULL." without a
  // maker and RTE::Exception if the source is not a list.
  void CopyValues(std::shared_ptr<C_Node> source) override;
  // Sets the own flag and that of every entry.
  void EnableSignals(bool enable) override;
  // True if the own flag or any entry's is set.
  bool AreSignalsEnabled() const override;

  virtual bool operator!=(const C_Node& other) const;
  // ValueChanged() of the list, then that of every entry in order.
  virtual void NotifyEvent();

  // Adds at the end; announced. Throws RTE::InvalidArgumentError for an empty pointer.
  void Append(std::shared_ptr<C_Node> entry);
  // Removes all entries; announced only if there were any.
  void Clear();
  // Throws RTE::VerificationFailed "Invalid index"; announced.
  void EraseAt(unsigned int index);
  // Throws RTE::Exception "Index i is out of range.".
  std::shared_ptr<C_Node> GetAt(unsigned int index) const;
  unsigned int GetLength() const;

  // "List".
  static QString GetStaticTypeName();

protected:
  // A list has no typed value signal.
  void NotifyValueChangedWithValue() override;

private:
  std::vector<std::shared_ptr<C_Node>> m_entries;
  EntryMaker m_maker;
};

// The maker goes to the constructor; then the setters name, label, description, editor.
CORECOMMON_EXPORT std::shared_ptr<C_List> CreateList(const QString& name, const QString& label,
                                                     const QString& description, C_List::EntryMaker maker,
                                                     const QString& editor);
// Throws RTE::Exception "Cannot cast <type> to List.".
CORECOMMON_EXPORT std::shared_ptr<C_List> CastToList(std::shared_ptr<C_Node> node);

} // namespace RTE::Parameter
