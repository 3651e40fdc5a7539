// The shared state behind C_Tree handles; not installed.
#pragma once

#include <Core/Common/Parameter/C_Category.h>
#include <Core/Common/Parameter/CopyHandler.h>
#include <Core/Common/Parameter/StructuralDiffs.h>

#include <functional>
#include <memory>
#include <mutex>

namespace RTE::Parameter
{

class C_TreeData
{
public:
  C_TreeData();

  std::shared_ptr<C_Category> root;
  // Recursive: handlers called from copyValuesFrom use the tree again on the same thread.
  std::recursive_mutex lock;
  std::function<void(StructuralDiffs&)> mergeHandler;
  std::unique_ptr<CopyHandler> copyHandler;
};

} // namespace RTE::Parameter
