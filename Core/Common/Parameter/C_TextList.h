// A list of texts.
//
//   auto channels = RTE::Parameter::CreateTextList("Channels", 2, "Channels", "", RTE::Parameter::ReadWrite,
//                                                  "unused", RTE::Parameter::C_TextList::EditorListView);
//   channels->SetValue(0, "Pressure"); // ValueChanged(), then ValueChanged(values)
//
// ValuesToString joins the texts with single blanks and its parser splits at every
// blank, so texts holding blanks do not survive that round trip.
#pragma once

#include <Core/Common/Parameter/C_Node.h>

#include <memory>
#include <string>
#include <vector>

namespace RTE::Parameter
{

class CORECOMMON_EXPORT C_TextList : public C_Node
{
  Q_OBJECT

public:
  static const QString EditorLineEdit; // "LineEdit"
  static const QString EditorTreeView; // "TreeView"
  static const QString EditorListView; // "ListView"

  C_TextList();
  ~C_TextList() override;

  // Equal attributes and texts.
  bool operator==(const C_Node& other) const override;
  // "Value: t1 t2 ..." after the node line.
  std::string dump() const override;
  // The texts joined by single blanks.
  QString toString() const override;
  QString GetTypeName() const override;
  // Takes over the texts of another text list (announced if they differ); throws
  // RTE::Exception "CopyValues: Cannot copy ..." for another kind.
  void CopyValues(std::shared_ptr<C_Node> source) override;

  virtual bool operator!=(const C_Node& other) const;

  size_t GetSize() const;
  // The text at `index`, or an empty text at or beyond the size.
  QString GetValue(size_t index) const;
  const std::vector<QString>& GetValues() const;
  // Shrinks, or grows with `fill`; silent.
  void SetSize(size_t size, const QString& fill);
  // Callers keep `index` below GetSize(); an index beyond it is ignored (and logged)
  // rather than written past the end. Announces a change.
  void SetValue(size_t index, const QString& text);
  void SetValue(const QString& text, size_t index);
  // Announces only if the texts differ.
  void SetValues(const std::vector<QString>& values);
  // The texts joined by single blanks, as Latin-1.
  std::string ValuesToString() const;
  // Replaces the texts by the Latin-1 `text` split at every blank (empty parts kept);
  // silent, like SetSize.
  void ValuesToString(const std::string& text);

  // "TextList".
  static QString GetStaticTypeName();

signals:
  void ValueChanged(std::vector<QString> values);

protected:
  void NotifyValueChangedWithValue() override;

private:
  std::vector<QString> m_values;
};

using TextList = std::shared_ptr<C_TextList>;

// Setters in the order name, label, description, size with the fill text, access mode, editor.
CORECOMMON_EXPORT std::shared_ptr<C_TextList> CreateTextList(const QString& name, size_t size, const QString& label,
                                                             const QString& description, E_AccessMode accessMode,
                                                             const QString& fill, const QString& editor);
// Throws RTE::Exception "Cannot cast <type> to TextList.".
CORECOMMON_EXPORT std::shared_ptr<C_TextList> CastToTextList(std::shared_ptr<C_Node> node);

} // namespace RTE::Parameter
