#pragma once

#include "KelExport.h"

#include <map>
#include <string>

namespace meridyn {

class KelVariableRecipe;

/// Recipes by name, handed to a reader with KelProvider::setVariableRecipeProvider.
///
/// Recipes are not owned: the client keeps them alive while the provider is in use. Copies refer to the same recipes.
/// The order of the operations is part of the interface.
class KEL_API KelVariableRecipeProvider {
public:
    /// No recipes.
    KelVariableRecipeProvider() = default;
    KelVariableRecipeProvider(const KelVariableRecipeProvider&) = default;
    KelVariableRecipeProvider& operator=(const KelVariableRecipeProvider&) = default;
    virtual ~KelVariableRecipeProvider();

    /// Registers a recipe under its own name, in place of any other of that name. False for null.
    virtual bool addRecipe(KelVariableRecipe* recipe);

    /// The recipe of exactly that name, or null. The empty name gives null, even if a recipe is registered under it.
    virtual const KelVariableRecipe* getRecipe(const std::string& name) const;

private:
    std::map<std::string, KelVariableRecipe*> _recipes;
};

} // namespace meridyn
