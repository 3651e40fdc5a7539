#include <Core/Common/Parameter/C_Double.h>

#include "ParameterLog_p.h"

#include <limits>

namespace RTE::Parameter
{

const QString C_Double::EditorLineEdit = QStringLiteral("LineEdit");
const QString C_Double::EditorSpinBox = QStringLiteral("SpinBox");
const QString C_Double::EditorSpinBoxWrapAround = QStringLiteral("SpinBoxWrapAround");
const QString C_Double::EditorSlider = QStringLiteral("Slider");
const QString C_Double::EditorSliderTicks = QStringLiteral("SliderTicks");
const QString C_Double::EditorLabeledSlider = QStringLiteral("LabeledSlider");
const QString C_Double::EditorAdvancedSlider = QStringLiteral("AdvancedSlider");

C_Double::C_Double() : C_NumericValueT<double>(2)
{
  detail::RegisterMetaType<std::shared_ptr<C_Double>>("RTE::Parameter::Double");
  detail::RegisterMetaType<DoubleRange>("RTE::Parameter::DoubleRange");
  detail::RegisterMetaType<RTE::RangeDouble>("RTE::RangeDouble");
}

C_Double::~C_Double() = default;

QString C_Double::GetTypeName() const
{
  return GetStaticTypeName();
}

QVariant C_Double::toQVariant() const
{
  return QVariant(GetValue());
}

QString C_Double::GetStaticTypeName()
{
  return QStringLiteral("Double");
}

void C_Double::NotifyValueChangedWithValue()
{
  emit ValueChanged(GetValue());
}

void C_Double::NotifyRangeChangedWithValue()
{
  emit RangeChanged(GetRange());
}

void C_Double::NotifyStepChangedWithValue()
{
  emit StepChanged(GetStep());
}

void C_Double::NotifyPrecisionChangedWithValue()
{
  emit PrecisionChanged(GetPrecision());
}

std::shared_ptr<C_Double> CreateDouble(const QString& name, const QString& label, const QString& description,
                                       E_AccessMode accessMode, double value, double minimum, double maximum,
                                       const QString& editor, unsigned int precision)
{
  auto node = std::make_shared<C_Double>();
  node->SetName(name);
  node->SetLabel(label);
  node->SetDescription(description);
  node->SetRange(minimum, maximum);
  node->SetValue(value);
  node->SetAccessMode(accessMode);
  node->SetPreferredEditor(editor);
  node->SetPrecision(precision);
  return node;
}

std::shared_ptr<C_Double> CreateDouble(const QString& name, double value)
{
  return CreateDouble(name, QString(), QString(), ReadWrite, value, std::numeric_limits<double>::lowest(),
                      std::numeric_limits<double>::max(), C_Double::EditorSpinBox, 2);
}

std::shared_ptr<C_Double> CastToDouble(std::shared_ptr<C_Node> node)
{
  return detail::CastNode<C_Double>(node, "Double");
}

std::ostream& operator<<(std::ostream& stream, const C_Double& node)
{
  return stream << node.dump();
}

} // namespace RTE::Parameter
