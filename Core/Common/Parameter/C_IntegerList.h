// A list of whole numbers (64 bits) with one range, step and precision for all elements.
//
//   auto offsets = RTE::Parameter::CreateIntegerList("Offsets", 4, "Offsets", "", RTE::Parameter::ReadWrite,
//                                                  0, -100, 100, RTE::Parameter::C_IntegerList::EditorTreeView);
#pragma once

#include <Core/Common/Parameter/C_NumericValueListT.h>

#include <cstdint>
#include <ostream>
#include <vector>

namespace RTE::Parameter
{

class CORECOMMON_EXPORT C_IntegerList : public C_NumericValueListT<long long>
{
  Q_OBJECT

public:
  static const QString EditorLineEdit; // "LineEdit"
  static const QString EditorTreeView; // "TreeView"
  static const QString EditorListView; // "ListView"

  // Empty, range 0 to 0, step 1, precision 0.
  C_IntegerList();
  ~C_IntegerList() override;

  QString GetTypeName() const override;

  // "IntegerList".
  static QString GetStaticTypeName();

signals:
  void ValueChanged(std::vector<int64_t> values);
  void RangeChanged(RTE::Parameter::IntegerRange range);
  void StepChanged(int64_t step);

protected:
  void NotifyValueChangedWithValue() override;
  void NotifyRangeChangedWithValue() override;
  void NotifyStepChangedWithValue() override;
  // Integer lists carry a precision but never announce it.
  void NotifyPrecisionChangedWithValue() override;
};

using IntegerList = std::shared_ptr<C_IntegerList>;

// Setters in the order name, label, description, range (as given), size with the fill
// value (unchecked), access mode, editor.
CORECOMMON_EXPORT std::shared_ptr<C_IntegerList>
CreateIntegerList(const QString& name, size_t size, const QString& label, const QString& description,
                  E_AccessMode accessMode, long long fill, long long minimum, long long maximum, const QString& editor);
// Throws RTE::Exception "Cannot cast <type> to IntegerList.".
CORECOMMON_EXPORT std::shared_ptr<C_IntegerList> CastToIntegerList(std::shared_ptr<C_Node> node);

CORECOMMON_EXPORT std::ostream& operator<<(std::ostream& stream, const C_IntegerList& node);

} // namespace RTE::Parameter
