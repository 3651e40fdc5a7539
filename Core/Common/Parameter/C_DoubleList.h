// A list of real numbers with one range, step and precision for all elements.
//
//   auto gains = RTE::Parameter::CreateDoubleList("Gains", 4, "Gains", "", RTE::Parameter::ReadWrite,
//                                                 1.0, 0.0, 16.0, RTE::Parameter::C_DoubleList::EditorTreeView, 2);
#pragma once

#include <Core/Common/Parameter/C_NumericValueListT.h>

#include <cstdint>
#include <ostream>
#include <vector>

namespace RTE::Parameter
{

class CORECOMMON_EXPORT C_DoubleList : public C_NumericValueListT<double>
{
  Q_OBJECT

public:
  static const QString EditorLineEdit; // "LineEdit"
  static const QString EditorTreeView; // "TreeView"
  static const QString EditorListView; // "ListView"

  // Empty, range 0 to 0, step 1, precision 2.
  C_DoubleList();
  ~C_DoubleList() override;

  QString GetTypeName() const override;

  // "DoubleList".
  static QString GetStaticTypeName();

signals:
  void ValueChanged(std::vector<double> values);
  void RangeChanged(RTE::Parameter::DoubleRange range);
  void StepChanged(double step);
  void PrecisionChanged(uint value);

protected:
  void NotifyValueChangedWithValue() override;
  void NotifyRangeChangedWithValue() override;
  void NotifyStepChangedWithValue() override;
  void NotifyPrecisionChangedWithValue() override;
};

using DoubleList = std::shared_ptr<C_DoubleList>;

// Setters in the order name, label, description, range (as given), size with the fill
// value (unchecked), access mode, editor, precision.
CORECOMMON_EXPORT std::shared_ptr<C_DoubleList> CreateDoubleList(const QString& name, size_t size, const QString& label,
                                                                 const QString& description, E_AccessMode accessMode,
                                                                 double fill, double minimum, double maximum,
                                                                 const QString& editor, unsigned int precision);
// Throws RTE::Exception "Cannot cast <type> to DoubleList.".
CORECOMMON_EXPORT std::shared_ptr<C_DoubleList> CastToDoubleList(std::shared_ptr<C_Node> node);

CORECOMMON_EXPORT std::ostream& operator<<(std::ostream& stream, const C_DoubleList& node);

} // namespace RTE::Parameter
