// A real number with range, step and the number of decimals a user interface shows.
//
//   auto exposure = RTE::Parameter::CreateDouble("ExposureTime", "Exposure time", "In milliseconds",
//                                                RTE::Parameter::ReadWrite, 10.0, 0.01, 1000.0,
//                                                RTE::Parameter::C_Double::EditorSpinBox, 2);
#pragma once

#include <Core/Common/Parameter/C_NumericValueT.h>

#include <ostream>

namespace RTE::Parameter
{

class CORECOMMON_EXPORT C_Double : public C_NumericValueT<double>
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

  // Value 0, range 0 to 0, step 1, precision 2.
  C_Double();
  ~C_Double() override;

  QString GetTypeName() const override;
  QVariant toQVariant() const override;

  // "Double".
  static QString GetStaticTypeName();

signals:
  void ValueChanged(double value);
  void RangeChanged(RTE::Parameter::DoubleRange range);
  void StepChanged(double step);
  void PrecisionChanged(uint value);

protected:
  void NotifyValueChangedWithValue() override;
  void NotifyRangeChangedWithValue() override;
  void NotifyStepChangedWithValue() override;
  void NotifyPrecisionChangedWithValue() override;
};

using Double = std::shared_ptr<C_Double>;

// Setters in the order name, label, description, range, value, access mode, editor,
// precision; a value outside [minimum, maximum] throws after the range is set.
CORECOMMON_EXPORT std::shared_ptr<C_Double> CreateDouble(const QString& name, const QString& label,
                                                         const QString& description, E_AccessMode accessMode,
                                                         double value, double minimum, double maximum,
                                                         const QString& editor, unsigned int precision);
// The largest finite range, ReadWrite, editor "SpinBox", precision 2.
CORECOMMON_EXPORT std::shared_ptr<C_Double> CreateDouble(const QString& name, double value);
// Throws RTE::Exception "Cannot cast <type> to Double.".
CORECOMMON_EXPORT std::shared_ptr<C_Double> CastToDouble(std::shared_ptr<C_Node> node);

CORECOMMON_EXPORT std::ostream& operator<<(std::ostream& stream, const C_Double& node);

} // namespace RTE::Parameter
