// The base of every parameter: a Qt object with a machine name, a label for users, a
// description, an access mode, a visibility level and the name of the editor a user
// interface should offer. Value nodes, enumerations and categories derive from it.
//
//   auto exposure = RTE::Parameter::CreateDouble("ExposureTime", 10.0);
//   QObject::connect(exposure.get(), &RTE::Parameter::C_Node::ValueChanged, [] { ... });
//   exposure->SetLabel("Exposure time"); // emits ValueChanged()
//
// Every setter compares first and announces only a real change, after storing it.
// Signals can be switched off per node (EnableSignals); nothing is replayed later.
#pragma once

#include <Core/Common/CoreCommonExport.h>

#include <QObject>
#include <QString>

#include <memory>
#include <ostream>
#include <string>

namespace RTE::Parameter
{

// Who may change a node. 0 is not a defined value.
enum E_AccessMode : int
{
  ReadOnly = 1,
  ReadWrite = 2,
  UndefinedAccesMode = 3
};

// The narrowest audience a node is shown to, widest first.
enum E_VisibilityLevel : int
{
  Visible4Customer = 0,
  Visible4Service = 1,
  Visible4Developer = 2
};

// Writes "ReadOnly", "ReadWrite", "UndefinedAccesMode", or "E_AccessMode: I am confused!"
// for an undefined value.
CORECOMMON_EXPORT std::ostream& operator<<(std::ostream& stream, E_AccessMode mode);
// Writes "Visible4Customer", "Visible4Service", "Visible4Developer", or
// "E_VisibilityLevel: I am confused!" for an undefined value.
CORECOMMON_EXPORT std::ostream& operator<<(std::ostream& stream, E_VisibilityLevel level);

class C_Node;
// The name under which nodes travel in QVariant and queued signals.
using Node = std::shared_ptr<C_Node>;

class CORECOMMON_EXPORT C_Node : public QObject
{
  Q_OBJECT

public:
  ~C_Node() override;

  // True for this very object, or for equal label, name, description, access mode and
  // visibility level. The preferred editor and the signals flag take no part.
  virtual bool operator==(const C_Node& other) const;
  virtual const QString& GetLabel() const;
  virtual const QString& GetName() const;
  virtual const QString& GetDescription() const;
  virtual E_AccessMode GetAccessMode() const;
  virtual E_VisibilityLevel GetVisibilityLevel() const;
  virtual QString GetPreferredEditor() const;
  // Stores the editor name; never notifies.
  virtual void SetPreferredEditor(const QString& editor);
  // One Latin-1 line: "Name: n Label: l Tooltip: d Access: a Visibility: v".
  virtual std::string dump() const;
  // The value as text; empty for nodes without a value.
  virtual QString toString() const;
  // The text setters emit ValueChanged() on a change.
  virtual void SetLabel(QString label);
  virtual void SetName(QString name);
  virtual void SetDescription(QString description);
  // On a change: ValueChanged(), then AccessModeChanged(mode).
  virtual void SetAccessMode(E_AccessMode mode);
  // On a change: ValueChanged(), then VisibilityLevelChanged(level).
  virtual void SetVisibilityLevel(E_VisibilityLevel level);
  virtual QString GetTypeName() const;
  // Copies the value (never name, label or description) of a node of the same kind.
  virtual void CopyValues(std::shared_ptr<C_Node> source) = 0;
  virtual void EnableSignals(bool enable);
  virtual bool AreSignalsEnabled() const;

  // "Node".
  static QString GetStaticTypeName();

signals:
  void ValueChanged();
  void AccessModeChanged(RTE::Parameter::E_AccessMode mode);
  void VisibilityLevelChanged(RTE::Parameter::E_VisibilityLevel level);

protected:
  // Stores the values and registers the meta types; emits nothing.
  C_Node(const QString& label, const QString& name, const QString& description, E_AccessMode accessMode,
         E_VisibilityLevel visibilityLevel, const QString& preferredEditor, bool signalsEnabled);

  // Emits the typed ValueChanged of the concrete class.
  virtual void NotifyValueChangedWithValue() = 0;
  // While signals are enabled: ValueChanged(), then NotifyValueChangedWithValue().
  virtual void NotifyValueChanged();
  virtual void NotifyAccessModeChanged();
  virtual void NotifyVisibilityLevelChanged();

private:
  // A list announces on behalf of its entries (C_List::NotifyEvent).
  friend class C_List;

  QString m_label;
  QString m_name;
  QString m_description;
  E_AccessMode m_accessMode;
  E_VisibilityLevel m_visibilityLevel;
  QString m_preferredEditor;
  bool m_signalsEnabled;
};

} // namespace RTE::Parameter
