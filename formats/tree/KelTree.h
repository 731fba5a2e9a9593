#pragma once

#include "KelDerivedValues.h"
#include "KelElementValues.h"
#include "KelMeshKey.h"
#include "KelModelDescription.h"

#include <functional>
#include <list>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace meridyn {

/// What has a name in a file: a tree, in which each node may carry values.
class KEL_API KelTreeNode {
public:
    /// A node without a name: the root of a tree.
    KelTreeNode();
    ~KelTreeNode();

    /// @name Copies
    /// With all children. What a value is assigned to keeps its own name.
    /// @{
    KelTreeNode(const KelTreeNode& other);
    KelTreeNode(KelTreeNode&& other) noexcept;
    KelTreeNode& operator=(KelTreeNode other) noexcept;
    /// @}

    std::string text;                               ///< of a setting, an attribute, a text of a set
    std::vector<int> zoneIds;                       ///< the zones that were named for it
    KelZoneCategory category = KelZoneCategory(-1); ///< of its elements; -1 for none
    KelPlainDataType type = KelPlainDataType(-1);   ///< of its values; -1 for none
    unsigned64 size = 0;     ///< values per element, 0: see counts; or a number of members or points
    KelElementValues values; ///< per element id; of a list: one for each of 1, 2, ...

    static const KelTreeNode nothing; ///< stands for a node that is not there
    explicit operator bool() const;   ///< whether it is there

    /// @name Children
    /// Each is found by its name in logarithmic time, and stays where it is while others come and go.
    /// @{
    const std::string& name() const;                               ///< under which its parent has it
    std::list<KelTreeNode>& children();                            ///< in the order in which they came
    const std::list<KelTreeNode>& children() const;                ///< the same
    std::vector<std::string> names() const;                        ///< of the children
    KelTreeNode& operator[](const std::string& child);             ///< made behind the others if missing
    const KelTreeNode& operator[](const std::string& child) const; ///< `nothing` if missing
    void removeChildren(const std::function<bool(const KelTreeNode&)>& isRemoved); ///< those for which it is true
    void clear(); ///< removes all that it has; its name stays
    /// @}

    KelTreeNode& counts();             ///< how many values each element has, where that differs
    const KelTreeNode& counts() const; ///< the same, `nothing` if missing

    unsigned64 get(unsigned64 first, unsigned64 last, const KelBuffer& out) const; ///< Values of a range of elements.
    unsigned64 getList(const KelBuffer& out) const; ///< Values of a list as far as there is room.
    unsigned64 length() const;                      ///< of a list

private:
    explicit KelTreeNode(const std::string& name);
    void swap(KelTreeNode& other) noexcept;

    std::string _name;
    std::list<KelTreeNode> _children;
    std::map<std::string_view, KelTreeNode*> _index; // by the names that the children have
};

/// What a file holds for one data class, whatever its format. Who loads or saves one needs no more than the members:
/// each node has its name, its values (in arrays of element ids) and what describes them.
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
