// A text value: a plain string, a file or a folder name, depending on the editor.
//
//   auto serial = RTE::Parameter::CreateText("Serial", "Serial number", "", RTE::Parameter::ReadOnly,
//                                            "A1234", RTE::Parameter::C_Text::EditorLineEdit);
#pragma once

#include <Core/Common/Parameter/C_Node.h>

#include <QVariant>

#include <memory>

namespace RTE::Parameter
{

class CORECOMMON_EXPORT C_Text : public C_Node
{
  Q_OBJECT

public:
  static const QString EditorLineEdit;      // "LineEdit"
  static const QString EditorFileEdit;      // "FileEdit"
  static const QString EditorDirectoryEdit; // "DirectoryEdit"

  C_Text();
  ~C_Text() override;

  bool operator==(const C_Node& other) const override;
  std::string dump() const override;
  QString toString() const override;
  QString GetTypeName() const override;
  // Throws RTE::Exception "CopyValues: Cannot copy ..." for a source of another kind.
  void CopyValues(std::shared_ptr<C_Node> source) override;

  virtual bool operator!=(const C_Node& other) const;
  virtual QString GetValue() const;
  // Announces a change: ValueChanged(), then ValueChanged(QString).
  virtual void SetValue(const QString& value);
  virtual QVariant toQVariant() const;

  // "Text".
  static QString GetStaticTypeName();

signals:
  void ValueChanged(QString value);

protected:
  void NotifyValueChangedWithValue() override;

private:
  QString m_value;
};

using Text = std::shared_ptr<C_Text>;

// Setters in the order name, label, description, value, access mode, editor.
CORECOMMON_EXPORT std::shared_ptr<C_Text> CreateText(const QString& name, const QString& label,
                                                     const QString& description, E_AccessMode accessMode,
                                                     const QString& value, const QString& editor);
// Throws RTE::Exception "Cannot cast <type> to Text.".
CORECOMMON_EXPORT std::shared_ptr<C_Text> CastToText(std::shared_ptr<C_Node> node);

} // namespace RTE::Parameter
