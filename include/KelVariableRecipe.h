#pragma once

#include "KelExport.h"

#include <string>

namespace meridyn {

class KelProvider;

/// A client's rule that rewrites attribute values of a variable as a reader reports them.
///
/// A variable whose attribute "Recipe" names a recipe has its other attributes passed through it. Registered with
/// KelVariableRecipeProvider. The order of the operations is part of the interface.
class KEL_API KelVariableRecipe {
public:
    /// A rule without a state of its own.
    KelVariableRecipe() = default;
    KelVariableRecipe(const KelVariableRecipe&) = default;
    KelVariableRecipe& operator=(const KelVariableRecipe&) = default;
    virtual ~KelVariableRecipe();

    /// The name by which a variable's attribute "Recipe" refers to this one.
    virtual std::string getName() const = 0;

    /// Whether this recipe rewrites that attribute.
    virtual bool isApplicableTo(const std::string& attribute) const = 0;

    /// Rewrites a value.
    ///
    /// @param value       the attribute's value, changed in place
    /// @param reader      gives other attributes and data of the variable
    /// @param variableId  the variable
    /// @param attribute   name of the attribute
    virtual void apply(std::string& value, const KelProvider* reader, int variableId,
                       const std::string& attribute) const = 0;
};

} // namespace meridyn
