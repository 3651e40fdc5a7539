#include <Core/Common/Parameter/C_Integer.h>

#include "ParameterLog_p.h"

#include <limits>

namespace RTE::Parameter
{

const QString C_Integer::EditorLineEdit = QStringLiteral("LineEdit");
const QString C_Integer::EditorSpinBox = QStringLiteral("SpinBox");
const QString C_Integer::EditorSpinBoxWrapAround = QStringLiteral("SpinBoxWrapAround");
const QString C_Integer::EditorSlider = QStringLiteral("Slider");
const QString C_Integer::EditorSliderTicks = QStringLiteral("SliderTicks");
const QString C_Integer::EditorLabeledSlider = QStringLiteral("LabeledSlider");
const QString C_Integer::EditorAdvancedSlider = QStringLiteral("AdvancedSlider");

C_Integer::C_Integer() : C_NumericValueT<long long>(0)
{
  detail::RegisterMetaType<std::shared_ptr<C_Integer>>("RTE::Parameter::Integer");
  detail::RegisterMetaType<IntegerRange>("RTE::Parameter::IntegerRange");
  detail::RegisterMetaType<RTE::RangeInt64>("RTE::RangeInt64");
}

C_Integer::~C_Integer() = default;

QString C_Integer::GetTypeName() const
{
  return GetStaticTypeName();
}

QVariant C_Integer::toQVariant() const
{
  return QVariant(static_cast<qlonglong>(GetValue()));
}

QString C_Integer::GetStaticTypeName()
{
  return QStringLiteral("Integer");
}

void C_Integer::NotifyValueChangedWithValue()
{
  emit ValueChanged(static_cast<int64_t>(GetValue()));
}

void C_Integer::NotifyRangeChangedWithValue()
{
  emit RangeChanged(GetRange());
}

void C_Integer::NotifyStepChangedWithValue()
{
  emit StepChanged(static_cast<int64_t>(GetStep()));
}

void C_Integer::NotifyPrecisionChangedWithValue() {}

std::shared_ptr<C_Integer> CreateInteger(const QString& name, const QString& label, const QString& description,
                                         E_AccessMode accessMode, long long value, long long minimum, long long maximum,
                                         const QString& editor)
{
  auto node = std::make_shared<C_Integer>();
  node->SetName(name);
  node->SetLabel(label);
  node->SetDescription(description);
  node->SetRange(minimum, maximum);
  node->SetValue(value);
  node->SetAccessMode(accessMode);
  node->SetPreferredEditor(editor);
  return node;
}

std::shared_ptr<C_Integer> CreateInteger(const QString& name, long long value)
{
  auto node = std::make_shared<C_Integer>();
  node->SetName(name);
  node->SetRange(std::numeric_limits<long long>::min(), std::numeric_limits<long long>::max());
  node->SetValue(value);
  node->SetAccessMode(ReadWrite);
  node->SetPreferredEditor(C_Integer::EditorSpinBox);
  return node;
}

std::shared_ptr<C_Integer> CastToInteger(std::shared_ptr<C_Node> node)
{
  return detail::CastNode<C_Integer>(node, "Integer");
}

std::ostream& operator<<(std::ostream& stream, const C_Integer& node)
{
  return stream << node.dump();
}

} // namespace RTE::Parameter
