// Something a user can trigger, such as a push button that starts a calibration.
//
//   auto calibrate = RTE::Parameter::CreateAction("Calibrate", "Calibrate", "", RTE::Parameter::ReadWrite,
//                                                 RTE::Parameter::C_Action::EditorPushButton);
//   calibrate->SetCallback(std::make_shared<Calibration>());
//   calibrate->Execute(); // runs the callback, then ValueChanged()
//
// An action that does not need a callback only announces each press through ValueChanged().
#pragma once

#include <Core/Common/Parameter/C_Node.h>
#include <Core/Common/Parameter/I_ActionCallback.h>

#include <memory>

namespace RTE::Parameter
{

class CORECOMMON_EXPORT C_Action : public C_Node
{
  Q_OBJECT

public:
  static const QString EditorPushButton; // "PushButton"

  explicit C_Action(bool needsCallback);
  ~C_Action() override;

  // Another action with the same callback object and equal attributes.
  bool operator==(const C_Node& other) const override;
  QString GetTypeName() const override;
  // Takes over the source's callback; throws RTE::Exception if it is not an action.
  void CopyValues(std::shared_ptr<C_Node> source) override;

  // Runs the callback (if any) and emits ValueChanged(). Throws RTE::Exception
  // "Action is not executable: <dump>" when a needed callback is missing.
  virtual void Execute();
  // True when a callback is set.
  virtual bool IsExecutable();
  // Emits ValueChanged() when another callback object is set.
  virtual void SetCallback(std::shared_ptr<I_ActionCallback> callback);
  virtual void SetNeedsCallback(bool needsCallback);
  virtual bool NeedsCallback() const;

  // "Action".
  static QString GetStaticTypeName();

protected:
  // An action has no typed value signal.
  void NotifyValueChangedWithValue() override;

private:
  bool m_needsCallback;
  std::shared_ptr<I_ActionCallback> m_callback;
};

// Needs a callback; setters in the order name, label, description, access mode, editor.
CORECOMMON_EXPORT std::shared_ptr<C_Action> CreateAction(const QString& name, const QString& label,
                                                         const QString& description, E_AccessMode accessMode,
                                                         const QString& editor);
// Throws RTE::Exception "Cannot cast <type> to Action.".
CORECOMMON_EXPORT std::shared_ptr<C_Action> CastToAction(std::shared_ptr<C_Node> node);

} // namespace RTE::Parameter
