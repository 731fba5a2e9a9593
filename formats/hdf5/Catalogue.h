#pragma once

#include "TextStore.h"

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace meridyn {
class KelSolutionModel;
}

namespace meridyn::hdf5 {

/// Phases and variables of a solution with their attributes, and the link names under which their values stand in every
/// time level of a file.
///
/// In the file: phases/<link> per phase, in it <link> per variable, both groups with the attributes kel_id and
/// kel_unique_name and with the attributes that the application gave them ("Dataset Name" among them); a variable also
/// has kel_categories, the element kinds on whose zones it lives. A link is the dataset name where that is unique.
class Catalogue {
public:
    struct Variable {
        int id = 0;
        std::string uniqueName;
        std::string link;
        std::map<std::string, std::string> attributes;
        std::set<int> categories;
    };
    struct Phase {
        short id = 0;
        std::string uniqueName;
        std::string link;
        std::map<std::string, std::string> attributes;
        std::vector<Variable> variables;

        const Variable* find(const std::string& name) const; ///< by unique name, null for none
    };

    /// What a model holds; `categories` gives the element kinds of a variable.
    static Catalogue of(const KelSolutionModel& model, const std::function<std::set<int>(int)>& categories);

    static Catalogue load(hid_t meshGroup);
    void store(hid_t meshGroup) const;

    const std::vector<Phase>& phases() const { return _phases; }
    const Phase* find(const std::string& name) const;

    /// Takes over what another one has: new phases and variables are added, attributes added or replaced. Ids are kept
    /// unless they are taken.
    void merge(const Catalogue& other);

    /// Makes an empty model equal to this: the ids too, unless the catalogue was put together from several.
    /// @return id in the model by id in the file
    std::map<int, int> restore(KelSolutionModel& model) const;

private:
    Phase& phaseNamed(const std::string& name, const std::string& dataset, short id);
    Variable& variableNamed(Phase& phase, const std::string& name, const std::string& dataset, int id);

    std::vector<Phase> _phases;
};

} // namespace meridyn::hdf5
