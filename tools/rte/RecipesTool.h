// The two demonstration recipe contexts of the rte tool and the progress lines shared by
// `rte recipes` and the demo step.
#pragma once

#include <QTextStream>

namespace RTE
{
class Recipes;
}

namespace rte
{

// Registers "Camera" and "Laser" once per process. Each keeps a small configuration
// chosen by preset name (the selection text when saving: "default", "fast", "precise")
// and writes it into a settings document of its recipe subfolder.
void registerDemoRecipeContexts();

// Prints one line per progress and warning signal of recipes.
void showRecipeProgress(RTE::Recipes& recipes, QTextStream& out);

} // namespace rte
