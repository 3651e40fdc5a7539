// What a C_Action runs when it is executed.
//
//   struct StartRecording : RTE::Parameter::I_ActionCallback
//   {
//     void Invoke() override { recorder.start(); }
//   };
#pragma once

#include <Core/Common/CoreCommonExport.h>

namespace RTE::Parameter
{

class CORECOMMON_EXPORT I_ActionCallback
{
public:
  I_ActionCallback() = default;
  I_ActionCallback(const I_ActionCallback&) = default;
  I_ActionCallback& operator=(const I_ActionCallback&) = default;
  virtual ~I_ActionCallback();

  // Runs the action; called by C_Action::Execute.
  virtual void Invoke() = 0;
};

} // namespace RTE::Parameter
