#pragma once

#include "KelModelDescription.h"
#include "TextStore.h"

#include <string>
#include <vector>

namespace meridyn::hdf5 {

/// Phases and variables of a solution with their attributes, and the link names under which their values stand in every
/// time level of a file.
///
/// In the file: phases/<link> per phase, in it <link> per variable, both groups with the attributes kel_id and
/// kel_unique_name and with the attributes that the application gave them ("Dataset Name" among them); a variable also
/// has kel_categories, the element kinds on whose zones it lives. A link is the dataset name where that is unique.
class Catalogue {
public:
    struct Variable : KelVariableDescription {
        std::string link;
    };
    struct Phase : KelPhaseDescription {
        std::string link;
        std::vector<Variable> variables;

        const Variable* find(const std::string& name) const; ///< by unique name, null for none
    };

    static Catalogue of(const KelSolutionDescription& solution);
    KelSolutionDescription description() const;

    static Catalogue load(hid_t meshGroup);
    void store(hid_t meshGroup) const;

    const std::vector<Phase>& phases() const { return _phases; }
    const Phase* find(const std::string& name) const;

    /// Takes over what another one has: new phases and variables are added, attributes added or replaced. Ids are kept
    /// unless they are taken.
    void merge(const Catalogue& other);

private:
    Phase& phaseNamed(const std::string& name, const std::string& dataset, short id);
    Variable& variableNamed(Phase& phase, const std::string& name, const std::string& dataset, int id);

    std::vector<Phase> _phases;
};

} // namespace meridyn::hdf5
