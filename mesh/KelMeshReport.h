#pragma once

#include "KelExport.h"
#include "KelTypes.h"

#include <array>
#include <cstddef>
#include <map>
#include <string>
#include <vector>

namespace meridyn {

/// The rules that a mesh is held against, in the order of the report.
enum class KelMeshRule {
    Zones,       ///< the zones of a category hold each element once, and as many as the mesh is said to have
    Coordinates, ///< coordinates are finite
    Ids,         ///< edges, faces and cells name nodes and cells that exist
    EdgeNodes,   ///< an edge has at least two nodes, each once
    FaceNodes,   ///< a face has at least 3 nodes (2 in two dimensions), each once
    FaceShapes,  ///< a face has an area, no edge of no length and no corner that turns back on itself
    FaceCells,   ///< a face of an interior zone has two different cells, a boundary face has one
    Shadows,     ///< shadow faces exist and are each other's
    ChildFaces,  ///< child faces exist and have one parent
    CellTypes,   ///< the type of a cell fits the dimension, its nodes and its faces
    CellNodes,   ///< a cell names each node once, and its nodes span its faces
    CellShapes,  ///< the nodes of a cell come in the order of its type
    FaceLists,   ///< the faces that a cell lists are those that name it
    ChildCells,  ///< child cells exist and have one parent
    Partitions,  ///< partition ids are among those that the mesh is divided into
    UsedNodes,   ///< each node belongs to an edge, a face or a cell
    CellFaces,   ///< a cell has at least 4 faces (3 in two dimensions)
    Closed,      ///< the area vectors of a cell sum up to zero
    Joined,      ///< each edge of a cell belongs to two of its faces
    Volumes,     ///< volumes are positive
    Orientation, ///< a face points from cell 0 to cell 1, or out of the mesh
    Shared,      ///< cells that touch share a face
    Overlaps,    ///< no two cells fill the same place
    Sets,        ///< sets hold elements that exist
    Locations    ///< locations name zones that exist
};

/// Number of rules.
constexpr std::size_t meshRuleCount = 25;

/// A rule for machines ("face-nodes") and for people ("faces have enough nodes, each once").
struct KelMeshRuleText {
    const char* key;  ///< for machines
    const char* text; ///< for people
};

/// The texts of a rule.
KEL_API const KelMeshRuleText& textOf(KelMeshRule rule);

/// All rules, in the order of the report.
KEL_API const std::array<KelMeshRule, meshRuleCount>& meshRules();

/// One exception to a rule.
struct KelMeshFinding {
    KelZoneCategory category = KEL_CELL_ZONE; ///< what kind of element it is about
    unsigned64 id = 0;                        ///< the element, 0 where it is not one element
    std::string text;                         ///< one line: "face 7 of zone 3 'wall' has node 5 twice"
};

/// Something that the mesh has and that could not be held against the rules.
struct KelMeshUnseen {
    KelZoneCategory category = KEL_CELL_ZONE; ///< kind of the elements concerned
    unsigned64 count = 0;                     ///< how many there are
    std::string text;                         ///< "12 polyhedra without faces"
};

/// The answer of a check.
enum class KelMeshVerdict {
    Good,      ///< everything was looked at, and nothing is wrong
    Faulty,    ///< something is wrong
    NotAllSeen ///< nothing is wrong with what was looked at, but something could not be
};

/// What a check of a mesh found.
class KEL_API KelMeshReport {
public:
    /// The outcome of one rule.
    struct Outcome {
        unsigned64 lookedAt = 0;           ///< elements held against it; 0 when the mesh has nothing that it is about
        unsigned64 offenders = 0;          ///< exceptions
        std::vector<KelMeshFinding> named; ///< the first of them
    };

    /// The outcome of a rule.
    const Outcome& outcome(KelMeshRule rule) const;

    /// What could not be looked at.
    const std::vector<KelMeshUnseen>& unseen() const;

    /// Whether anything offends.
    bool hasOffenders() const;

    /// The answer: faulty wins over not all seen.
    KelMeshVerdict verdict() const;

    /// Whether everything was looked at and nothing is wrong.
    bool isGood() const;

    /// @name For the checks
    /// @{
    /// Notes that elements were held against a rule.
    void addLookedAt(KelMeshRule rule, unsigned64 count);
    /// Notes `count` exceptions that share a finding, which is kept while fewer than `limit` are named.
    void add(KelMeshRule rule, const KelMeshFinding& finding, unsigned64 limit, unsigned64 count = 1);
    /// Notes what could not be looked at.
    void addUnseen(const KelMeshUnseen& unseen);
    /// @}

    int dimension = 0;                           ///< 2 or 3
    std::array<unsigned64, 4> sizes{};           ///< elements in the zones of each KelZoneCategory
    std::map<KelCellType, unsigned64> cellTypes; ///< number of cells of each type; empty when the reader does not tell
    bool hasFaces = false;                       ///< whether faces name their cells
    bool hasBox = false;                         ///< whether there is a finite node
    std::array<double, 3> boxMin{};              ///< lower corner of the bounding box; z is 0 in two dimensions
    std::array<double, 3> boxMax{};              ///< upper corner of the bounding box; z is 0 in two dimensions
    unsigned64 thinWallPairs = 0;                ///< pairs of wall faces in one place: walls without thickness
    double volume = 0.0;                         ///< sum over all undamaged cells
    double smallestVolume = 0.0;                 ///< of one cell
    double largestVolume = 0.0;                  ///< of one cell
    unsigned64 smallestCell = 0;                 ///< which has the smallest volume, 0 for none
    unsigned64 largestCell = 0;                  ///< which has the largest volume, 0 for none

private:
    std::array<Outcome, meshRuleCount> _outcomes;
    std::vector<KelMeshUnseen> _unseen;
};

} // namespace meridyn
