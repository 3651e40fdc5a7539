// Test plug-in library: registers two shapes and a colour while it is loaded, and
// exports one plain function.
#include "TestShape.h"

#include <Core/Common/Plugins/C_PluginRegistry.h>

#include <QtGlobal>

#include <memory>

namespace
{

std::unique_ptr<RTE::I_Plugin> makeCircle(RTE::I_CreationContext*)
{
  return std::make_unique<TestShape>("Test.Shapes", "Circle", "round, from the shapes library");
}

std::unique_ptr<RTE::I_Plugin> makeSquare(RTE::I_CreationContext*)
{
  return std::make_unique<TestShape>("Test.Shapes", "Square", "four corners");
}

std::unique_ptr<RTE::I_Plugin> makeRed(RTE::I_CreationContext*)
{
  return std::make_unique<TestShape>("Test.Colors", "Red", "a colour");
}

struct Registration
{
  Registration()
  {
    auto& registry = RTE::C_PluginRegistry::GetInstance();
    registry.RegisterPlugin("Test.Shapes", "Circle", "round, from the shapes library", &makeCircle);
    registry.RegisterPlugin("Test.Shapes", "Square", "four corners", &makeSquare);
    registry.RegisterPlugin("Test.Colors", "Red", "a colour", &makeRed);
  }
};

const Registration registration;

} // namespace

extern "C" Q_DECL_EXPORT long long shapesPluginAnswer()
{
  return 42;
}
