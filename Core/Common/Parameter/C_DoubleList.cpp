#include <Core/Common/Parameter/C_DoubleList.h>

#include "ParameterLog_p.h"

namespace RTE::Parameter
{

const QString C_DoubleList::EditorLineEdit = QStringLiteral("LineEdit");
const QString C_DoubleList::EditorTreeView = QStringLiteral("TreeView");
const QString C_DoubleList::EditorListView = QStringLiteral("ListView");

C_DoubleList::C_DoubleList() : C_NumericValueListT<double>(2)
{
  detail::RegisterMetaType<std::shared_ptr<C_DoubleList>>("RTE::Parameter::DoubleList");
  detail::RegisterMetaType<DoubleRange>("RTE::Parameter::DoubleRange");
  detail::RegisterMetaType<RTE::RangeDouble>("RTE::RangeDouble");
}

C_DoubleList::~C_DoubleList() = default;

QString C_DoubleList::GetTypeName() const
{
  return GetStaticTypeName();
}

QString C_DoubleList::GetStaticTypeName()
{
  return QStringLiteral("DoubleList");
}

void C_DoubleList::NotifyValueChangedWithValue()
{
  emit ValueChanged(Values());
}

void C_DoubleList::NotifyRangeChangedWithValue()
{
  emit RangeChanged(GetRange());
}

void C_DoubleList::NotifyStepChangedWithValue()
{
  emit StepChanged(GetStep());
}

void C_DoubleList::NotifyPrecisionChangedWithValue()
{
  emit PrecisionChanged(GetPrecision());
}

std::shared_ptr<C_DoubleList> CreateDoubleList(const QString& name, size_t size, const QString& label,
                                               const QString& description, E_AccessMode accessMode, double fill,
                                               double minimum, double maximum, const QString& editor,
                                               unsigned int precision)
{
  auto node = std::make_shared<C_DoubleList>();
  node->SetName(name);
  node->SetLabel(label);
  node->SetDescription(description);
  node->SetRange(RTE::RangeT<double>(minimum, maximum));
  node->SetSize(size, fill);
  node->SetAccessMode(accessMode);
  node->SetPreferredEditor(editor);
  node->SetPrecision(precision);
  return node;
}

std::shared_ptr<C_DoubleList> CastToDoubleList(std::shared_ptr<C_Node> node)
{
  return detail::CastNode<C_DoubleList>(node, "DoubleList");
}

std::ostream& operator<<(std::ostream& stream, const C_DoubleList& node)
{
  return stream << node.dump();
}

} // namespace RTE::Parameter
