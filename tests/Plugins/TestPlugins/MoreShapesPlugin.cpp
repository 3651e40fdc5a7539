// Test plug-in library: registers a triangle, and tries "Point", which the test
// program registers itself, reporting the refusal as a registration error.
#include "TestShape.h"

#include <Core/Common/Plugins/C_PluginRegistry.h>

#include <memory>

namespace
{

std::unique_ptr<RTE::I_Plugin> makeTriangle(RTE::I_CreationContext*)
{
  return std::make_unique<TestShape>("Test.Shapes", "Triangle", "three corners");
}

std::unique_ptr<RTE::I_Plugin> makePoint(RTE::I_CreationContext*)
{
  return std::make_unique<TestShape>("Test.Shapes", "Point", "the more-shapes point");
}

struct Registration
{
  Registration()
  {
    auto& registry = RTE::C_PluginRegistry::GetInstance();
    registry.RegisterPlugin("Test.Shapes", "Triangle", "three corners", &makeTriangle);
    if (!registry.RegisterPlugin("Test.Shapes", "Point", "the more-shapes point", &makePoint))
      registry.AddError("MoreShapes: Test.Shapes/Point is taken");
  }
};

const Registration registration;

} // namespace
