// A whole number (64 bits) with range and step.
//
//   auto gain = RTE::Parameter::CreateInteger("Gain", "Gain", "Analogue gain", RTE::Parameter::ReadWrite,
//                                             1, 1, 16, RTE::Parameter::C_Integer::EditorSpinBox);
//   gain->SetRange(1, 8);
#pragma once

#include <Core/Common/Parameter/C_NumericValueT.h>

#include <cstdint>
#include <ostream>

namespace RTE::Parameter
{

class CORECOMMON_EXPORT C_Integer : public C_NumericValueT<long long>
{
  Q_OBJECT

public:
  static const QString EditorLineEdit;          // "LineEdit"
  static const QString EditorSpinBox;           // "SpinBox"
  static const QString EditorSpinBoxWrapAround; // "SpinBoxWrapAround"
  static const QString EditorSlider;            // "Slider"
  static const QString EditorSliderTicks;       // "SliderTicks"
  static const QString EditorLabeledSlider;     // "LabeledSlider"
  static const QString EditorAdvancedSlider;    // "AdvancedSlider"

  // Value 0, range 0 to 0, step 1, precision 0.
  C_Integer();
  ~C_Integer() override;

  QString GetTypeName() const override;
  QVariant toQVariant() const override;

  // "Integer".
  static QString GetStaticTypeName();

signals:
  void ValueChanged(int64_t value);
  void RangeChanged(RTE::Parameter::IntegerRange range);
  void StepChanged(int64_t step);

protected:
  void NotifyValueChangedWithValue() override;
  void NotifyRangeChangedWithValue() override;
  void NotifyStepChangedWithValue() override;
  // Integers carry a precision but never announce it.
  void NotifyPrecisionChangedWithValue() override;
};

using Integer = std::shared_ptr<C_Integer>;

// Setters in the order name, label, description, range, value, access mode, editor;
// a value outside [minimum, maximum] throws after the range is set.
CORECOMMON_EXPORT std::shared_ptr<C_Integer> CreateInteger(const QString& name, const QString& label,
                                                           const QString& description, E_AccessMode accessMode,
                                                           long long value, long long minimum, long long maximum,
                                                           const QString& editor);
// The full range of long long, ReadWrite, editor "SpinBox".
CORECOMMON_EXPORT std::shared_ptr<C_Integer> CreateInteger(const QString& name, long long value);
// Throws RTE::Exception "Cannot cast <type> to Integer.".
CORECOMMON_EXPORT std::shared_ptr<C_Integer> CastToInteger(std::shared_ptr<C_Node> node);

CORECOMMON_EXPORT std::ostream& operator<<(std::ostream& stream, const C_Integer& node);

} // namespace RTE::Parameter
