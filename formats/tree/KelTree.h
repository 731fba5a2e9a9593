#pragma once

#include "KelDerivedValues.h"
#include "KelElementValues.h"
#include "KelMeshKey.h"
#include "KelModelDescription.h"

#include <list>
#include <map>
#include <string>
#include <vector>

namespace meridyn {

/// What has a name in a file: a tree, in which each node may carry values.
struct KEL_API KelTreeNode {
    std::string name;                               ///< under which its parent has it
    std::list<KelTreeNode> children = {};           ///< in the order in which they came
    std::string text = {};                          ///< of a setting, an attribute, a text of a set
    std::vector<int> zoneIds = {};                  ///< the zones that were named for it
    KelZoneCategory category = KelZoneCategory(-1); ///< of its elements; -1 for none
    KelPlainDataType type = KelPlainDataType(-1);   ///< of its values; -1 for none
    unsigned64 size = 0;          ///< values per element, 0: see counts; or a number of members or points
    KelElementValues values = {}; ///< per element id; of a list: one for each of 1, 2, ...

    static const KelTreeNode nothing;                           ///< stands for a node that is not there
    explicit operator bool() const { return this != &nothing; } ///< whether it is there

    KelTreeNode& operator[](const std::string& child);             ///< made behind the others if missing
    const KelTreeNode& operator[](const std::string& child) const; ///< `nothing` if missing
    std::vector<std::string> names() const;                        ///< of the children

    KelTreeNode& counts();             ///< how many values each element has, where that differs
    const KelTreeNode& counts() const; ///< the same, `nothing` if missing

    unsigned64 get(unsigned64 first, unsigned64 last, const KelBuffer& out) const; ///< Values of a range of elements.
    unsigned64 getList(const KelBuffer& out) const;       ///< Values of a list as far as there is room.
    unsigned64 length() const { return values.lastId(); } ///< of a list
};

/// What a file holds for one data class, whatever its format. Who loads or saves one needs no more than the members:
/// each node has its name, its values (as they were handed over, in runs of element ids) and what describes them.
struct KelTree {
    /// One of the meshes, or what belongs to one.
    struct Mesh {
        KelMeshDescription mesh;         ///< what KelBase knows of it, completed from zones and arrays
        KelDerivedValues derived;        ///< which of that the writer's client did not say
        KelSolutionDescription solution; ///< phases, variables and time levels; data only
        std::string locations;           ///< state of the location model
        KelTreeNode tree; ///< case: arrays, sections, sets; data: by time level, sets and phases with all they have
    };
    KelTreeNode settings;                                 ///< groups, and in them a text for each key
    std::vector<std::pair<std::string, std::string>> log; ///< titles and texts
    std::map<KelMeshKey, Mesh> meshes;                    ///< all of the file
};

/// A tree that is complete and does not change any more; null for none.
using KelTreeFile = std::shared_ptr<const KelTree>;

} // namespace meridyn
