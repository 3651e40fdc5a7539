// One choice of a C_Enumeration: a name, a label, a description and a 64-bit value.
// Entries are read-only once made; SetValue works only after the access mode has been
// set back to ReadWrite.
//
//   auto entry = RTE::Parameter::Private::CreateEnumerationEntry("Hardware", "Hardware trigger", "", 1);
#pragma once

#include <Core/Common/Parameter/C_Node.h>

#include <cstdint>
#include <list>
#include <memory>

namespace RTE::Parameter
{

class CORECOMMON_EXPORT C_EnumerationEntry : public C_Node
{
  Q_OBJECT

public:
  // Ends ReadOnly: the constructor makes the entry writable, sets name, description and
  // label, then makes it read-only.
  C_EnumerationEntry(const QString& name, const QString& label, const QString& description, long long value);
  ~C_EnumerationEntry() override;

  // Equal attributes and value.
  bool operator==(const C_Node& other) const override;
  // "EnumEntry: <value>" after the node line.
  std::string dump() const override;
  QString GetTypeName() const override;
  // Entries carry no copyable state; does nothing.
  void CopyValues(std::shared_ptr<C_Node> source) override;

  virtual long long GetValue() const;
  // Throws RTE::Exception "C_EnumerationEntry::SetValue: Access denied." while ReadOnly;
  // otherwise announces a change: ValueChanged(), then ValueChanged(int64_t).
  virtual void SetValue(long long value);

  // "EnumerationEntry".
  static QString GetStaticTypeName();

signals:
  void ValueChanged(int64_t value);

protected:
  void NotifyValueChangedWithValue() override;

private:
  long long m_value;
};

// The names under which entries travel in queued signals.
using EnumerationEntry = std::shared_ptr<C_EnumerationEntry>;
using EnumerationEntries = std::list<std::shared_ptr<C_EnumerationEntry>>;

// An entry with that name, empty label and description, value 0.
CORECOMMON_EXPORT std::shared_ptr<C_EnumerationEntry> CreateEnumerationEntry(const QString& name);
// Throws RTE::Exception "Cannot cast <type> to EnumerationEntry.".
CORECOMMON_EXPORT std::shared_ptr<C_EnumerationEntry> CastToEnumerationEntry(std::shared_ptr<C_Node> node);

namespace Private
{

CORECOMMON_EXPORT std::shared_ptr<C_EnumerationEntry>
CreateEnumerationEntry(const QString& name, const QString& label, const QString& description, long long value);

} // namespace Private

} // namespace RTE::Parameter
