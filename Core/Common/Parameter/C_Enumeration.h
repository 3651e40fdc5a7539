// A parameter that takes one of a set of named choices (C_EnumerationEntry). The
// enumeration always has a current entry: the chosen one, or a placeholder named
// "__invalid__" with value 0 while none is chosen.
//
//   auto trigger = RTE::Parameter::CreateEnumeration("TriggerMode", "Trigger mode", "",
//                                                    RTE::Parameter::C_Enumeration::EditorComboBox);
//   trigger->AddEntry(RTE::Parameter::Private::CreateEnumerationEntry("Internal", "Internal", "", 0));
//   trigger->AddEntry(RTE::Parameter::Private::CreateEnumerationEntry("External", "External", "", 1));
//   trigger->SetCurrentEntry("External"); // or SetCurrentEntry(1LL)
#pragma once

#include <Core/Common/Parameter/C_EnumerationEntry.h>

#include <memory>

namespace RTE::Parameter
{

class CORECOMMON_EXPORT C_Enumeration : public C_Node
{
  Q_OBJECT

public:
  static const QString ENTRY_INVALID;  // "__invalid__"
  static const QString EditorComboBox; // "ComboBox"
  static const QString EditorListView; // "ListView"

  // No entries, the placeholder current, case-sensitive names.
  C_Enumeration();
  ~C_Enumeration() override;

  // Equal attributes, pairwise equal entries and the same current entry name.
  bool operator==(const C_Node& other) const override;
  // "Value: <current entry name>" after the node line.
  std::string dump() const override;
  // The current entry's name.
  QString toString() const override;
  QString GetTypeName() const override;
  // Selects the entry named like the source's current one, if this enumeration has it;
  // entries are not copied. Throws RTE::Exception if the source is not an enumeration.
  void CopyValues(std::shared_ptr<C_Node> source) override;

  virtual const std::list<std::shared_ptr<C_EnumerationEntry>>& GetEntries() const;
  // Appends; the first entry becomes current. Throws RTE::Exception "Enumeration entry
  // not unique: ..." when an entry has the same name (exactly) or value, and
  // RTE::InvalidArgumentError for an empty pointer.
  virtual void AddEntry(std::shared_ptr<C_EnumerationEntry> entry);
  // Drops all entries; the placeholder becomes current without a signal.
  virtual void Clear();
  // Removes the entry with exactly that name; throws RTE::Exception if there is none.
  // Only erasing the current entry is announced.
  virtual void Erase(const QString& name);
  virtual std::shared_ptr<C_EnumerationEntry> GetCurrentEntry() const;
  // 0 for the placeholder.
  virtual long long GetCurrentValue() const;
  // By name under the case-sensitivity setting; throws RTE::Exception if none matches.
  virtual void SetCurrentEntry(const QString& name);
  // By value; throws RTE::Exception if none matches.
  virtual void SetCurrentEntry(long long value);
  virtual void setCaseSensitivity(Qt::CaseSensitivity sensitivity);
  // Whether an entry's name matches under the case-sensitivity setting.
  virtual bool Contains(const QString& name) const;
  // Replaces the entries by copies of the source's and selects the entry named like the
  // source's current one. Throws RTE::Exception if the source is not an enumeration.
  virtual void CopyEverything(std::shared_ptr<C_Node> source);

  // "Enumeration".
  static QString GetStaticTypeName();

signals:
  // Carries the whole entry list, not the current entry.
  void ValueChanged(RTE::Parameter::EnumerationEntries entry);
  void EntriesChanged(RTE::Parameter::EnumerationEntries entries);
  // Emitted whenever a real entry becomes current, even while signals are disabled.
  void CurrentEntryChanged(RTE::Parameter::EnumerationEntry entry);

protected:
  // While signals are enabled: EntriesChanged with a copy of the list.
  virtual void NotifyEntriesChangedWithValue();
  void NotifyValueChangedWithValue() override;

private:
  using Entries = std::list<std::shared_ptr<C_EnumerationEntry>>;

  void SetCurrentEntry(Entries::iterator entry);
  void SetCurrentEntryInvalid();
  void ThrowIfNotUnique(std::shared_ptr<C_EnumerationEntry> entry);

  Entries m_entries;
  std::shared_ptr<C_EnumerationEntry> m_currentEntry;
  Qt::CaseSensitivity m_caseSensitivity = Qt::CaseSensitive;
};

using Enumeration = std::shared_ptr<C_Enumeration>;

// No entries; the setters run in the order name, label, description, editor.
CORECOMMON_EXPORT std::shared_ptr<C_Enumeration> CreateEnumeration(const QString& name, const QString& label,
                                                                   const QString& description, const QString& editor);
// Throws RTE::Exception "Cannot cast <type> to Enumeration.".
CORECOMMON_EXPORT std::shared_ptr<C_Enumeration> CastToEnumeration(std::shared_ptr<C_Node> node);

} // namespace RTE::Parameter
