#include "KelVariableRecipe.h"
#include "KelVariableRecipeProvider.h"

namespace meridyn {

KelVariableRecipe::~KelVariableRecipe() = default;

KelVariableRecipeProvider::~KelVariableRecipeProvider() = default;

bool KelVariableRecipeProvider::addRecipe(KelVariableRecipe* recipe)
{
    if (recipe == nullptr)
        return false;
    _recipes.insert_or_assign(recipe->getName(), recipe);
    return true;
}

const KelVariableRecipe* KelVariableRecipeProvider::getRecipe(const std::string& name) const
{
    if (name.empty())
        return nullptr; // kept: even if one is registered under it
    const auto found = _recipes.find(name);
    return found != _recipes.end() ? found->second : nullptr;
}

} // namespace meridyn
