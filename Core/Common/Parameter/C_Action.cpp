#include <Core/Common/Parameter/C_Action.h>

#include "ParameterLog_p.h"

namespace RTE::Parameter
{

const QString C_Action::EditorPushButton = QStringLiteral("PushButton");

C_Action::C_Action(bool needsCallback) :
    C_Node(QString(), QString(), QString(), UndefinedAccesMode, Visible4Customer, QString(), true),
    m_needsCallback(needsCallback)
{
}

C_Action::~C_Action() = default;

bool C_Action::operator==(const C_Node& other) const
{
  const auto* action = dynamic_cast<const C_Action*>(&other);
  return action && action->m_callback == m_callback && C_Node::operator==(other);
}

QString C_Action::GetTypeName() const
{
  return GetStaticTypeName();
}

void C_Action::CopyValues(std::shared_ptr<C_Node> source)
{
  SetCallback(CastToAction(std::move(source))->m_callback);
}

void C_Action::Execute()
{
  if (IsExecutable())
  {
    // The callback is held for the call: it may replace itself while it runs.
    const auto callback = m_callback;
    callback->Invoke();
  }
  else if (m_needsCallback)
  {
    RTE::Raise(RTE::Exception(tr("Action is not executable: ") + QString::fromLatin1(dump())));
  }
  NotifyValueChanged();
}

bool C_Action::IsExecutable()
{
  return m_callback != nullptr;
}

void C_Action::SetCallback(std::shared_ptr<I_ActionCallback> callback)
{
  if (callback == m_callback)
    return;
  m_callback = std::move(callback);
  NotifyValueChanged();
}

void C_Action::SetNeedsCallback(bool needsCallback)
{
  m_needsCallback = needsCallback;
}

bool C_Action::NeedsCallback() const
{
  return m_needsCallback;
}

QString C_Action::GetStaticTypeName()
{
  return QStringLiteral("Action");
}

void C_Action::NotifyValueChangedWithValue() {}

std::shared_ptr<C_Action> CreateAction(const QString& name, const QString& label, const QString& description,
                                       E_AccessMode accessMode, const QString& editor)
{
  auto action = std::make_shared<C_Action>(true);
  action->SetName(name);
  action->SetLabel(label);
  action->SetDescription(description);
  action->SetAccessMode(accessMode);
  action->SetPreferredEditor(editor);
  return action;
}

std::shared_ptr<C_Action> CastToAction(std::shared_ptr<C_Node> node)
{
  return detail::CastNode<C_Action>(node, "Action");
}

} // namespace RTE::Parameter
