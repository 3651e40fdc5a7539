// A switch.
//
//   auto trigger = RTE::Parameter::CreateBool("TriggerEnabled", false);
//   trigger->SetValue(true); // ValueChanged(), then ValueChanged(true)
#pragma once

#include <Core/Common/Parameter/C_Node.h>

#include <memory>
#include <ostream>

namespace RTE::Parameter
{

class CORECOMMON_EXPORT C_Bool : public C_Node
{
  Q_OBJECT

public:
  static const QString EditorCheckBox;    // "CheckBox"
  static const QString EditorCheckButton; // "CheckButton"
  static const QString EditorComboBox;    // "ComboBox"

  C_Bool();
  ~C_Bool() override;

  // Another C_Bool with equal attributes and value.
  bool operator==(const C_Node& other) const override;
  // "Value: true" or "Value: false" after the node line.
  std::string dump() const override;
  // The translated "true" or "false".
  QString toString() const override;
  QString GetTypeName() const override;
  // Throws RTE::Exception if the source is not a C_Bool.
  void CopyValues(std::shared_ptr<C_Node> source) override;

  virtual bool GetValue() const;
  // Announces a change: ValueChanged(), then ValueChanged(bool).
  virtual void SetValue(bool value);

  // "Bool".
  static QString GetStaticTypeName();

signals:
  void ValueChanged(bool value);

protected:
  void NotifyValueChangedWithValue() override;

private:
  bool m_value = false;
};

using Bool = std::shared_ptr<C_Bool>;

// Setters in the order name, label, description, access mode, value, editor.
CORECOMMON_EXPORT std::shared_ptr<C_Bool> CreateBool(const QString& name, const QString& label,
                                                     const QString& description, E_AccessMode accessMode, bool value,
                                                     const QString& editor);
// Empty label and description, ReadWrite, editor "CheckBox".
CORECOMMON_EXPORT std::shared_ptr<C_Bool> CreateBool(const QString& name, bool value);
// Throws RTE::Exception "Cannot cast <type> to Bool.".
CORECOMMON_EXPORT std::shared_ptr<C_Bool> CastToBool(std::shared_ptr<C_Node> node);

CORECOMMON_EXPORT std::ostream& operator<<(std::ostream& stream, const C_Bool& node);

} // namespace RTE::Parameter
