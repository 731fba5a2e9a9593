#pragma once

#include "KelMeshCheck.h"
#include "mesh/CellSums.h"
#include "mesh/ElementIds.h"
#include "mesh/Stopped.h"
#include "mesh/Vector3.h"

#include <algorithm>
#include <array>
#include <string>
#include <unordered_map>
#include <vector>

namespace meridyn {
class KelProvider;
}

namespace meridyn::mesh {

/// Elements that are read at a time where each has a bounded number of values.
constexpr unsigned64 elementsPerChunk = 65536;

/// The four categories in the order of their numbers.
constexpr KelZoneCategory allCategories[] = {KEL_NODE_ZONE, KEL_EDGE_ZONE, KEL_FACE_ZONE, KEL_CELL_ZONE};

/// A zone that has elements.
struct Zone {
    int id;
    unsigned64 first;
    unsigned64 last;
    int kind; ///< KelFaceZoneType of a face zone, -1 for none

    unsigned64 size() const { return last - first + 1; }
    bool isParent() const { return kind == KEL_FACE_ZONE_TYPE_PARENT; }
};

/// A face of one cell only, or a side of a cell that no other cell has.
struct OuterFace {
    unsigned64 face; ///< 0 for the side of a cell that is known by its nodes
    unsigned64 cell;
    std::size_t zone;  ///< place in the list of face zones; the number of zones for none
    std::size_t start; ///< where its nodes begin in the list of outer nodes
    std::size_t count; ///< number of them
};

/// A face that was replaced by child faces, next to what those add up to.
struct ParentFace {
    unsigned64 id = 0;
    FacePrint own;                                                        ///< of the parent
    FacePrint children;                                                   ///< sum over the children
    Vector3 area;                                                         ///< of the parent
    Vector3 childArea;                                                    ///< sum over the children
    unsigned64 seen = 0;                                                  ///< children that are sound faces
    unsigned64 expected = 0;                                              ///< children that the parent names
    std::array<std::size_t, 2> cells{ElementIds::none, ElementIds::none}; ///< place of the cell that all children have
    std::array<bool, 2> isMixed{false, false};                            ///< the children have different cells
};

/// What a cell would be with the parents of its child faces in their place: the neighbours of a refined region know
/// the nodes of the parent, not those that hang between them.
struct TreeCorrection {
    std::uint64_t loop = 0;
    std::uint64_t shape = 0;
};

/// What the checks of one run share: what was read so far, and the way to the report.
///
/// Each check is a function of this state. Those that come later rely on what earlier ones have left in it, so their
/// order is that of the list in MeshRun.cpp.
class CheckState {
public:
    CheckState(KelProvider& openReader, const KelMeshCheckOptions& chosen, KelMeshReport& found)
        : reader(openReader), options(chosen), report(found)
    {}

    KelProvider& reader;
    const KelMeshCheckOptions& options;
    KelMeshReport& report;

    std::array<std::vector<Zone>, 4> zones; ///< by category, ascending by first element
    std::array<ElementIds, 4> ids;          ///< by category: the elements that exist
    std::vector<Vector3> nodes;             ///< by place
    std::vector<bool> isUsed;               ///< per node
    std::vector<CellSums> cells;            ///< by place; empty while no face names a cell
    std::vector<bool> hasChildren;          ///< per cell; empty when none has
    std::vector<bool> hasNodes;             ///< per cell: its nodes were looked at; empty when no cell has any
    std::vector<ParentFace> parents;
    std::unordered_map<unsigned64, std::size_t> parentByFace;    ///< by id of the parent: its place in parents
    std::unordered_map<unsigned64, std::size_t> parentByChild;   ///< by id of a child face: place of its parent
    std::unordered_map<std::size_t, TreeCorrection> corrections; ///< by place of a cell
    std::vector<OuterFace> outerFaces;
    std::vector<std::size_t> outerNodes; ///< places of the nodes of the outer faces, one face behind the other
    bool hasFaceNodes = false;           ///< whether any face has nodes

    bool isFlat() const { return report.dimension == 2; }
    std::size_t nodesPerFace() const { return isFlat() ? 2 : 3; }

    /// Notes an exception that is about one element.
    void add(KelMeshRule rule, KelZoneCategory category, unsigned64 id, const std::string& text, unsigned64 count = 1)
    {
        report.add(rule, {category, id, text}, options.named, count);
    }

    /// Whether one more exception would be named, so that its text is worth making.
    bool isNamed(KelMeshRule rule) const { return report.outcome(rule).named.size() < options.named; }

    /// "face 7 of zone 3 'wall'".
    std::string label(KelZoneCategory category, const Zone& zone, unsigned64 id) const;

    /// Tells how far the check is. @throws Stopped when it is to end
    void tell(const std::string& task, unsigned64 done, unsigned64 total) const
    {
        if (options.progress && !options.progress(task, done, total))
            throw Stopped{"interrupted", true};
    }

    /// Ends the check because the mesh cannot be read. @throws Stopped always
    [[noreturn]] static void stop(const std::string& problem) { throw Stopped{problem, false}; }

    /// The sums of a cell; null when no such cell exists.
    CellSums* cell(unsigned64 id)
    {
        const std::size_t at = ids[KEL_CELL_ZONE].indexOf(id);
        return at < cells.size() ? &cells[at] : nullptr;
    }

    /// Calls visit(first, last) for the ids of a zone in pieces of a bounded size.
    template <class Visit>
    static void forChunks(const Zone& zone, const Visit& visit, unsigned64 size = elementsPerChunk)
    {
        for (unsigned64 first = zone.first;; first += size) {
            const unsigned64 last = zone.last - first < size ? zone.last : first + size - 1;
            if (!visit(first, last) || last == zone.last)
                return;
        }
    }
};

} // namespace meridyn::mesh
