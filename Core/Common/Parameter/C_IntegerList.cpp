#include <Core/Common/Parameter/C_IntegerList.h>

#include "ParameterLog_p.h"

namespace RTE::Parameter
{

const QString C_IntegerList::EditorLineEdit = QStringLiteral("LineEdit");
const QString C_IntegerList::EditorTreeView = QStringLiteral("TreeView");
const QString C_IntegerList::EditorListView = QStringLiteral("ListView");

C_IntegerList::C_IntegerList() : C_NumericValueListT<long long>(0)
{
  detail::RegisterMetaType<std::shared_ptr<C_IntegerList>>("RTE::Parameter::IntegerList");
  detail::RegisterMetaType<IntegerRange>("RTE::Parameter::IntegerRange");
  detail::RegisterMetaType<RTE::RangeInt64>("RTE::RangeInt64");
}

C_IntegerList::~C_IntegerList() = default;

QString C_IntegerList::GetTypeName() const
{
  return GetStaticTypeName();
}

QString C_IntegerList::GetStaticTypeName()
{
  return QStringLiteral("IntegerList");
}

void C_IntegerList::NotifyValueChangedWithValue()
{
  emit ValueChanged(std::vector<int64_t>(Values().begin(), Values().end()));
}

void C_IntegerList::NotifyRangeChangedWithValue()
{
  emit RangeChanged(GetRange());
}

void C_IntegerList::NotifyStepChangedWithValue()
{
  emit StepChanged(static_cast<int64_t>(GetStep()));
}

void C_IntegerList::NotifyPrecisionChangedWithValue() {}

std::shared_ptr<C_IntegerList> CreateIntegerList(const QString& name, size_t size, const QString& label,
                                                 const QString& description, E_AccessMode accessMode, long long fill,
                                                 long long minimum, long long maximum, const QString& editor)
{
  auto node = std::make_shared<C_IntegerList>();
  node->SetName(name);
  node->SetLabel(label);
  node->SetDescription(description);
  node->SetRange(RTE::RangeT<long long>(minimum, maximum));
  node->SetSize(size, fill);
  node->SetAccessMode(accessMode);
  node->SetPreferredEditor(editor);
  return node;
}

std::shared_ptr<C_IntegerList> CastToIntegerList(std::shared_ptr<C_Node> node)
{
  return detail::CastNode<C_IntegerList>(node, "IntegerList");
}

std::ostream& operator<<(std::ostream& stream, const C_IntegerList& node)
{
  return stream << node.dump();
}

} // namespace RTE::Parameter
