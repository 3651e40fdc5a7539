#include <Core/Common/Recipes/RecipeContext.h>

namespace RTE
{

RecipeContext::~RecipeContext() = default;

} // namespace RTE
