// Replaces the value copy of C_Tree::copyValuesFrom for trees whose values need more than
// "like-named, like-typed nodes take the source's value" (renamed nodes, converted units).
//
//   class RenamedGain : public RTE::Parameter::CopyHandler
//   {
//     void Copy(const C_Tree& source, C_Tree& target) override
//     {
//       target.GetInteger("Gain")->SetValue(source.GetInteger("AnalogGain")->GetValue());
//     }
//   };
//   tree.setCopyHandler(std::make_unique<RenamedGain>());
#pragma once

#include <Core/Common/CoreCommonExport.h>

namespace RTE::Parameter
{

class C_Tree;

class CORECOMMON_EXPORT CopyHandler
{
public:
  virtual ~CopyHandler();

  // Called by copyValuesFrom with the target's lock held; may use the target freely on
  // the same thread.
  virtual void Copy(const C_Tree& source, C_Tree& target) = 0;
};

} // namespace RTE::Parameter
